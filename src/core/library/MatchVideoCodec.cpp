#include "core/library/MatchVideoCodec.h"

#include "core/json/JsonDocument.h"
#include "core/json/JsonValueKind.h"

#include <QDir>
#include <QSet>
#include <QUrl>

namespace kestrum::json {

namespace {

// The movie's path travels as a file URL, fully percent-encoded ("file:///a/My%20Game.mov"), as a
// platform URL's absolute string is. Anything that is not a local file URL (a web address, a bare path,
// an empty string) fails the document: an entry whose movie cannot be named is no entry. The path is
// read cleaned: a URL of "//host/..." form names a path that would otherwise come back with another
// spelling (its host lowercased) from its own encoding. A URL without a root ("file:v/a.mov") names a path
// relative to nothing, which its own encoding would root: it is no entry either.
bool readFileUrl(const rapidjson::Value& value, void* record, JsonFailure& failure) {
    if (!value.IsString()) return failure.fail(unexpectedKind("a file URL string", value));
    const QUrl url(QString::fromUtf8(value.GetString(), static_cast<qsizetype>(value.GetStringLength())),
                   QUrl::TolerantMode);
    const QString path = url.isValid() && url.isLocalFile() ? url.toLocalFile() : QString();
    if (path.isEmpty()) return failure.fail("not a local file URL");
    if (!QDir::isAbsolutePath(path)) return failure.fail("not an absolute file URL");
    static_cast<MatchVideo*>(record)->url = QDir::cleanPath(path);
    return true;
}

bool writeFileUrl(JsonWriter& writer, const void* record, JsonFailure& failure) {
    const QString& path = static_cast<const MatchVideo*>(record)->url;
    if (path.isEmpty()) return failure.fail("an entry has no movie path");
    const QByteArray text = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded).toUtf8();
    if (writer.writeString(std::string_view(text.constData(), static_cast<std::size_t>(text.size())))) {
        return true;
    }
    return failure.fail("text is not valid UTF-8");
}

bool urlIsPresent(const void*) {
    return true;
}

constexpr Field<MatchVideo> urlField{{"url", Presence::required, &readFileUrl, &urlIsPresent, &writeFileUrl}};

}  // namespace

template <>
struct FieldTable<MatchVideo> {
    using R = MatchVideo;
    static constexpr auto fields = fieldTable<R>(
        optionalField<&R::champion>("champion"), optionalField<&R::championAssetName>("championAssetName"),
        optionalField<&R::damageReason>("damageReason"), requiredField<&R::date>("date"),
        optionalField<&R::didWin>("didWin"), optionalField<&R::finalAssists>("finalAssists"),
        optionalField<&R::finalCreepScore>("finalCreepScore"), optionalField<&R::finalDeaths>("finalDeaths"),
        optionalField<&R::finalItemIDs>("finalItemIDs"), optionalField<&R::finalKills>("finalKills"),
        optionalField<&R::gameDuration>("gameDuration"), optionalField<&R::gameMode>("gameMode"),
        optionalField<&R::gameVersion>("gameVersion"),
        optionalField<&R::killParticipation>("killParticipation"),
        optionalField<&R::legendaryItemIDsInPurchaseOrder>("legendaryItemIDsInPurchaseOrder"),
        optionalField<&R::mapID>("mapID"), optionalField<&R::matchTitle>("matchTitle"),
        optionalField<&R::mediaKind>("mediaKind"), optionalField<&R::queueID>("queueID"),
        optionalField<&R::role>("role"), urlField);
};

template <>
struct FieldTable<LibraryCache> {
    using R = LibraryCache;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::folderPath>("folderPath"), requiredField<&R::matches>("matches"));
};

template <>
struct FieldTable<LibraryScanCache::FileStamp> {
    using R = LibraryScanCache::FileStamp;
    static constexpr auto fields = fieldTable<R>(optionalField<&R::fileSize>("fileSize"),
                                                 optionalField<&R::modificationDate>("modificationDate"));
};

template <>
struct FieldTable<LibraryScanCache::Fingerprint> {
    using R = LibraryScanCache::Fingerprint;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::sidecar>("sidecar"), requiredField<&R::video>("video"));
};

template <>
struct FieldTable<LibraryScanCache::Recording> {
    using R = LibraryScanCache::Recording;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::fingerprint>("fingerprint"), requiredField<&R::match>("match"));
};

template <>
struct FieldTable<LibraryScanCache> {
    using R = LibraryScanCache;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::recordings>("recordings"), requiredField<&R::version>("version"));
};

}  // namespace kestrum::json

namespace kestrum {

namespace {

// A stamp and a file URL take about this much room in the written form, besides the entry itself.
constexpr std::size_t kBytesPerCachedRecording = 768;

}  // namespace

Result<MatchVideo> decodeMatchVideo(std::string_view bytes) {
    return json::decodeDocument<MatchVideo>(bytes);
}

Result<std::string> encodeMatchVideo(const MatchVideo& video) {
    return json::encodeDocument(video, 1024);
}

Result<LibraryCache> decodeLibraryCache(std::string_view bytes) {
    return json::decodeDocument<LibraryCache>(bytes);
}

Result<std::string> encodeLibraryCache(const LibraryCache& cache) {
    return json::encodeDocument(cache, 512 * (cache.matches.size() + 1));
}

Result<LibraryScanCache> decodeLibraryScanCache(std::string_view bytes) {
    Result<LibraryScanCache> decoded = json::decodeDocument<LibraryScanCache>(bytes);
    if (!decoded) return decoded;
    QSet<QString> movies;
    movies.reserve(static_cast<qsizetype>(decoded.value().recordings.size()));
    for (const auto& recording : decoded.value().recordings) {
        if (movies.contains(recording.match.url)) {
            return Error::withDescription(
                QStringLiteral("recordings: the movie \"%1\" is listed twice").arg(recording.match.url));
        }
        movies.insert(recording.match.url);
    }
    return decoded;
}

Result<std::string> encodeLibraryScanCache(const LibraryScanCache& cache) {
    return json::encodeDocument(cache, 64 + kBytesPerCachedRecording * cache.recordings.size());
}

}  // namespace kestrum
