#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace kestrum::test {

// A kestrum-game-simulator run for one test: started with QProcess, ready once it printed its
// "listening on" line, terminated with SIGTERM when the object goes.
class SimulatorProcess {
  public:
    ~SimulatorProcess();

    // The script at tests/integration/live/scripts/short-game.json, with `changes` laid over its root keys.
    static QJsonObject shortGame(const QJsonObject& changes = {});
    // The short game without its loading screen: the service answers everything from the start.
    static QJsonObject runningGame() { return shortGame({{QStringLiteral("loadingSeconds"), 0}}); }

    // Starts the simulator on `port` (by default one that was free a moment ago) with `script` and the
    // extra arguments; false, with a test failure that shows the simulator's output, when it did not get
    // ready within 30 seconds.
    bool start(const QJsonObject& script, const QStringList& extraArguments = {}, int port = 0);

    int port() const { return port_; }
    // The Unix time, in seconds, at which the game clock read 0.
    double gameClockStartUnixSeconds() const { return clockStartUnixSeconds_; }

  private:
    QTemporaryDir folder_;
    QProcess process_;
    QString output_;
    int port_ = 0;
    double clockStartUnixSeconds_ = 0;
};

}  // namespace kestrum::test
