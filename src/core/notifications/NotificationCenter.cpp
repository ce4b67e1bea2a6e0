#include "core/notifications/NotificationCenter.h"

#include <QCoreApplication>
#include <QThread>

#include <utility>
#include <vector>

namespace kestrum {

NotificationCenter& NotificationCenter::shared() {
    // Leaked on purpose: notifications may be posted while static destructors run at exit.
    static NotificationCenter* const instance = [] {
        auto* created = new NotificationCenter;
        if (QCoreApplication* application = QCoreApplication::instance()) {
            created->moveToThread(application->thread());
        }
        return created;
    }();
    return *instance;
}

NotificationCenter::NotificationCenter(QObject* parent) : QObject(parent) {}

NotificationCenter::~NotificationCenter() {
    const std::lock_guard lock(registry_->mutex);
    registry_->observers.clear();
}

void NotificationCenter::post(const QString& name, const QVariantMap& userInfo) {
    if (QThread::currentThread() == thread()) {
        deliver(name, userInfo);
        return;
    }
    QMetaObject::invokeMethod(
        this, [this, name, userInfo] { deliver(name, userInfo); }, Qt::QueuedConnection);
}

NotificationObserverToken NotificationCenter::observe(const QString& name, QObject* context,
                                                      Handler handler) {
    quint64 id = 0;
    {
        const std::lock_guard lock(registry_->mutex);
        id = registry_->nextId++;
        registry_->observers.emplace(id, Observer{name, context, context != nullptr,
                                                  std::make_shared<const Handler>(std::move(handler))});
    }
    const std::weak_ptr<Registry> weakRegistry = registry_;
    const auto erase = [weakRegistry, id] {
        if (const std::shared_ptr<Registry> registry = weakRegistry.lock()) {
            const std::lock_guard lock(registry->mutex);
            registry->observers.erase(id);
        }
    };
    // The observer also ends with its context. The connection ends with the context, the centre or the
    // token, whichever goes first, so that a long-lived context does not gather connections.
    QMetaObject::Connection contextEnds;
    if (context) {
        contextEnds = QObject::connect(context, &QObject::destroyed, this, erase, Qt::DirectConnection);
    }
    const auto remove = [erase, contextEnds] {
        QObject::disconnect(contextEnds);
        erase();
    };
    return NotificationObserverToken(remove);
}

void NotificationCenter::deliver(const QString& name, const QVariantMap& userInfo) {
    std::vector<quint64> ids;
    {
        const std::lock_guard lock(registry_->mutex);
        for (const auto& [id, observer] : registry_->observers) {
            if (observer.name == name) ids.push_back(id);
        }
    }
    // Each observer is looked up again right before its call, so that one removed by an earlier handler
    // (or by another thread) is not called; the lock is never held while a handler runs.
    for (const quint64 id : ids) {
        std::shared_ptr<const Handler> handler;
        {
            const std::lock_guard lock(registry_->mutex);
            const auto it = registry_->observers.find(id);
            if (it == registry_->observers.end()) continue;
            if (it->second.hasContext && it->second.context.isNull()) continue;
            handler = it->second.handler;
        }
        (*handler)(userInfo);
    }
}

}  // namespace kestrum
