#pragma once

#include "core/library/detail/RecordingDetail.h"
#include "core/telemetry/RecordingEvent.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrum::test {

constexpr auto kBlue = RecordingTeam::blue;
constexpr auto kRed = RecordingTeam::red;

// An event as the recorder writes it: the three local-player flags present and false.
inline RecordingEvent makeEvent(std::int64_t id, std::string name, double videoTime,
                                std::optional<RecordingTeam> team = std::nullopt,
                                std::optional<std::string> killerName = std::nullopt) {
    RecordingEvent event;
    event.id = id;
    event.name = std::move(name);
    event.videoTime = videoTime;
    event.team = team;
    event.killerName = std::move(killerName);
    event.isLocalPlayerKill = event.isLocalPlayerDeath = event.isLocalPlayerAssist = false;
    return event;
}

inline RecordingEvent withLocalKill(RecordingEvent event) {
    event.isLocalPlayerKill = true;
    return event;
}

inline RecordingEvent withDetail(RecordingEvent event, std::string detail) {
    event.detail = std::move(detail);
    return event;
}

inline std::shared_ptr<const RecordingDetail> detailOf(
    std::vector<RecordingEvent> events, double duration,
    std::vector<RecordingScoreboardSnapshot> snapshots = {}) {
    auto detail = std::make_shared<RecordingDetail>();
    detail->events = std::move(events);
    detail->scoreboard = std::move(snapshots);
    detail->duration = duration;
    return detail;
}

}  // namespace kestrum::test
