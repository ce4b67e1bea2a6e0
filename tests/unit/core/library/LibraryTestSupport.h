#pragma once

#include "core/library/MatchVideoCodec.h"
#include "core/telemetry/RecordingSidecarStore.h"
#include "core/telemetry/SessionDocumentBuilder.h"
#include "support/TestEnvironment.h"

#include <QDateTime>
#include <QString>

#include <gtest/gtest.h>

#include <ostream>
#include <utility>

// Lets GoogleTest print the library's values readably in failure messages (found by argument lookup).
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace kestrum {

inline void PrintTo(const MatchVideo& video, std::ostream* out) {
    const Result<std::string> json = encodeMatchVideo(video);
    *out << (json ? json.value() : std::string("<unencodable MatchVideo>"));
}

namespace test {

using Items = std::vector<std::pair<std::int64_t, std::int64_t>>;  // (itemID, slot) in stored order

inline RecordingScoreboardPlayer boardPlayer(std::optional<std::string> position, std::string championName,
                                             std::string team, RecordingScoreboardPlayer::Scores scores = {},
                                             const Items& items = {}) {
    RecordingScoreboardPlayer player;
    player.position = std::move(position);
    player.championName = std::move(championName);
    player.team = std::move(team);
    player.scores = scores;
    for (const auto& [itemID, slot] : items) player.items.push_back({1, "item", itemID, 0, slot});
    return player;
}

inline RecordingScoreboardSnapshot snapshotAt(double gameTime,
                                              std::vector<RecordingScoreboardPlayer> players) {
    return RecordingScoreboardSnapshot{gameTime, gameTime, std::move(players)};
}

inline RecordingMatchData::Participant participant(std::string championName, std::string teamPosition,
                                                   std::int64_t teamID, std::int64_t kills,
                                                   std::int64_t assists) {
    RecordingMatchData::Participant row;
    row.championName = std::move(championName);
    row.teamPosition = std::move(teamPosition);
    row.teamID = teamID;
    row.kills = kills;
    row.assists = assists;
    return row;
}

// A session as the save path writes it: version 4, revision 1, no title.
inline RecordingSessionData savedSession() {
    return makeSessionData(std::nullopt, RecordingTelemetry{});
}

inline MatchVideo entry(const QString& path, const QDateTime& date, std::optional<std::string> gameMode = {},
                        std::optional<std::string> role = {}, std::optional<std::string> mediaKind = {}) {
    MatchVideo video;
    video.url = path;
    video.date = ReferenceDate::fromDateTime(date);
    video.mediaKind = std::move(mediaKind);
    video.gameMode = std::move(gameMode);
    video.role = std::move(role);
    return video;
}

inline void writeFile(const QString& path, const QByteArray& bytes = {}) {
    ASSERT_TRUE(writeFileBytes(path, bytes)) << path.toStdString();
}

inline void writeSidecar(const QString& moviePath, const RecordingSessionData& session) {
    ASSERT_TRUE(
        RecordingSidecarStore::shared().writeSessionData(session, sessionDocumentPath(moviePath)).ok());
}

inline std::optional<RecordingSessionData> readSidecar(const QString& moviePath) {
    return RecordingSidecarStore::shared().readSessionData(sessionDocumentPath(moviePath));
}

// A real QuickTime movie of three 64x64 H.264 frames from the FFmpeg writer; false when it cannot be made.
bool writeTinyMovie(const QString& path);

}  // namespace test
}  // namespace kestrum
