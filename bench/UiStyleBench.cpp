// kestrum-bench-ui: what the windows' ground costs where a list scrolls into new rows. Each symbol and each
// piece of art is drawn once per size and colour and then comes from the picture cache, so the figures
// that matter are the first draw (a cache miss) and the cache hit.
//   figure ui_lucide_draw_24px_ms      a fill symbol with cut-outs drawn at 24 px (cache miss)
//   figure ui_lucide_draw_numbered_ms  a numbered symbol at 24 px (cache miss)
//   figure ui_art_draw_24px_ms         one piece of art at 24 px (cache miss)
//   figure ui_picture_cache_hit_us     a cached picture looked up
//   figure ui_all_symbols_48px_ms      every symbol name drawn once at 48 px (a cold icons page)
#include "BenchTiming.h"
#include "ui/style/PictureCache.h"
#include "ui/style/art/CommunityDragonArt.h"
#include "ui/style/icons/LucideIconRenderer.h"
#include "ui/style/icons/LucideSymbolTable.h"

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kRuns = 200;

void figure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.4f %s\n", name, value, unit);
}

}  // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QGuiApplication application(argc, argv);
    using kestrum::bench::medianMilliseconds;
    using namespace kestrum::ui;
    const QSize icon(24, 24);

    figure(
        "ui_lucide_draw_24px_ms",
        medianMilliseconds(kRuns, [&] { (void)renderLucideIcon(u"checkmark.circle.fill", Qt::black, icon); }),
        "ms");
    figure("ui_lucide_draw_numbered_ms",
           medianMilliseconds(kRuns, [&] { (void)renderLucideIcon(u"gobackward.10", Qt::black, icon); }),
           "ms");
    figure("ui_art_draw_24px_ms",
           medianMilliseconds(kRuns, [&] { (void)renderCommunityDragonArt(u"baron", icon); }), "ms");
    PictureCache& cache = PictureCache::shared();
    const QString key = QStringLiteral("bench|star.fill|24");
    (void)cache.picture(key, [&] { return renderLucideIcon(u"star.fill", Qt::black, icon); });
    figure(
        "ui_picture_cache_hit_us",
        1000.0 * medianMilliseconds(kRuns * 10, [&] { (void)cache.picture(key, [] { return QImage(); }); }),
        "us");
    figure("ui_all_symbols_48px_ms",
           medianMilliseconds(20,
                              [] {
                                  for (const LucideSymbolEntry& entry : lucideSymbolEntries()) {
                                      (void)renderLucideIcon(entry.symbolName, Qt::black, QSize(48, 48));
                                  }
                              }),
           "ms");
    return 0;
}
