#pragma once

#include <QDBusContext>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QStringList>

#include <poll.h>
#include <unistd.h>

#include <vector>

namespace kestrum::test {

// The part of systemd-logind's manager that the session-end hold uses: Inhibit hands out the write end of
// a pipe as the lock, keeping the read end, so that the test sees whether any copy of a lock is still open;
// PrepareForShutdown is emitted on request. Lives on the test's main thread.
class FakeLogind : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

  public:
    ~FakeLogind() override {
        for (const int readEnd : readEnds_) ::close(readEnd);
    }

    // The arguments of every Inhibit call, "what|who|why|mode".
    QStringList calls;
    bool refuses = false;

    // Locks handed out whose every copy is not yet closed.
    int openLocks() const {
        int open = 0;
        for (const int readEnd : readEnds_) {
            pollfd descriptor{readEnd, POLLIN, 0};
            open += ::poll(&descriptor, 1, 0) == 0 ? 1 : 0;  // a closed write end makes the read end ready
        }
        return open;
    }

  public slots:
    QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why,
                                    const QString& mode) {
        calls << QStringList{what, who, why, mode}.join(QLatin1Char('|'));
        if (refuses) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("Permission denied"));
            return {};
        }
        int ends[2];
        if (::pipe(ends) != 0) return {};
        readEnds_.push_back(ends[0]);
        QDBusUnixFileDescriptor lock(ends[1]);  // keeps a copy of its own
        ::close(ends[1]);
        return lock;
    }

  signals:
    void PrepareForShutdown(bool start);

  private:
    std::vector<int> readEnds_;
};

}  // namespace kestrum::test
