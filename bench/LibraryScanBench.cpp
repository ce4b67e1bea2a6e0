// The library scanner on the libraries that bound it: a warm rescan of 10,000 unchanged recordings,
// which the review window runs at every saved recording and must not read a single sidecar; a cold
// scan (a new scanner without a disk cache) of 50 recordings whose sidecars hold 25 MB each, once with
// titles already right (one read per sidecar) and once as the save path leaves them (repair: three reads
// and a write per sidecar); and the launches of a library of 1,000 recordings of 30-minute games with
// 10 MB sidecars: the first, which decodes every sidecar and writes the disk cache, and a relaunch with
// nothing changed, which decodes none. The 1,000 sidecars are hard links of one file, so the library
// takes 10 MB of disk. The files are fresh in the page cache, so the figures measure the scanner's work,
// not the disk. Prints `figure <name> <value> <unit>` lines, medians of repeated runs.
#include "BenchTiming.h"
#include "SyntheticPlayers.h"
#include "core/library/RecordingLibraryScanner.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "core/telemetry/SessionDocumentCodec.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace {

using kestrum::bench::medianMilliseconds;

using namespace kestrum;

constexpr int kSmallLibrary = 10'000;
constexpr int kLargeSidecars = 50;
constexpr double kLargeSidecarMegabytes = 25;
constexpr int kLaunchLibrary = 1'000;
constexpr double kLaunchSidecarMegabytes = 10;
constexpr const char* kLargeTitle = "Classic \xC2\xB7 Ahri \xC2\xB7 Mid";

void printFigure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.1f %s\n", name, value, unit);
}

bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QString movieName(int index, const char* tail) {
    return QStringLiteral("2026-03-%1_21-07-%2_%3.mov")
        .arg(10 + index % 18)
        .arg(index, 5, 10, QLatin1Char('0'))
        .arg(QString::fromUtf8(tail));
}

// Zero-byte movies with tiny titled sidecars, 500 to a subfolder.
bool makeSmallLibrary(const QString& root) {
    const QByteArray sidecar = R"({"events":[],"title":"Finals with friends"})";
    for (int index = 0; index < kSmallLibrary; ++index) {
        const QString folder = root + QStringLiteral("/%1").arg(index / 500);
        QDir().mkpath(folder);
        const QString movie = folder + QLatin1Char('/') + movieName(index, "ARAM_Lux_NONE");
        if (!writeBytes(movie, {}) || !writeBytes(sessionDocumentPath(movie), sidecar)) return false;
    }
    return true;
}

// A player whose items turn legendary as the game goes on, one slot every ten minutes, so that the scan
// has a purchase order to derive.
RecordingScoreboardPlayer playerBuyingLegendaries(int snapshot, int index) {
    RecordingScoreboardPlayer player = bench::syntheticPlayer(snapshot, index);
    player.items.clear();
    for (int slot = 0; slot < 7; ++slot) {
        const std::int64_t itemID =
            slot == 6 ? 3340 : (snapshot / 600 > slot ? 3031 + slot * 47 : 1001 + slot);
        player.items.push_back({1, "Infinity Edge of the long name", itemID, 3400, slot});
    }
    return player;
}

// A session document of a long game, grown by snapshots until it holds `megabytes`.
std::optional<std::string> largeSidecar(const std::optional<std::string>& title, double megabytes) {
    RecordingSessionData session = makeSessionData(std::nullopt, RecordingTelemetry{});
    session.title = title;
    const auto snapshot = [](int index) {
        RecordingScoreboardSnapshot taken{3.4 + index, 1.25 + index, {}};
        for (int player = 0; player < 10; ++player)
            taken.players.push_back(playerBuyingLegendaries(index, player));
        return taken;
    };
    RecordingSessionData oneSnapshot;
    oneSnapshot.scoreboard = {snapshot(0)};
    const Result<std::string> probe = encodeSessionData(oneSnapshot);
    if (!probe) return std::nullopt;
    const int snapshots = static_cast<int>(megabytes * 1e6 / static_cast<double>(probe.value().size())) + 1;
    for (int index = 0; index < snapshots; ++index) session.scoreboard->push_back(snapshot(index));
    Result<std::string> encoded = encodeSessionData(session);
    if (!encoded) return std::nullopt;
    return std::move(encoded).value();
}

std::optional<double> makeLargeLibrary(const QString& root, const std::optional<std::string>& title) {
    const std::optional<std::string> bytes = largeSidecar(title, kLargeSidecarMegabytes);
    if (!bytes) return std::nullopt;
    QDir().mkpath(root);
    const QByteArray data = QByteArray::fromStdString(*bytes);
    for (int index = 0; index < kLargeSidecars; ++index) {
        const QString movie = root + QLatin1Char('/') + movieName(index, "CLASSIC_Ahri_MIDDLE");
        if (!writeBytes(movie, {}) || !writeBytes(sessionDocumentPath(movie), data)) return std::nullopt;
    }
    return static_cast<double>(data.size()) * kLargeSidecars / 1e6;
}

