#include "core/assets/DataDragonAssetStore.h"

#include "base/common/AtomicFileWrite.h"
#include "core/assets/DataDragonVersionList.h"

#include "base/async/Detached.h"
#include "core/json/JsonDocument.h"
#include "core/settings/SettingsKeys.h"

#include <QCoroFuture>
#include <QCoroNetworkReply>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSaveFile>
#include <QStandardPaths>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kestrum {

namespace {

struct DeleteLater {
    void operator()(QNetworkReply* reply) const { reply->deleteLater(); }
};

using ReplyHandle = std::unique_ptr<QNetworkReply, DeleteLater>;

// The sub-delimiters and the two characters that a path segment may hold as they are (RFC 3986); all
// else outside the unreserved set is percent-encoded, "/" included, so an identifier stays one segment.
const QByteArray kSegmentSafeCharacters = QByteArrayLiteral("!$&'()*+,;=:@");

bool isLetterMarkOrDigit(char32_t scalar) {
    switch (QChar::category(scalar)) {
        case QChar::Letter_Uppercase:
        case QChar::Letter_Lowercase:
        case QChar::Letter_Titlecase:
        case QChar::Letter_Modifier:
        case QChar::Letter_Other:
        case QChar::Mark_NonSpacing:
        case QChar::Mark_SpacingCombining:
        case QChar::Mark_Enclosing:
        case QChar::Number_DecimalDigit:
        case QChar::Number_Letter:
        case QChar::Number_Other:
            return true;
        default:
            return false;
    }
}

// The address the CDN's paths are appended to; "https://host/" and "https://host" are the same base.
QByteArray encodedWithoutTrailingSlash(const QUrl& base) {
    QByteArray text = base.toEncoded();
    while (text.endsWith('/')) text.chop(1);
    return text;
}

// The bytes of a cached file, decoded; absent when the file is missing, unreadable or no image. A file
// that no longer decodes stays where it is until a good download overwrites it.
std::optional<QImage> readCachedImage(const QString& filePath) {
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    QImage image;
    if (!image.loadFromData(file.readAll())) return std::nullopt;
    return image;
}

// Failures are dropped: the image is shown all the same and is fetched again on a later run.
void writeCachedImage(const QString& filePath, const QByteArray& bytes) {
    if (!QDir().mkpath(QFileInfo(filePath).absolutePath())) return;
    (void)writeFileAtomically(filePath, bytes);
}

}  // namespace

DataDragonAssetStore& DataDragonAssetStore::shared() {
    static DataDragonAssetStore* const instance =
        new DataDragonAssetStore(UserDefaults::standard(), defaultDiskCacheFolder());
    return *instance;
}

DataDragonAssetStore::DataDragonAssetStore(UserDefaults& defaults, QString diskCacheFolder, QObject* parent)
    : QObject(parent),
      defaults_(defaults),
      diskCacheFolder_(std::move(diskCacheFolder)),
      currentVersion_(
          defaults.stringForKey(SettingsKeys::dataDragonAssetVersion).value_or(QString(kBuiltInVersion))),
      memoryCache_(kMemoryCacheCount) {}

QString DataDragonAssetStore::defaultDiskCacheFolder() {
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    if (caches.isEmpty()) return {};
    return caches + QStringLiteral("/Kestrum/DataDragon");
}

QString DataDragonAssetStore::kindWord(AssetKind kind) {
    switch (kind) {
        case AssetKind::champion:
            return QStringLiteral("champion");
        case AssetKind::item:
            return QStringLiteral("item");
        case AssetKind::spell:
            return QStringLiteral("spell");
    }
    return {};
}

QString DataDragonAssetStore::imageKey(const QString& version, AssetKind kind, const QString& identifier) {
    return version + QLatin1Char('/') + kindWord(kind) + QLatin1Char('/') + identifier;
}

QString DataDragonAssetStore::diskFileName(const QString& identifier) {
    QString name;
    name.reserve(identifier.size() + 4);
    // toUcs4 walks scalars: a pair of surrogates is one scalar and becomes one "_" or stays whole.
    for (const char32_t scalar : identifier.toUcs4()) {
        if (isLetterMarkOrDigit(scalar)) {
            name.append(QString::fromUcs4(&scalar, 1));
        } else {
            name.append(QLatin1Char('_'));
        }
    }
    return name + QStringLiteral(".png");
}

std::optional<QUrl> DataDragonAssetStore::imageUrl(const QString& baseAddress, const QString& version,
                                                   AssetKind kind, const QString& identifier) {
    const QUrl base(baseAddress, QUrl::StrictMode);
    if (!base.isValid() || base.isRelative() || base.host().isEmpty()) return std::nullopt;
    QByteArray text = encodedWithoutTrailingSlash(base);
    text += "/cdn/" + QUrl::toPercentEncoding(version, kSegmentSafeCharacters) + "/img/" +
            kindWord(kind).toLatin1() + '/' + QUrl::toPercentEncoding(identifier, kSegmentSafeCharacters) +
            ".png";
    const QUrl url = QUrl::fromEncoded(text, QUrl::StrictMode);
    if (!url.isValid()) return std::nullopt;
    return url;
}

