#include "core/library/detail/RecordingDetailLoader.h"

#include "base/common/AtomicFileWrite.h"

#include "base/async/Detached.h"
#include "base/async/SerialQueue.h"
#include "core/library/detail/CachedDetailCodec.h"
#include "core/library/detail/DetailCacheKeys.h"
#include "core/library/detail/RecordingTimelineSpan.h"
#include "core/library/detail/ThumbnailMemoryCache.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "media/MovieProbe.h"
#include "media/ThumbnailGenerator.h"

#include <QDir>
#include <QFile>
#include <QPromise>
#include <QSaveFile>
#include <QStandardPaths>

#include <map>
#include <string_view>
#include <utility>

namespace kestrum {

namespace {

// A promise that std::function can carry: copies share one QPromise, which is started at once.
template <class T>
class SharedPromise {
  public:
    SharedPromise() : promise_(std::make_shared<QPromise<T>>()) { promise_->start(); }
    QFuture<T> future() const { return promise_->future(); }
    void fulfil(T value) const {
        promise_->addResult(std::move(value));
        promise_->finish();
    }

  private:
    std::shared_ptr<QPromise<T>> promise_;
};

using DetailPromise = SharedPromise<std::shared_ptr<const RecordingDetail>>;
using ImagePromise = SharedPromise<std::optional<QImage>>;

// The disk entry's detail when the file decodes, is of this layout and matches the files' stamps.
std::shared_ptr<const RecordingDetail> readCachedDetail(const QString& cacheFile,
                                                        const CachedDetail::Fingerprint& fingerprint) {
    QFile file(cacheFile);
    if (!file.open(QIODevice::ReadOnly)) return nullptr;
    const QByteArray bytes = file.readAll();
    Result<CachedDetail> entry = decodeCachedDetail(std::string_view(bytes.constData(), bytes.size()));
    if (!entry.ok()) return nullptr;
    if (entry.value().version != RecordingDetailLoader::cacheVersion ||
        entry.value().fingerprint != fingerprint) {
        return nullptr;
    }
    return std::make_shared<const RecordingDetail>(std::move(entry.value().detail));
}

// The three members of a detail from the sidecar; all empty when it is missing or bad.
RecordingSessionData readTelemetry(const QString& sidecarPath) {
    RecordingSessionData telemetry;
    telemetry.scoreboard.emplace();
    std::optional<RecordingSessionData> session =
        RecordingSidecarStore::shared().readSessionData(sidecarPath);
    if (!session) return telemetry;
    telemetry.events = std::move(session->events);
    if (session->scoreboard) telemetry.scoreboard = std::move(session->scoreboard);
    telemetry.matchData = std::move(session->matchData);
    return telemetry;
}

// A detail as the pool made it; `fillCacheFile` when the disk cache does not hold it yet.
struct LoadedDetail {
    std::shared_ptr<const RecordingDetail> detail;
    bool fillCacheFile = false;
};

// Blocking: runs on the utility pool.
LoadedDetail loadDetail(const QString& moviePath, const QString& cacheFile,
                        const CachedDetail::Fingerprint& fingerprint) {
    if (!cacheFile.isEmpty()) {
        if (auto cached = readCachedDetail(cacheFile, fingerprint)) return {std::move(cached), false};
    }
    RecordingSessionData telemetry = readTelemetry(sessionDocumentPath(moviePath));
    // A movie that cannot be opened has the default shape, and the length its document gives the game.
    const std::optional<MovieMeasurement> measured = measureMovie(moviePath);
    auto detail = std::make_shared<RecordingDetail>();
    detail->events = std::move(telemetry.events);
    detail->scoreboard = std::move(*telemetry.scoreboard);
    detail->matchData = std::move(telemetry.matchData);
    detail->duration = recordingTimelineSpanSeconds(
        measured ? std::optional<double>(measured->durationSeconds) : std::nullopt, detail->events,
        detail->scoreboard, detail->matchData);
    detail->aspectRatio = measured.value_or(MovieMeasurement{}).aspectRatio;
    return {std::move(detail), !cacheFile.isEmpty()};
}

struct LoadedThumbnail {
    std::optional<QImage> image;
    // True when the picture was made now and its disk cache file is still to be written.
    bool made = false;
};

// Blocking: runs on the utility pool. The disk file first; then, if asked to, a new picture.
LoadedThumbnail loadThumbnail(const QString& moviePath, const QString& cacheFile,
                              std::optional<double> makeAtSeconds) {
    if (!cacheFile.isEmpty()) {
        QImage stored;
        if (stored.load(cacheFile, "PNG")) return {std::move(stored), false};
    }
    if (!makeAtSeconds) return {};
    std::optional<QImage> made = ThumbnailGenerator::imageAt(moviePath, *makeAtSeconds);
    const bool wasMade = made.has_value();
    return {std::move(made), wasMade};
}

}  // namespace

// The loader's state, shared with the work in flight so that a loader that goes first leaves that work
// nothing dangling. All fields but `folder` belong to `queue`.
struct RecordingDetailLoader::Core : std::enable_shared_from_this<Core> {
    struct Entry {
        std::int64_t version = 0;
        Fingerprint fingerprint;
        std::shared_ptr<const RecordingDetail> detail;
    };

    explicit Core(QString diskCacheFolder)
        : folder(std::move(diskCacheFolder)), queue(QStringLiteral("com.kestrum.library.detail")) {}

