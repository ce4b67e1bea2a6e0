#include "core/telemetry/SessionDocumentCodec.h"

#include "core/json/JsonDocument.h"
#include "core/json/StreamedArrayParse.h"
#include "core/telemetry/SessionDocumentFields.h"

namespace kestrum {

namespace {

// A scoreboard player takes roughly this many bytes in its written form; reserving the output buffer
// from it keeps a long recording's encode free of repeated growth copies.
constexpr std::size_t kBytesPerScoreboardPlayer = 1024;
constexpr std::size_t kBytesPerEvent = 300;

std::size_t estimatedSizeBytes(const RecordingSessionData& session) {
    std::size_t players = 0;
    if (session.scoreboard) {
        for (const auto& snapshot : *session.scoreboard) players += snapshot.players.size();
    }
    return 4096 + players * kBytesPerScoreboardPlayer + session.events.size() * kBytesPerEvent;
}

}  // namespace

Result<RecordingSessionData> decodeSessionData(std::string_view bytes) {
    return json::decodeDocument<RecordingSessionData>(bytes);
}

Result<RecordingSessionData> decodeSessionData(std::string_view bytes,
                                               const ScoreboardSnapshotVisitor& visitSnapshot) {
    static constexpr std::string_view kScoreboardKey = "scoreboard";
    json::JsonFailure failure;
    bool snapshotFailed = false;
    std::size_t index = 0;
    rapidjson::Document document;
    const Status parsed =
        json::parseJsonStreamingArray(bytes, kScoreboardKey, document, [&](const rapidjson::Value& element) {
            RecordingScoreboardSnapshot snapshot;
            if (!json::ValueCodec<RecordingScoreboardSnapshot>::read(element, snapshot, failure)) {
                failure.addIndex(index);
                failure.addKey(kScoreboardKey);
                snapshotFailed = true;
                return false;
            }
            ++index;
            visitSnapshot(std::move(snapshot));
            return true;
        });
    if (snapshotFailed) return failure.toError();
    if (!parsed) return parsed.error();
    RecordingSessionData session;
    if (!json::ValueCodec<RecordingSessionData>::read(document, session, failure)) return failure.toError();
    return session;
}

Result<std::string> encodeSessionData(const RecordingSessionData& session) {
    return json::encodeDocument(session, estimatedSizeBytes(session));
}

Result<std::vector<RecordingScoreboardPlayer>> decodeScoreboardPlayers(std::string_view bytes) {
    return json::decodeDocument<std::vector<RecordingScoreboardPlayer>>(bytes);
}

Result<std::string> encodeScoreboardPlayers(const std::vector<RecordingScoreboardPlayer>& players) {
    return json::encodeDocument(players, 1024 + players.size() * kBytesPerScoreboardPlayer);
}

}  // namespace kestrum
