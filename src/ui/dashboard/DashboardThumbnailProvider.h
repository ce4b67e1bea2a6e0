#pragma once

#include <QImage>
#include <QMutex>
#include <QQuickImageProvider>
#include <QString>

namespace kestrum {
class DashboardController;
}

namespace kestrum::ui {

// The selected recording's thumbnail for the "Loading Video..." overlay, as "image://dashboard/<id>",
// where <id> is the controller's thumbnailID. Only the id last published gives the picture; any other
// id (an older one still asked for, or one that never existed) gives a single transparent pixel, so that
// the overlay draws nothing there instead of QML warning about a provider without an image.
//
// Threads: `setThumbnail` and `follow` on the main thread; `requestImage` on whichever thread the scene
// asks from, hence the lock.
class DashboardThumbnailProvider final : public QQuickImageProvider {
  public:
    static constexpr const char* kProviderID = "dashboard";

    DashboardThumbnailProvider();

    // Holds each thumbnail `controller` publishes, before its bindings ask for it. `controller` must
    // outlive the provider or be deleted first (the connection then goes with it).
    void follow(const DashboardController& controller);
    // An empty `id` or a null `thumbnail`: none.
    void setThumbnail(const QString& id, const QImage& thumbnail);
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

  private:
    QMutex lock_;
    QString id_;        // guarded by lock_
    QImage thumbnail_;  // guarded by lock_
};

}  // namespace kestrum::ui
