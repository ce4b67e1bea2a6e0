#pragma once

#include <QCache>
#include <QImage>
#include <QString>

#include <functional>
#include <mutex>

namespace kestrum::ui {

// Drawn icons and art by key (what, tint, pixel size), so that a list of a hundred rows with the same
// symbol draws it once. Least recently used entries go beyond `kCapacity`.
//
// Threads: any; the scene graph's render threads paint items while the main thread may change them.
class PictureCache {
  public:
    static constexpr int kCapacity = 512;

    static PictureCache& shared();

    // The cached picture of `key`, or what `draw` makes (cached unless null).
    QImage picture(const QString& key, const std::function<QImage()>& draw);

  private:
    std::mutex mutex_;
    QCache<QString, QImage> pictures_{kCapacity};  // guarded by mutex_
};

}  // namespace kestrum::ui
