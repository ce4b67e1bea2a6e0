#pragma once

#include "SyntheticGame.h"
#include "core/library/detail/RecordingDetail.h"

#include <memory>

namespace kestrum::synthetic {

// A recording's detail as the detail loader would hand it to the review panels, for a document with no
// movie beside it: its events, scoreboard and after-game data, with the movie's length given.
std::shared_ptr<const RecordingDetail> recordingDetailOf(const RecordingSessionData& document,
                                                         double movieDurationSeconds);

// The detail of the synthetic game, with its movie's length.
std::shared_ptr<const RecordingDetail> recordingDetailOf(const SyntheticGame& game);

}  // namespace kestrum::synthetic
