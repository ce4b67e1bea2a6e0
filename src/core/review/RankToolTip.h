#pragma once

#include "core/telemetry/RecordingMatchData.h"
#include "core/telemetry/RecordingScoreboardPlayer.h"

#include <QString>

#include <optional>
#include <string_view>

namespace kestrum {

// The name of a ranked queue: "Ranked Solo/Duo", "Ranked Flex", "Ranked 5s", "Ranked 3s", else "Ranked".
QString rankedQueueName(std::string_view queueType);

// A rank's label: the tier lower-cased with each word capitalised, and a blank and the division when it
// has one ("Gold II", "Master").
QString rankLabel(const RecordingMatchData::Rank& rank);

// "<queue>: <current rank>, <LP> LP", or with a season high "<queue>: <current rank>, <LP> LP. Highest
// observed this season: <high rank>."; absent without a current rank.
std::optional<QString> rankToolTip(const RecordingMatchData::Participant& participant);

}  // namespace kestrum
