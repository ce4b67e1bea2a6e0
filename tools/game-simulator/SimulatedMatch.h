#pragma once

#include "AnswerSource.h"
#include "MatchScript.h"

#include <QElapsedTimer>

#include <optional>

namespace kestrum::simulator {

// The local service of a scripted match. The game loads for `loadingSeconds`, then its clock runs from
// 0 to `durationSeconds` and stops there (the end screen); `speed` scales both against real time.
// While loading, the data paths answer 404 as a loading game does. /replay/game answers 200 only for a
// replay script. Main thread.
class SimulatedMatch final : public AnswerSource {
  public:
    SimulatedMatch(MatchScript script, double speed);

    SimulatorAnswer answer(const QString& path) override;

    // Real milliseconds from the simulator's start until the game clock reads 0.
    qint64 clockStartDelayMs() const;

  private:
    // The game clock now; absent while loading.
    std::optional<double> gameTime() const;
    QJsonArray playerList(double time) const;
    QJsonArray eventFeed(double time) const;
    QJsonObject allGameData(double time) const;
    QJsonObject activePlayerRow(double time) const;

    MatchScript script_;
    double speed_;
    QElapsedTimer sinceStart_;
};

}  // namespace kestrum::simulator
