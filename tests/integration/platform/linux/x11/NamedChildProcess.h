#pragma once

#include <QProcess>
#include <QString>

namespace kestrum::test {

// A sleeping child process whose argv[0] is a chosen name (bash's `exec -a`), e.g. "League of
// Legends.exe" as Wine starts it. The constructor returns once /proc shows the name; the destructor kills
// and reaps it.
class NamedChildProcess {
  public:
    explicit NamedChildProcess(const QString& argumentZero);
    ~NamedChildProcess() { stop(); }
    NamedChildProcess(const NamedChildProcess&) = delete;
    NamedChildProcess& operator=(const NamedChildProcess&) = delete;

    qint32 processIdentifier() const { return static_cast<qint32>(process_.processId()); }
    // Kills and reaps it: its /proc entry is gone when this returns.
    void stop();

  private:
    QProcess process_;
};

}  // namespace kestrum::test
