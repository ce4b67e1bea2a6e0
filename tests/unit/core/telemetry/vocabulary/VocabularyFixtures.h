#pragma once

#include "core/telemetry/LiveGamePayloads.h"
#include "core/telemetry/RecordingScoreboardPlayer.h"
#include "support/ScoreboardPlayerRow.h"

#include <optional>
#include <string>
#include <vector>

namespace kestrum::test {

// The bytes of a file under tests/fixtures/vocabulary; empty when it cannot be read.
std::string vocabularyFixture(const char* fileName);

// A feed row with the fields every row has; tests set the optional ones they need.
LiveEvent liveEvent(std::int64_t id, std::string name, double timeSeconds);

}  // namespace kestrum::test