// 1,000 movies named as the save path names them, each with a hard link of one 10 MB sidecar whose title
// is already right; the megabytes of sidecar.
std::optional<double> makeLaunchLibrary(const QString& root) {
    const std::optional<std::string> bytes = largeSidecar(kLargeTitle, kLaunchSidecarMegabytes);
    if (!bytes || !QDir().mkpath(root)) return std::nullopt;
    const QString original = root + QStringLiteral("/sidecar.original");
    if (!writeBytes(original, QByteArray::fromStdString(*bytes))) return std::nullopt;
    for (int index = 0; index < kLaunchLibrary; ++index) {
        const QString movie =
            root + QStringLiteral("/%1/").arg(index / 100) + movieName(index, "CLASSIC_Ahri_MIDDLE");
        if (!QDir().mkpath(QFileInfo(movie).absolutePath()) || !writeBytes(movie, {})) return std::nullopt;
        if (::link(QFile::encodeName(original).constData(),
                   QFile::encodeName(sessionDocumentPath(movie)).constData()) != 0)
            return std::nullopt;
    }
    return static_cast<double>(bytes->size()) * kLaunchLibrary / 1e6;
}

// Every entry built from its sidecar: the title is the sidecar's and the items were found.
bool builtFromSidecars(const std::vector<MatchVideo>& matches, std::size_t count = kLargeSidecars) {
    return matches.size() == count && std::all_of(matches.begin(), matches.end(), [](const MatchVideo& m) {
               return m.matchTitle == kLargeTitle && m.legendaryItemIDsInPurchaseOrder.has_value();
           });
}

std::vector<MatchVideo> scanOnce(RecordingLibraryScanner& scanner, const QString& folder) {
    Result<std::vector<MatchVideo>> scanned = scanner.scan(folder).result();
    return scanned ? std::move(scanned).value() : std::vector<MatchVideo>{};
}

int benchSmallLibrary(const QString& root) {
    if (!makeSmallLibrary(root)) return 1;
    RecordingLibraryScanner scanner(QString{});
    std::size_t listed = 0;
    printFigure("library_cold_scan_10000_tiny_ms",
                medianMilliseconds(1, [&] { listed = scanOnce(scanner, root).size(); }), "ms");
    const double warmMs = medianMilliseconds(7, [&] { listed = scanOnce(scanner, root).size(); });
    if (listed != kSmallLibrary) return 1;
    printFigure("library_warm_rescan_10000_ms", warmMs, "ms");
    return 0;
}

int benchLargeSidecars(const QString& root) {
    const std::optional<double> megabytes = makeLargeLibrary(root + QStringLiteral("/titled"), kLargeTitle);
    if (!megabytes) return 1;
    bool healthy = true;
    const double titledMs = medianMilliseconds(3, [&] {
        RecordingLibraryScanner atLaunch(QString{});
        healthy = healthy && builtFromSidecars(scanOnce(atLaunch, root + QStringLiteral("/titled")));
    });
    if (!makeLargeLibrary(root + QStringLiteral("/untitled"), std::nullopt)) return 1;
    const double repairMs = medianMilliseconds(1, [&] {
        RecordingLibraryScanner atLaunch(QString{});
        healthy = healthy && builtFromSidecars(scanOnce(atLaunch, root + QStringLiteral("/untitled")));
    });
    if (!healthy) return 1;
    printFigure("library_cold_scan_50x25mb_ms", titledMs, "ms");
    printFigure("library_cold_scan_50x25mb_throughput", *megabytes / (titledMs / 1000), "MB/s");
    printFigure("library_cold_scan_50x25mb_with_repair_ms", repairMs, "ms");
    printFigure("library_cold_scan_50x25mb_with_repair_throughput", *megabytes / (repairMs / 1000), "MB/s");
    return 0;
}

// The first launch once (it fills the disk cache), then relaunches, each a new scanner on that cache.
int benchLaunches(const QString& root) {
    const std::optional<double> megabytes = makeLaunchLibrary(root + QStringLiteral("/library"));
    if (!megabytes) return 1;
    const QString diskCache = root + QStringLiteral("/cache/RecordingLibraryScan.json");
    bool healthy = true;
    const double firstMs = medianMilliseconds(1, [&] {
        RecordingLibraryScanner firstLaunch(diskCache);
        healthy = builtFromSidecars(scanOnce(firstLaunch, root + QStringLiteral("/library")), kLaunchLibrary);
    });
    const double relaunchMs = medianMilliseconds(5, [&] {
        RecordingLibraryScanner relaunch(diskCache);
        healthy = healthy &&
                  builtFromSidecars(scanOnce(relaunch, root + QStringLiteral("/library")), kLaunchLibrary);
    });
    if (!healthy || !QFileInfo::exists(diskCache)) return 1;
    printFigure("library_first_launch_scan_1000x10mb_ms", firstMs, "ms");
    printFigure("library_first_launch_scan_1000x10mb_throughput", *megabytes / (firstMs / 1000), "MB/s");
    printFigure("library_relaunch_scan_1000x10mb_unchanged_ms", relaunchMs, "ms");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QTemporaryDir home;
    if (!home.isValid()) return 1;
    if (benchSmallLibrary(home.path() + QStringLiteral("/small")) != 0) {
        std::fprintf(stderr, "the warm rescan did not list the library\n");
        return 1;
    }
    if (benchLargeSidecars(home.path() + QStringLiteral("/large")) != 0) {
        std::fprintf(stderr, "the cold scan of large sidecars did not build the entries from them\n");
        return 1;
    }
    if (benchLaunches(home.path() + QStringLiteral("/launches")) != 0) {
        std::fprintf(stderr, "the launches did not build the entries, or no disk cache was written\n");
        return 1;
    }
    return 0;
}
