#pragma once

#include <QProcess>
#include <QString>

namespace kestrum::test {

// The game simulator serving only its stand-in of the art host (`--art-host 0`) for one test: ready once
// it printed its address, terminated when the object goes. Main thread.
class ArtHostProcess {
  public:
    ArtHostProcess() = default;
    ~ArtHostProcess();
    ArtHostProcess(const ArtHostProcess&) = delete;
    ArtHostProcess& operator=(const ArtHostProcess&) = delete;

    // False, with `failure()` saying why and what the simulator printed, when it did not get ready within
    // 30 seconds.
    bool start();
    void stop();

    // "http://127.0.0.1:<port>", the value for "DataDragonBaseAddress".
    QString baseAddress() const { return baseAddress_; }
    QString failure() const { return failure_; }

  private:
    QProcess process_;
    QString output_;
    QString baseAddress_;
    QString failure_;
};

}  // namespace kestrum::test
