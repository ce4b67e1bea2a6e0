#pragma once

#include "base/async/Job.h"
#include "core/settings/UserDefaults.h"

#include <QCache>
#include <QCoroTask>
#include <QImage>
#include <QNetworkAccessManager>
#include <QObject>
#include <QString>
#include <QUrl>

#include <map>
#include <optional>

namespace kestrum {

// Game art from the Data Dragon CDN (champion portraits, item and summoner spell icons), kept in a
// memory cache of decoded images and a disk cache of the downloaded files, with one download per image
// however many views ask for it at once.
//
// Threads: confined to the main thread (the thread that made it, which must run a Qt event loop). The
// network wait, the file read and the file write happen off it; every field is touched only on it, so
// looking up a load in flight and registering a new one is a single step and a key has at most one
// load in flight.
//
// Failures leave no trace: a missing image is absent, never an error, never a log line, and is tried
// again by the next caller. The store must outlive the operations it has started (the shared instance
// lives for the process).
class DataDragonAssetStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString currentVersion READ currentVersion NOTIFY currentVersionChanged)

  public:
    // In this order; each stands in URLs and folder names for its word ("champion", "item", "spell").
    enum class AssetKind { champion, item, spell };

    // The version used while the user default "DataDragonAssetVersion" has no value.
    static constexpr QLatin1String kBuiltInVersion{"16.9.1"};
    // Decoded images kept in memory; beyond it the least recently used goes.
    static constexpr int kMemoryCacheCount = 300;

    // The process-wide store on the standard user defaults and the standard disk cache folder. Made on
    // first use, which must be on the main thread; never destroyed.
    static DataDragonAssetStore& shared();

    // `diskCacheFolder` is the root of the disk cache; empty means no disk cache at all (the system has
    // no cache folder). The defaults store must outlive the asset store.
    DataDragonAssetStore(UserDefaults& defaults, QString diskCacheFolder, QObject* parent = nullptr);

    // <GenericCacheLocation>/Kestrum/DataDragon, or empty when the system names no cache folder.
    static QString defaultDiskCacheFolder();

    static QString kindWord(AssetKind kind);

    // `version` "/" kind word "/" `identifier`, the identifier as given: the key of both the memory
    // cache and the loads in flight.
    static QString imageKey(const QString& version, AssetKind kind, const QString& identifier);

    // The disk cache's file name of an identifier: every Unicode scalar that is not a letter, a mark or
    // a digit becomes "_", then ".png" ("Kai'Sa" gives "Kai_Sa.png").
    static QString diskFileName(const QString& identifier);

    // The CDN's address of one image below `baseAddress`, the identifier percent-encoded as one path
    // segment; absent when no valid URL results.
    static std::optional<QUrl> imageUrl(const QString& baseAddress, const QString& version, AssetKind kind,
                                        const QString& identifier);

    // The Data Dragon version in use. Main thread.
    QString currentVersion() const { return currentVersion_; }

    // Fetches the CDN's version list and adopts its newest entry; gives the version in use afterwards.
    // Callers that come while a refresh runs share it. A failed fetch keeps the version as it was and
    // leaves the user default alone. Never fails.
    QCoro::Task<QString> refreshVersion();

    // The image of `identifier` in `version` (absent: the current version), from memory, from a load
    // already in flight, from disk, or from the CDN, in that order. An empty identifier, a failed
    // download or an answer that is not an image give absent. Never fails.
    QCoro::Task<std::optional<QImage>> image(AssetKind kind, QString identifier,
                                             std::optional<QString> version = std::nullopt);

  signals:
    void currentVersionChanged(const QString& version);

  private:
    QString baseAddress() const;
    // The file of an image in the disk cache; empty when there is no disk cache.
    QString diskFilePath(const QString& version, AssetKind kind, const QString& identifier) const;
    QCoro::Task<QString> fetchNewestVersion(QString fallback);
    QCoro::Task<std::optional<QImage>> load(AssetKind kind, QString identifier, QString version);
    QCoro::Task<std::optional<QImage>> download(QUrl url, QString filePath);

    UserDefaults& defaults_;
    const QString diskCacheFolder_;
    QNetworkAccessManager network_;
    // All below: main thread.
    QString currentVersion_;
    QCache<QString, QImage> memoryCache_;
    std::optional<Job<QString>> versionTask_;
    std::map<QString, Job<std::optional<QImage>>> imageTasks_;
};

}  // namespace kestrum
