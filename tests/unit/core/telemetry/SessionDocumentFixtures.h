#pragma once

#include "core/telemetry/RecordingSessionData.h"

#include <random>
#include <string>

namespace kestrum::test {

// The bytes of a file under tests/fixtures/telemetry.
std::string telemetryFixture(const char* fileName);

// A document with random content in every record and optional field, each optional present or absent
// at random; text includes characters that must be escaped and characters beyond ASCII.
RecordingSessionData randomSessionData(std::mt19937& random);

}  // namespace kestrum::test