QString DataDragonAssetStore::baseAddress() const {
    // Read where it is used, so a changed setting applies to the next request.
    const std::optional<QString> stored = defaults_.stringForKey(SettingsKeys::dataDragonBaseAddress);
    if (stored && !stored->isEmpty()) return *stored;
    for (const SettingsKeyEntry& entry : settingsKeyTable()) {
        if (entry.key == SettingsKeys::dataDragonBaseAddress && entry.defaultValue) {
            return toStringValue(*entry.defaultValue).value_or(QString());
        }
    }
    return {};
}

QString DataDragonAssetStore::diskFilePath(const QString& version, AssetKind kind,
                                           const QString& identifier) const {
    // The version names a folder: one that would lead out of the cache (a CDN's answer is outside
    // input) gets no disk location.
    const bool unsafeVersion = version.isEmpty() || version == QLatin1String(".") ||
                               version == QLatin1String("..") || version.contains(QLatin1Char('/'));
    if (diskCacheFolder_.isEmpty() || unsafeVersion) return {};
    return diskCacheFolder_ + QLatin1Char('/') + version + QLatin1Char('/') + kindWord(kind) +
           QLatin1Char('/') + diskFileName(identifier);
}

QCoro::Task<QString> DataDragonAssetStore::refreshVersion() {
    if (versionTask_) {
        const Job<QString> running = *versionTask_;
        co_return co_await running;
    }
    const QString fallback = currentVersion_;
    const Job<QString> job = Job<QString>::start(
        [this, fallback](CancellationToken) -> QCoro::Task<QString> { return fetchNewestVersion(fallback); });
    versionTask_ = job;
    const QString version = co_await job;
    versionTask_.reset();
    if (version != currentVersion_) {
        currentVersion_ = version;
        defaults_.setString(version, SettingsKeys::dataDragonAssetVersion);
        emit currentVersionChanged(version);
    }
    co_return version;
}

QCoro::Task<QString> DataDragonAssetStore::fetchNewestVersion(QString fallback) {
    const QUrl base(baseAddress(), QUrl::StrictMode);
    if (!base.isValid() || base.isRelative()) co_return fallback;
    const QUrl url =
        QUrl::fromEncoded(encodedWithoutTrailingSlash(base) + "/api/versions.json", QUrl::StrictMode);
    const ReplyHandle reply(network_.get(QNetworkRequest(url)));
    co_await qCoro(reply.get()).waitForFinished();
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (reply->error() != QNetworkReply::NoError || !status.isValid() || status.toInt() != 200) {
        co_return fallback;
    }
    const QByteArray body = reply->readAll();
    co_return newestDataDragonVersion(
        std::string_view(body.constData(), static_cast<std::size_t>(body.size())))
        .value_or(fallback);
}

QCoro::Task<std::optional<QImage>> DataDragonAssetStore::image(AssetKind kind, QString identifier,
                                                               std::optional<QString> version) {
    if (identifier.isEmpty()) co_return std::nullopt;
    const QString resolvedVersion = version.value_or(currentVersion_);
    const QString key = imageKey(resolvedVersion, kind, identifier);
    if (const QImage* cached = memoryCache_.object(key)) co_return *cached;

    // A waiter leaves the dictionary and the cache to the load's creator.
    if (const auto running = imageTasks_.find(key); running != imageTasks_.end()) {
        const Job<std::optional<QImage>> shared = running->second;
        co_return co_await shared;
    }
    const auto job = Job<std::optional<QImage>>::start(
        [this, kind, identifier, resolvedVersion](CancellationToken) -> QCoro::Task<std::optional<QImage>> {
            return load(kind, identifier, resolvedVersion);
        });
    imageTasks_.emplace(key, job);
    std::optional<QImage> loaded = co_await job;
    imageTasks_.erase(key);
    if (loaded) memoryCache_.insert(key, new QImage(*loaded));
    co_return loaded;
}

QCoro::Task<std::optional<QImage>> DataDragonAssetStore::load(AssetKind kind, QString identifier,
                                                              QString version) {
    const QString filePath = diskFilePath(version, kind, identifier);
    if (!filePath.isEmpty()) {
        QFuture<std::optional<QImage>> reading = detached([filePath] { return readCachedImage(filePath); });
        std::optional<QImage> cached = co_await reading;
        if (cached) co_return cached;
    }
    const std::optional<QUrl> url = imageUrl(baseAddress(), version, kind, identifier);
    if (!url) co_return std::nullopt;
    co_return co_await download(*url, filePath);
}

QCoro::Task<std::optional<QImage>> DataDragonAssetStore::download(QUrl url, QString filePath) {
    const ReplyHandle reply(network_.get(QNetworkRequest(url)));
    co_await qCoro(reply.get()).waitForFinished();
    // Only a complete answer with status exactly 200 counts; redirects have been followed by now.
    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (reply->error() != QNetworkReply::NoError || !status.isValid() || status.toInt() != 200) {
        co_return std::nullopt;
    }
    const QByteArray bytes = reply->readAll();
    QImage image;
    if (!image.loadFromData(bytes)) co_return std::nullopt;
    if (!filePath.isEmpty()) {
        QFuture<void> writing = detached([filePath, bytes] { writeCachedImage(filePath, bytes); });
        co_await writing;
    }
    co_return image;
}

}  // namespace kestrum
