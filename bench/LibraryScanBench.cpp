// The library scanner on the two libraries that bound it: a warm rescan of 10,000 unchanged recordings,
// which the review window runs at every saved recording and must not read a single sidecar; and a cold
// scan (a new scanner, as at launch) of 50 recordings whose sidecars hold 25 MB each, once with titles
// already right (one read per sidecar) and once as the save path leaves them (repair: three reads and a
// write per sidecar). The files are fresh in the page cache, so the cold figures measure the scanner's
// work, not the disk. Prints `figure <name> <value> <unit>` lines, medians of repeated runs.
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

// A session document of a long game, grown by snapshots until it holds 25 MB.
std::optional<std::string> largeSidecar(const std::optional<std::string>& title) {
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
    const int snapshots =
        static_cast<int>(kLargeSidecarMegabytes * 1e6 / static_cast<double>(probe.value().size())) + 1;
    for (int index = 0; index < snapshots; ++index) session.scoreboard->push_back(snapshot(index));
    Result<std::string> encoded = encodeSessionData(session);
    if (!encoded) return std::nullopt;
    return std::move(encoded).value();
}

std::optional<double> makeLargeLibrary(const QString& root, const std::optional<std::string>& title) {
    const std::optional<std::string> bytes = largeSidecar(title);
    if (!bytes) return std::nullopt;
    QDir().mkpath(root);
    const QByteArray data = QByteArray::fromStdString(*bytes);
    for (int index = 0; index < kLargeSidecars; ++index) {
        const QString movie = root + QLatin1Char('/') + movieName(index, "CLASSIC_Ahri_MIDDLE");
        if (!writeBytes(movie, {}) || !writeBytes(sessionDocumentPath(movie), data)) return std::nullopt;
    }
    return static_cast<double>(data.size()) * kLargeSidecars / 1e6;
}

// Every entry built from its sidecar: the title is the sidecar's and the items were found.
bool builtFromSidecars(const std::vector<MatchVideo>& matches) {
    return matches.size() == kLargeSidecars &&
           std::all_of(matches.begin(), matches.end(), [](const MatchVideo& m) {
               return m.matchTitle == kLargeTitle && m.legendaryItemIDsInPurchaseOrder.has_value();
           });
}

std::vector<MatchVideo> scanOnce(RecordingLibraryScanner& scanner, const QString& folder) {
    Result<std::vector<MatchVideo>> scanned = scanner.scan(folder).result();
    return scanned ? std::move(scanned).value() : std::vector<MatchVideo>{};
}

int benchSmallLibrary(const QString& root) {
    if (!makeSmallLibrary(root)) return 1;
    RecordingLibraryScanner scanner;
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
        RecordingLibraryScanner atLaunch;
        healthy = healthy && builtFromSidecars(scanOnce(atLaunch, root + QStringLiteral("/titled")));
    });
    if (!makeLargeLibrary(root + QStringLiteral("/untitled"), std::nullopt)) return 1;
    const double repairMs = medianMilliseconds(1, [&] {
        RecordingLibraryScanner atLaunch;
        healthy = healthy && builtFromSidecars(scanOnce(atLaunch, root + QStringLiteral("/untitled")));
    });
    if (!healthy) return 1;
    printFigure("library_cold_scan_50x25mb_ms", titledMs, "ms");
    printFigure("library_cold_scan_50x25mb_throughput", *megabytes / (titledMs / 1000), "MB/s");
    printFigure("library_cold_scan_50x25mb_with_repair_ms", repairMs, "ms");
    printFigure("library_cold_scan_50x25mb_with_repair_throughput", *megabytes / (repairMs / 1000), "MB/s");
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
    return 0;
}
