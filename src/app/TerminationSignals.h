#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace kestrum {

// Turns SIGTERM and SIGINT into a Qt signal on the main thread (a signal handler may do nothing but
// write to a pipe). One instance per process; the handlers stay installed for its life.
class TerminationSignals : public QObject {
    Q_OBJECT
  public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

  signals:
    // Once per received signal; `signalNumber` is SIGTERM or SIGINT.
    void terminationRequested(int signalNumber);

  private:
    void readSignal();

    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kestrum
