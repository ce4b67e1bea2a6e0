#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

namespace kestrum::test {

// A kestrum-game-simulator run for one test: started with QProcess, ready once it printed its
// "listening on" line, terminated with SIGTERM when the object goes.
class SimulatorProcess {
  public:
    ~SimulatorProcess();

    // A port that was free a moment ago on 127.0.0.1.
    static int freePort();
    // The script at tests/integration/live/scripts/<name>, with `changes` laid over its root keys.
    static QJsonObject script(const QString& name, const QJsonObject& changes = {});

    // Starts the simulator on `port` with `script` and the extra arguments; false (with the reason
    // logged by the test) when it did not get ready within 30 seconds.
    bool start(int port, const QJsonObject& script, const QStringList& extraArguments = {});

    // The Unix time, in seconds, at which the game clock read 0.
    double gameClockStartUnixSeconds() const { return clockStartUnixSeconds_; }
    QString output() const { return output_; }

  private:
    QTemporaryDir folder_;
    QProcess process_;
    QString output_;
    double clockStartUnixSeconds_ = 0;
};

}  // namespace kestrum::test
