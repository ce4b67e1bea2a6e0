#pragma once

#include "platform/ports/HandlerList.h"
#include "platform/ports/SessionEndInhibitor.h"

#include <QDBusConnection>
#include <QObject>

namespace kestrum {

// The session-end hold on systemd-logind: a "delay" inhibitor lock on "shutdown" (org.freedesktop.login1
// Manager.Inhibit), held as the file descriptor logind hands out and given back by closing it. While it is
// held, a power-off or reboot waits for it, up to logind's InhibitDelayMaxSec (5 seconds by default), and
// logind announces the end with PrepareForShutdown(true), which reaches the session-ending handlers.
//
// The request goes out asynchronously; a refusal or a system without logind leaves the hold untaken, with
// one capture log error per refused request.
//
// Threads: main thread. The connection is the system bus in the product; tests give a private bus.
class LogindSessionEndInhibitor final : public QObject, public SessionEndInhibitor {
    Q_OBJECT

  public:
    static constexpr const char* kService = "org.freedesktop.login1";
    static constexpr const char* kPath = "/org/freedesktop/login1";
    static constexpr const char* kInterface = "org.freedesktop.login1.Manager";

    explicit LogindSessionEndInhibitor(QDBusConnection bus = QDBusConnection::systemBus(),
                                       QObject* parent = nullptr);
    ~LogindSessionEndInhibitor() override;

    void setHeld(bool held) override;
    bool isHeld() const override { return descriptor_ >= 0; }
    [[nodiscard]] Subscription observeSessionEnding(Handler handler) override;

  private slots:
    void prepareForShutdown(bool starting);

  private:
    void requestLock();
    void release();

    QDBusConnection bus_;
    // Main thread.
    bool wanted_ = false;
    bool requesting_ = false;
    int descriptor_ = -1;  // the lock; owned, closed to give it back
    HandlerList<bool> endingHandlers_;
};

}  // namespace kestrum
