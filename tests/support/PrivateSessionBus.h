#pragma once

#include <QProcess>
#include <QString>

namespace kestrum::test {

// A private D-Bus bus (dbus-daemon with the session configuration) for tests of the D-Bus adapters;
// nothing of the developer's own session is reached. Clients connect to `address()` with
// QDBusConnection::connectToBus. Main thread.
class PrivateSessionBus {
  public:
    PrivateSessionBus() = default;
    ~PrivateSessionBus() { stop(); }
    PrivateSessionBus(const PrivateSessionBus&) = delete;
    PrivateSessionBus& operator=(const PrivateSessionBus&) = delete;

    // False with `failure()` set when dbus-daemon is missing or did not come up.
    bool start();
    void stop();

    QString address() const { return address_; }
    QString failure() const { return failure_; }

  private:
    QProcess daemon_;
    QString address_;
    QString failure_;
};

}  // namespace kestrum::test
