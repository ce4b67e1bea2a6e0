#include "core/library/detail/CachedDetailCodec.h"

#include "core/json/JsonDocument.h"
#include "core/library/detail/JsonMemberSlices.h"
#include "core/telemetry/SessionDocumentCodec.h"

#include <utility>

namespace kestrum::json {

template <>
struct FieldTable<CachedDetail::FileStamp> {
    using R = CachedDetail::FileStamp;
    static constexpr auto fields = fieldTable<R>(optionalField<&R::modificationTime>("modificationTime"),
                                                 optionalField<&R::size>("size"));
};

template <>
struct FieldTable<CachedDetail::Fingerprint> {
    using R = CachedDetail::Fingerprint;
    static constexpr auto fields =
        fieldTable<R>(requiredField<&R::sidecar>("sidecar"), requiredField<&R::video>("video"));
};

}  // namespace kestrum::json

namespace kestrum {

namespace {

// The session document writes its keys in ascending order and always writes "events", so its text of
// events, matchData and scoreboard opens with this; "aspectRatio" and "duration" sort before it.
constexpr std::string_view kTelemetryOpening = R"({"events":)";

template <class T>
Result<std::string> encodeValue(const T& value) {
    return json::encodeDocument(value, 256);
}

Error missing(const char* path) {
    return Error::withDescription(QString::fromLatin1(path) + QStringLiteral(": missing required key"));
}

// The cause's description under `path`: "detail" and "events[0].name: missing required key" make
// "detail.events[0].name: missing required key"; a failure of the value itself, which the codecs call
// "(root)", takes the path's place.
Error within(const char* path, const Error& cause) {
    static const QString root = QStringLiteral("(root)");
    const QString& description = cause.description;
    if (description.startsWith(root)) {
        return Error::withDescription(QString::fromLatin1(path) + description.mid(root.size()));
    }
    const QString separator = description.startsWith(QLatin1Char('[')) ? QString() : QStringLiteral(".");
    return Error::withDescription(QString::fromLatin1(path) + separator + description);
}

// A member's text, or absent when it is missing or null (a null counts as missing).
std::optional<std::string_view> member(const std::map<std::string, std::string_view, std::less<>>& members,
                                       std::string_view key) {
    const auto found = members.find(key);
    if (found == members.end() || found->second == "null") return std::nullopt;
    return found->second;
}

template <class T>
Result<T> decodeMember(const std::map<std::string, std::string_view, std::less<>>& members, const char* key,
                       const char* path) {
    const std::optional<std::string_view> text = member(members, key);
    if (!text) return missing(path);
    Result<T> value = json::decodeDocument<T>(*text);
    if (!value.ok()) return within(path, value.error());
    return value;
}

Result<RecordingDetail> decodeDetail(std::string_view detailText, const JsonMemberSlices& slices) {
    RecordingDetail detail;
    Result<double> aspectRatio =
        decodeMember<double>(slices.nestedMembers, "aspectRatio", "detail.aspectRatio");
    if (!aspectRatio.ok()) return aspectRatio.error();
    Result<double> duration = decodeMember<double>(slices.nestedMembers, "duration", "detail.duration");
    if (!duration.ok()) return duration.error();
    Result<RecordingSessionData> telemetry = decodeSessionData(detailText);
    if (!telemetry.ok()) return within("detail", telemetry.error());
    RecordingSessionData& session = telemetry.value();
    if (!session.scoreboard) return missing("detail.scoreboard");
    detail.events = std::move(session.events);
    detail.scoreboard = std::move(*session.scoreboard);
    detail.matchData = std::move(session.matchData);
    detail.duration = duration.value();
    detail.aspectRatio = aspectRatio.value();
    return detail;
}

}  // namespace

Result<std::string> encodeCachedDetail(std::int64_t version, const CachedDetail::Fingerprint& fingerprint,
                                       const RecordingDetail& detail) {
    // The session document's codec writes the three telemetry members; a session holding only them is
    // the one copy this costs.
    RecordingSessionData telemetry;
    telemetry.events = detail.events;
    telemetry.scoreboard = detail.scoreboard;
    telemetry.matchData = detail.matchData;
    Result<std::string> telemetryText = encodeSessionData(telemetry);
    if (!telemetryText.ok()) return within("detail", telemetryText.error());
    const std::string& text = telemetryText.value();
    if (!std::string_view(text).starts_with(kTelemetryOpening)) {
        return Error::withDescription(QStringLiteral("detail: unexpected form of the telemetry"));
    }
    const Result<std::string> aspectRatioText = encodeValue(detail.aspectRatio);
    if (!aspectRatioText.ok()) return within("detail.aspectRatio", aspectRatioText.error());
    const Result<std::string> durationText = encodeValue(detail.duration);
    if (!durationText.ok()) return within("detail.duration", durationText.error());
    const Result<std::string> fingerprintText = encodeValue(fingerprint);
    if (!fingerprintText.ok()) return within("fingerprint", fingerprintText.error());
    const Result<std::string> versionText = encodeValue(version);
    if (!versionText.ok()) return within("version", versionText.error());

    std::string out;
    out.reserve(text.size() + 256);
    out.append(R"({"detail":{"aspectRatio":)").append(aspectRatioText.value());
    out.append(R"(,"duration":)").append(durationText.value()).push_back(',');
    out.append(std::string_view(text).substr(1));
    out.append(R"(,"fingerprint":)").append(fingerprintText.value());
    out.append(R"(,"version":)").append(versionText.value()).push_back('}');
    return out;
}

Result<std::string> encodeCachedDetail(const CachedDetail& entry) {
    return encodeCachedDetail(entry.version, entry.fingerprint, entry.detail);
}

Result<CachedDetail> decodeCachedDetail(std::string_view bytes) {
    Result<JsonMemberSlices> slices = sliceJsonMembers(bytes, "detail");
    if (!slices.ok()) return slices.error();
    const auto& members = slices.value().members;
    CachedDetail entry;
    Result<std::int64_t> version = decodeMember<std::int64_t>(members, "version", "version");
    if (!version.ok()) return version.error();
    entry.version = version.value();
    Result<CachedDetail::Fingerprint> fingerprint =
        decodeMember<CachedDetail::Fingerprint>(members, "fingerprint", "fingerprint");
    if (!fingerprint.ok()) return fingerprint.error();
    entry.fingerprint = std::move(fingerprint).value();
    const std::optional<std::string_view> detailText = member(members, "detail");
    if (!detailText) return missing("detail");
    Result<RecordingDetail> detail = decodeDetail(*detailText, slices.value());
    if (!detail.ok()) return detail.error();
    entry.detail = std::move(detail).value();
    return entry;
}

}  // namespace kestrum
