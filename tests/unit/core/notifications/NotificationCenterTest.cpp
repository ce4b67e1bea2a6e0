#include "core/notifications/NotificationCenter.h"

#include "core/notifications/RecordingNotifications.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>
#include <QUrl>

#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace {

using kestrum::NotificationObserverToken;

const QString kSaved = kestrum::RecordingNotifications::recordingSaved;

QVariantMap savedInfo(const QString& path) {
    return {{kestrum::RecordingNotifications::urlKey, QUrl::fromLocalFile(path)},
            {kestrum::RecordingNotifications::isHighlightKey, false}};
}

// One delivery as an observer saw it.
struct Delivery {
    QString observer;
    QVariantMap userInfo;
    QThread* thread = nullptr;
};

class NotificationCenter : public testing::Test {
  protected:
    NotificationObserverToken record(const QString& observer, const QString& name,
                                     QObject* context = nullptr) {
        return center_.observe(name, context, [this, observer](const QVariantMap& userInfo) {
            deliveries_.push_back({observer, userInfo, QThread::currentThread()});
        });
    }
    QStringList observersReached() const {
        QStringList names;
        for (const Delivery& d : deliveries_) names.append(d.observer);
        return names;
    }

    kestrum::NotificationCenter center_;
    std::vector<Delivery> deliveries_;  // main thread only
};

TEST_F(NotificationCenter, APostOnTheMainThreadReachesObserversOfThatNameBeforeItReturns) {
    const NotificationObserverToken first = record(QStringLiteral("first"), kSaved);
    const NotificationObserverToken other = record(QStringLiteral("other name"), QStringLiteral("elsewhere"));
    const NotificationObserverToken second = record(QStringLiteral("second"), kSaved);

    center_.post(kSaved, savedInfo(QStringLiteral("/videos/a.mov")));

    EXPECT_EQ(observersReached(), (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
    ASSERT_EQ(deliveries_.size(), 2u);
    EXPECT_EQ(deliveries_[0].userInfo.value(QStringLiteral("url")).toUrl(),
              QUrl::fromLocalFile(QStringLiteral("/videos/a.mov")));
    EXPECT_EQ(deliveries_[0].userInfo.value(QStringLiteral("isHighlight")), QVariant(false));
    EXPECT_EQ(deliveries_[0].thread, QThread::currentThread());
}

TEST_F(NotificationCenter, APostFromAWorkerThreadIsDeliveredLaterOnTheMainThread) {
    const NotificationObserverToken token = record(QStringLiteral("observer"), kSaved);
    std::thread worker([this] { center_.post(kSaved, savedInfo(QStringLiteral("/videos/b.mov"))); });
    worker.join();
    // Queued: nothing ran on the worker, and nothing runs before the main thread turns its event loop.
    EXPECT_TRUE(deliveries_.empty());

    ASSERT_TRUE(kestrum::test::waitUntil([this] { return !deliveries_.empty(); }));
    ASSERT_EQ(deliveries_.size(), 1u);
    EXPECT_EQ(deliveries_[0].thread, QCoreApplication::instance()->thread());
    EXPECT_EQ(deliveries_[0].userInfo, savedInfo(QStringLiteral("/videos/b.mov")));
}

TEST_F(NotificationCenter, AnObserverEndsWithItsTokenOrItsContext) {
    struct Case {
        const char* name;
        bool resetToken;
        bool destroyContext;
        bool delivered;
    };
    const std::vector<Case> cases = {
        {"both alive", false, false, true},
        {"token reset", true, false, false},
        {"context destroyed", false, true, false},
        {"both", true, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        deliveries_.clear();
        auto context = std::make_unique<QObject>();
        NotificationObserverToken token = record(QStringLiteral("observer"), kSaved, context.get());
        if (c.resetToken) token.reset();
        if (c.destroyContext) context.reset();
        center_.post(kSaved);
        EXPECT_EQ(deliveries_.size(), c.delivered ? 1u : 0u);
    }
}

TEST_F(NotificationCenter, ADestroyedTokenStopsADeliveryAlreadyQueued) {
    std::optional<NotificationObserverToken> token = record(QStringLiteral("observer"), kSaved);
    std::thread worker([this] { center_.post(kSaved); });
    worker.join();
    token.reset();
    // A second, later observer shows when the queued delivery has run.
    const NotificationObserverToken witness = record(QStringLiteral("witness"), kSaved);
    ASSERT_TRUE(kestrum::test::waitUntil([this] { return !deliveries_.empty(); }));
    EXPECT_EQ(observersReached(), QStringList{QStringLiteral("witness")});
}

TEST_F(NotificationCenter, AHandlerMayRemoveAnotherObserverDuringTheDelivery) {
    std::optional<NotificationObserverToken> second;
    const NotificationObserverToken first = center_.observe(kSaved, nullptr, [&](const QVariantMap&) {
        deliveries_.push_back({QStringLiteral("first"), {}, nullptr});
        second.reset();
    });
    second = record(QStringLiteral("second"), kSaved);
    center_.post(kSaved);
    EXPECT_EQ(observersReached(), QStringList{QStringLiteral("first")});
}

TEST_F(NotificationCenter, SharedIsOneCentreOnTheMainThread) {
    kestrum::NotificationCenter* fromWorker = nullptr;
    std::thread worker([&fromWorker] { fromWorker = &kestrum::NotificationCenter::shared(); });
    worker.join();
    EXPECT_EQ(fromWorker, &kestrum::NotificationCenter::shared());
    EXPECT_EQ(fromWorker->thread(), QCoreApplication::instance()->thread());
}

}  // namespace
