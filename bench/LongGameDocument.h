#pragma once

// A long game's session document of about `targetBytes` once encoded: 300 events and a snapshot of ten
// players a second, for the benchmarks that read sizeable sidecars.
#include "SyntheticPlayers.h"
#include "core/telemetry/RecordingSessionData.h"
#include "core/telemetry/SessionDocumentCodec.h"

#include <cstddef>

namespace kestrum::bench {

inline RecordingSessionData longGameDocument(std::size_t targetBytes) {
    RecordingSessionData session;
    session.schemaVersion = 4;
    for (int i = 0; i < 300; ++i) {
        RecordingEvent event;
        event.id = i;
        event.name = i % 3 == 0 ? "ChampionKill" : "TurretKilled";
        event.videoTime = 3.4 + i * 11.875;
        event.killerName = "Player 1#EUW";
        session.events.push_back(std::move(event));
    }
    session.scoreboard.emplace();
    RecordingSessionData oneSnapshot;
    oneSnapshot.scoreboard.emplace(1, RecordingScoreboardSnapshot{1.0, 1.0, {}});
    for (int p = 0; p < 10; ++p) oneSnapshot.scoreboard->front().players.push_back(syntheticPlayer(1, p));
    const std::size_t snapshotBytes = encodeSessionData(oneSnapshot).value().size();
    const auto snapshots = static_cast<int>(targetBytes / snapshotBytes);
    for (int s = 0; s < snapshots; ++s) {
        RecordingScoreboardSnapshot snapshot{3.4 + s * 1.0000123, 1.25 + s * 1.0000071, {}};
        for (int p = 0; p < 10; ++p) snapshot.players.push_back(syntheticPlayer(s, p));
        session.scoreboard->push_back(std::move(snapshot));
    }
    return session;
}

}  // namespace kestrum::bench
