#pragma once

#include "support/DisplayServers.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace kestrum::test {

// One end-to-end run: a private X server with a window manager and a private sound server, the built
// kestrum executable, and the game simulator on the service's real port, all in the test's own home
// (HOME and the XDG folders point into a temporary folder). Main thread.
class EndToEndRig {
  public:
    EndToEndRig() = default;
    ~EndToEndRig();

    // Starts the servers and kestrum; false with `failure()` when a piece could not start.
    bool start();
    // Starts the simulator on `script` (a path), with extra arguments; false when it did not listen.
    bool startGame(const QString& script, const QStringList& extraArguments = {});
    // Waits for the simulator to end by itself; gives the host time (CLOCK_MONOTONIC ns) of its end.
    std::optional<qint64> waitForGameEnd(int timeoutMs);
    void killGame();
    // Waits until a line of kestrum's standard output contains `text`.
    bool waitForKestrumLine(const QString& text, int timeoutMs);
    // Waits until a movie and its document stand in the recordings folder; gives the movie's path.
    std::optional<QString> waitForSavedRecording(int timeoutMs);
    // Sends SIGTERM to kestrum and waits for it to end; true on a clean exit.
    bool stopKestrum(int timeoutMs = 30000);

    QString recordingsFolder() const;
    QStringList captureLogMessages() const;  // the log file's lines without timestamp and level
    QStringList kestrumOutput() const { return kestrumOutput_; }
    // What the simulator printed so far.
    QString gameOutput() const { return gameOutput_; }
    qint64 gameProcessId() const;
    QString failure() const { return failure_; }

    // Makes another application's window the active one (a window manager does the activation).
    bool activateOtherWindow();
    bool activateGameWindow();

  private:
    void collectKestrumOutput();

    XvfbServer display_;
    PulseAudioServer sound_;
    std::unique_ptr<QProcess> tray_;  // trayer, when installed: Kestrum sits in it as on a user's desktop
    std::unique_ptr<QProcess> kestrum_;
    std::unique_ptr<QProcess> game_;
    std::unique_ptr<QProcess> otherWindow_;
    QStringList kestrumOutput_;
    QByteArray partialLine_;
    QString gameOutput_;
    QProcessEnvironment childEnvironment_;
    QStringList moviesAtStart_;
    QString failure_;
};

// The frame of `moviePath` at `seconds`, extracted with the ffmpeg program; absent when it cannot be.
std::optional<QImage> movieFrameAt(const QString& moviePath, double seconds);

}  // namespace kestrum::test
