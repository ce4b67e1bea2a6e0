#pragma once

#include "core/notifications/NotificationObserverToken.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <map>
#include <memory>
#include <mutex>

namespace kestrum {

// The in-process notification centre: named notifications with a map of user information, posted by
// anyone and delivered to observers on the main thread. The recording side tells the review side of a
// saved recording through it (RecordingNotifications.h); the two share no other live state.
//
// Threads: `post` may be called from any thread. On the centre's thread (the main thread) observers run
// synchronously, before `post` returns; from any other thread the delivery is queued to the main thread
// and `post` returns at once. Observers of one notification run in the order they were added. `observe`
// and token removal may be called from any thread; handlers always run on the main thread.
class NotificationCenter : public QObject {
    Q_OBJECT

  public:
    using Handler = std::function<void(const QVariantMap& userInfo)>;

    // The process-wide centre. Made on first use, thread-safe, never destroyed; it belongs to the main
    // thread (the thread of the QCoreApplication, which must exist by the first post from another thread).
    static NotificationCenter& shared();

    explicit NotificationCenter(QObject* parent = nullptr);
    ~NotificationCenter() override;

    void post(const QString& name, const QVariantMap& userInfo = {});

    // Calls `handler` for every later notification called `name` until the token is destroyed or reset,
    // or `context` is destroyed, whichever comes first. `context` may be null, and then only the token
    // ends the observer; a context is expected to live on the main thread, where handlers run.
    [[nodiscard]] NotificationObserverToken observe(const QString& name, QObject* context, Handler handler);

  private:
    struct Observer {
        QString name;
        QPointer<QObject> context;
        bool hasContext = false;
        std::shared_ptr<const Handler> handler;
    };
    // Shared with the tokens, so that a token that outlives the centre removes nothing.
    struct Registry {
        std::mutex mutex;
        std::map<quint64, Observer> observers;  // guarded by mutex; ordered by id, which is the order added
        quint64 nextId = 1;                     // guarded by mutex
    };

    void deliver(const QString& name, const QVariantMap& userInfo);

    const std::shared_ptr<Registry> registry_ = std::make_shared<Registry>();
};

}  // namespace kestrum
