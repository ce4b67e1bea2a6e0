#pragma once

#include <QProcess>
#include <QString>

#include <memory>

namespace kestrum::test {

// A private X server (Xvfb, with the Composite, MIT-SHM, Damage and RandR extensions it builds in) for
// tests that need a real display. Starting it points DISPLAY at it for this process and for the
// programs the test starts; stopping it restores the old value. Main thread.
class XvfbServer {
  public:
    XvfbServer() = default;
    ~XvfbServer();
    XvfbServer(const XvfbServer&) = delete;
    XvfbServer& operator=(const XvfbServer&) = delete;

    // False with `failure()` set when Xvfb is missing or did not come up within 10 seconds.
    bool start(int width = 1920, int height = 1080);
    // Starts openbox on the server, a window manager that keeps the EWMH properties (client list,
    // active window); false when it is missing or did not take the screen.
    bool startWindowManager();
    void stop();

    QString displayName() const { return displayName_; }
    QString failure() const { return failure_; }

  private:
    std::unique_ptr<QProcess> server_;
    std::unique_ptr<QProcess> windowManager_;
    QString displayName_;
    QString failure_;
    QByteArray previousDisplay_;
    bool hadPreviousDisplay_ = false;
};

// A private PulseAudio server with a null sink as its default output (its monitor is the default
// source's sibling) and a null source for the microphone, reached through PULSE_SERVER for this process
// and its children. Main thread.
class PulseAudioServer {
  public:
    PulseAudioServer() = default;
    ~PulseAudioServer();
    PulseAudioServer(const PulseAudioServer&) = delete;
    PulseAudioServer& operator=(const PulseAudioServer&) = delete;

    bool start();
    void stop();

    QString serverAddress() const { return serverAddress_; }
    QString failure() const { return failure_; }

  private:
    std::unique_ptr<QProcess> server_;
    QString runtimeDirectory_;
    QString serverAddress_;
    QString failure_;
};

}  // namespace kestrum::test
