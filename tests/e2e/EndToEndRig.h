#pragma once

#include "support/DisplayServers.h"

#include <QDateTime>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace kestrum::test {

// One end-to-end run: a private X server with a window manager and a private sound server, the built
// kestrum executable, and the game simulator on the service's real port, all in the test's own home
// (HOME and the XDG folders point into a temporary folder). Main thread.
class EndToEndRig {
  public:
    EndToEndRig() = default;
    ~EndToEndRig();

    // Before `start`: an environment variable for kestrum; that kestrum ignores SIGXFSZ, so that a write
    // past a file size limit fails with EFBIG, as a write to a full disk fails with ENOSPC.
    void setKestrumEnvironment(const QString& name, const QString& value);
    void setKestrumIgnoresFileSizeSignal() { ignoreFileSizeSignal_ = true; }

    // Starts the servers and kestrum; false with `failure()` when a piece could not start.
    bool start();
    // Kills kestrum with SIGKILL, as a crash would, and waits for it to be gone.
    void killKestrum();
    // Starts kestrum again on the same servers and home (after a kill or a stop).
    bool restartKestrum();
    // Sets the limit on the size of every file the running kestrum writes (RLIMIT_FSIZE, through
    // prlimit); absent lifts it, as freed space would.
    bool limitKestrumFileSize(std::optional<qint64> bytes);
    // Stops the sound server while the programs run.
    void stopSoundServer() { sound_.stop(); }
    // Starts the simulator on `script` (a path), with extra arguments; false when it did not listen.
    bool startGame(const QString& script, const QStringList& extraArguments = {});
    // Waits for the simulator to end by itself; gives the host time (CLOCK_MONOTONIC ns) of its end.
    std::optional<qint64> waitForGameEnd(int timeoutMs);
    void killGame();
    // Waits until a line of kestrum's standard output contains `text`.
    bool waitForKestrumLine(const QString& text, int timeoutMs);
    // Waits until a movie and its document stand in the recordings folder; gives the movie's path.
    std::optional<QString> waitForSavedRecording(int timeoutMs);
    // Runs another launch of kestrum with `arguments` beside the running one and waits for it to end; its
    // output when it ended with status 0 (it handed its request over), absent otherwise.
    std::optional<QString> runAnotherLaunch(const QStringList& arguments, int timeoutMs = 20000);
    // Sends SIGTERM to kestrum and waits for it to end; true on a clean exit.
    bool stopKestrum(int timeoutMs = 30000);

    QString recordingsFolder() const;
    QStringList captureLogMessages() const;  // the log file's lines without timestamp and level
    QStringList kestrumOutput() const { return kestrumOutput_; }
    // What the simulator printed so far.
    QString gameOutput() const { return gameOutput_; }
    qint64 gameProcessId() const;
    QString failure() const { return failure_; }
    // Whether a tray runs on the rig's desktop (trayer, when installed).
    bool hasTray() const { return tray_ != nullptr; }

    // Makes another application's window the active one (a window manager does the activation).
    bool activateOtherWindow();
    bool activateGameWindow();

  private:
    void collectKestrumOutput();
    bool launchKestrum();

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
    QHash<QString, QString> kestrumEnvironment_;
    QStringList moviesAtStart_;
    bool ignoreFileSizeSignal_ = false;
    QString failure_;
};

// The frame of `moviePath` at `seconds`, extracted with the ffmpeg program; absent when it cannot be.
std::optional<QImage> movieFrameAt(const QString& moviePath, double seconds);

// ffprobe's JSON of the movie's format and streams; absent when ffprobe cannot read the movie.
std::optional<QJsonObject> probeMovie(const QString& moviePath);
// The movie's duration in seconds, and each stream's in stream order, from ffprobe.
std::optional<double> probedDurationSeconds(const QString& moviePath);
std::vector<double> probedStreamDurations(const QString& moviePath);

// The host time, in seconds, at which kestrum's latest movie timeline started, from its console line.
std::optional<double> timelineStartSeconds(const QStringList& kestrumOutput);

}  // namespace kestrum::test
