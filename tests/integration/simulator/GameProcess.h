#pragma once

#include <QNetworkAccessManager>
#include <QProcess>
#include <QTemporaryDir>

#include <optional>

namespace kestrum::test {

// The game simulator started as the recorder meets it, through run-game.sh, on a free port. Ended with
// SIGTERM when the object goes. Main thread.
class GameProcess {
  public:
    ~GameProcess();

    // Starts run-game.sh with `arguments`; false, with a test failure showing the output, when
    // `readyLine` did not appear within 20 seconds.
    bool start(const QStringList& arguments, const QString& readyLine);
    // A scripted game of one player, ready once its service listens.
    bool startGame(double loadingSeconds, double durationSeconds, const QStringList& extraArguments);

    qint64 processId() const { return process_.processId(); }
    // argv[0] as the system shows it (/proc/<pid>/cmdline).
    QString processName() const;
    QString output();
    // The service's gameTime in seconds; absent while loading or when it does not answer.
    std::optional<double> serviceGameTime();
    // Sends `signal` (0: none), waits for the end; the exit code of a normal exit.
    std::optional<int> end(int signal, int timeoutMs);

  private:
    QTemporaryDir folder_;
    QProcess process_;
    QString output_;
    int port_ = 0;
    QNetworkAccessManager network_;
};

}  // namespace kestrum::test
