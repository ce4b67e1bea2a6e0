#pragma once

#include "core/telemetry/RecordingEvent.h"

#include <string>
#include <string_view>

namespace kestrum {

// The text of a timeline row for the timeline and its hover card, by the stored name (and the streak
// size of a "Multikill"); a name the table does not know is shown as it stands.
std::string eventDisplayTitle(const RecordingEvent& event);

// The system symbol of a timeline row; a dragon takes its kind's symbol from the row's detail.
std::string_view eventSymbolName(const RecordingEvent& event);

}  // namespace kestrum
