#pragma once

#include "AnswerSource.h"
#include "GameClock.h"
#include "MatchScript.h"

namespace kestrum::simulator {

// The local service of a scripted match, on the game clock that the window and the tone share (made from
// the script's `loadingSeconds` and `durationSeconds`; it outlives the match). While loading, the data
// paths answer 404 as a loading game does; after the end the clock stands still (the end screen).
// /replay/game answers 200 only for a replay script. Main thread.
class SimulatedMatch final : public AnswerSource {
  public:
    SimulatedMatch(MatchScript script, const GameClock& clock);

    SimulatorAnswer answer(const QString& path) override;

  private:
    QJsonArray playerList(double time) const;
    QJsonArray eventFeed(double time) const;
    QJsonObject allGameData(double time) const;
    QJsonObject activePlayerRow(double time) const;

    MatchScript script_;
    const GameClock& clock_;
};

}  // namespace kestrum::simulator
