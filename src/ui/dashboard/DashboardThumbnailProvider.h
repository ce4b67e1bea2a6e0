#pragma once

#include <QImage>
#include <QMutex>
#include <QQuickImageProvider>

namespace kestrum::ui {

// The selected recording's thumbnail for the "Loading Video..." overlay, as "image://dashboard/<id>":
// whatever the id, the picture last handed over (the id only changes the address, so that a new
// thumbnail is asked for again).
//
// Threads: `setThumbnail` on the main thread; `requestImage` on whichever thread the scene asks from,
// hence the lock.
class DashboardThumbnailProvider final : public QQuickImageProvider {
  public:
    static constexpr const char* kProviderID = "dashboard";

    DashboardThumbnailProvider();

    void setThumbnail(const QImage& thumbnail);
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

  private:
    QMutex lock_;
    QImage thumbnail_;  // guarded by lock_
};

}  // namespace kestrum::ui