    // Runs `work` on the utility pool, then `finish(core, result)` back on the queue: the queue's own
    // suspension point, during which other calls run. `afterwards(result)` goes on on the pool once the
    // result is on its way: filling the disk cache is no reason to keep the caller waiting.
    template <class Work, class Finish, class Afterwards>
    void suspend(Work work, Finish finish, Afterwards afterwards) {
        (void)detached([self = shared_from_this(), work = std::move(work), finish = std::move(finish),
                        afterwards = std::move(afterwards)] {
            const auto result = std::make_shared<const decltype(work())>(work());
            self->queue.async([self, result, finish] { finish(*self, *result); });
            afterwards(*result);
        });
    }

    // The disk cache file named `stem` with `extension`; empty without a disk cache. Makes the folder
    // with its parents on first use; a failure is dropped, and the reads and writes then simply fail.
    QString cacheFile(const QString& stem, QLatin1String extension) {
        if (folder.isEmpty()) return {};
        if (!folderMade) {
            (void)QDir().mkpath(folder);
            folderMade = true;
        }
        return folder + QLatin1Char('/') + stem + QLatin1Char('.') + extension;
    }

    void detail(const QString& moviePath, const DetailPromise& promise) {
        const QString key = detailCacheKey(moviePath);
        const Fingerprint fingerprint{takeFileStamp(moviePath),
                                      takeFileStamp(sessionDocumentPath(moviePath))};
        if (const auto found = detailCache.find(key); found != detailCache.end()) {
            const Entry& entry = found->second;
            if (entry.version == cacheVersion && entry.fingerprint == fingerprint) {
                promise.fulfil(entry.detail);
                return;
            }
        }
        const QString file = cacheFile(key, QLatin1String("json"));
        suspend([moviePath, file, fingerprint] { return loadDetail(moviePath, file, fingerprint); },
                [key, fingerprint, promise](Core& core, const LoadedDetail& loaded) {
                    core.detailCache[key] = Entry{cacheVersion, fingerprint, loaded.detail};
                    promise.fulfil(loaded.detail);
                },
                [file, fingerprint](const LoadedDetail& loaded) {
                    if (!loaded.fillCacheFile) return;
                    const Result<std::string> encoded =
                        encodeCachedDetail(cacheVersion, fingerprint, *loaded.detail);
                    if (encoded.ok())
                        (void)writeFileAtomically(file, QByteArray::fromStdString(encoded.value()));
                });
    }

    // `makeAtSeconds` absent: only what the caches hold.
    void thumbnail(const QString& moviePath, std::optional<double> makeAtSeconds,
                   const ImagePromise& promise) {
        const QString key = thumbnailCacheKey(detailCacheKey(moviePath), takeFileStamp(moviePath));
        if (std::optional<QImage> image = thumbnails.find(key)) {
            promise.fulfil(std::move(image));
            return;
        }
        const QString file = cacheFile(key, QLatin1String("png"));
        suspend([moviePath, file, makeAtSeconds] { return loadThumbnail(moviePath, file, makeAtSeconds); },
                [key, promise](Core& core, const LoadedThumbnail& loaded) {
                    if (loaded.image) core.thumbnails.store(key, *loaded.image);
                    promise.fulfil(loaded.image);
                },
                [file](const LoadedThumbnail& loaded) {
                    if (!loaded.made || file.isEmpty()) return;
                    const QByteArray png = ThumbnailGenerator::encodePng(*loaded.image);
                    if (!png.isEmpty()) (void)writeFileAtomically(file, png);
                });
    }

    const QString folder;
    bool folderMade = false;
    std::map<QString, Entry> detailCache;
    ThumbnailMemoryCache thumbnails;
    // Last, so that it is the first to go: its destructor runs the tasks still queued while the maps
    // are there.
    SerialQueue queue;
};

RecordingDetailLoader::RecordingDetailLoader(QString diskCacheFolder)
    : core_(std::make_shared<Core>(std::move(diskCacheFolder))) {}

RecordingDetailLoader::~RecordingDetailLoader() = default;

QString RecordingDetailLoader::defaultDiskCacheFolder() {
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    if (caches.isEmpty()) return {};
    return caches + QStringLiteral("/Kestrum/RecordingDetails");
}

QFuture<std::shared_ptr<const RecordingDetail>> RecordingDetailLoader::detail(const MatchVideo& video) {
    const DetailPromise promise;
    core_->queue.async([core = core_, moviePath = video.url, promise] { core->detail(moviePath, promise); });
    return promise.future();
}

QFuture<std::optional<QImage>> RecordingDetailLoader::cachedThumbnail(const MatchVideo& video) {
    const ImagePromise promise;
    core_->queue.async([core = core_, moviePath = video.url, promise] {
        core->thumbnail(moviePath, std::nullopt, promise);
    });
    return promise.future();
}

QFuture<std::optional<QImage>> RecordingDetailLoader::thumbnail(const MatchVideo& video,
                                                                std::optional<double> timeSeconds) {
    const ImagePromise promise;
    const double atSeconds = thumbnailRequestTime(timeSeconds);
    core_->queue.async([core = core_, moviePath = video.url, atSeconds, promise] {
        core->thumbnail(moviePath, atSeconds, promise);
    });
    return promise.future();
}

}  // namespace kestrum
