#pragma once

#include "core/telemetry/RecordingSessionData.h"

#include <string>

namespace kestrum {

// The document the scanner writes back when it repairs a title: every field of `session` kept except
// `schemaVersion` 4, a `recordingID` made when missing, `metadataRevision` raised by 1 (a missing one
// counting as 1) and the new `title`. A document without `enrichment` but with a `gameID` gets the
// standard state: pending with no attempts when it has no post-game record; complete, with no attempts
// and `lastAttempt` at the first time this default was needed in this run of the program, when it has one.
RecordingSessionData upgradedSessionDocument(RecordingSessionData session, std::string title);

}  // namespace kestrum
