#pragma once

#include <QStringList>

namespace kestrum::tools {

// `convert --eventdata F --playerlist F --activeplayername F [--elapsed S --gametime S]`, or
// `convert --allgamedata F [--elapsed S --gametime S]`: prints the RecordingEvent rows of one answer of
// the event feed as a JSON array. Without --elapsed and --gametime the movie is taken to start with the
// game clock (videoTime = EventTime); with --allgamedata the game time defaults to the answer's own.
// Returns the exit status: 0, 1 for a bad file, 2 for bad usage.
int runConvert(const QStringList& arguments);

}  // namespace kestrum::tools
