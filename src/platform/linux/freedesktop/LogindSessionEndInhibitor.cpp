#include "platform/linux/freedesktop/LogindSessionEndInhibitor.h"

#include "base/log/CaptureLog.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

#include <fcntl.h>
#include <unistd.h>

namespace kestrum {

LogindSessionEndInhibitor::LogindSessionEndInhibitor(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {
    bus_.connect(QLatin1String(kService), QLatin1String(kPath), QLatin1String(kInterface),
                 QStringLiteral("PrepareForShutdown"), this, SLOT(prepareForShutdown(bool)));
}

LogindSessionEndInhibitor::~LogindSessionEndInhibitor() {
    release();
}

void LogindSessionEndInhibitor::setHeld(bool held) {
    wanted_ = held;
    if (!held) {
        release();
    } else if (descriptor_ < 0 && !requesting_) {
        requestLock();
    }
}

Subscription LogindSessionEndInhibitor::observeSessionEnding(Handler handler) {
    return endingHandlers_.add([handler = std::move(handler)](const bool&) { handler(); });
}

void LogindSessionEndInhibitor::prepareForShutdown(bool starting) {
    if (starting) endingHandlers_.deliver(true);
}

void LogindSessionEndInhibitor::requestLock() {
    QDBusMessage call = QDBusMessage::createMethodCall(QLatin1String(kService), QLatin1String(kPath),
                                                       QLatin1String(kInterface), QStringLiteral("Inhibit"));
    call << QStringLiteral("shutdown") << QStringLiteral("Kestrum")
         << QStringLiteral("Finishing the recording of a game") << QStringLiteral("delay");
    requesting_ = true;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        requesting_ = false;
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *finished;
        if (reply.isError()) {
            logCaptureError(QStringLiteral("Could not delay the system's shutdown during the recording: ") +
                            reply.error().message());
            return;
        }
        // Released meanwhile: the reply's own copy of the lock closes with it.
        if (!wanted_ || descriptor_ >= 0) return;
        descriptor_ = fcntl(reply.value().fileDescriptor(), F_DUPFD_CLOEXEC, 0);
    });
}

void LogindSessionEndInhibitor::release() {
    if (descriptor_ < 0) return;
    ::close(descriptor_);
    descriptor_ = -1;
}

}  // namespace kestrum
