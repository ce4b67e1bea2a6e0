#pragma once

#include "AnswerSource.h"

#include <QDir>
#include <QJsonObject>

#include <optional>

namespace kestrum::simulator {

// Saved answers of a real game, served as they are: <dir>/allgamedata.json, eventdata.json,
// playerlist.json, gamestats.json and activeplayername.json. A missing file is derived from
// allgamedata.json where the real service takes the same data from (events.Events, allPlayers,
// gameData, activePlayer); what cannot be found answers 404. /replay/game answers 200 only when
// `replay` is set. Main thread.
class CapturedMatch final : public AnswerSource {
  public:
    CapturedMatch(QDir directory, bool replay);

    SimulatorAnswer answer(const QString& path) override;

  private:
    std::optional<QByteArray> savedFile(const QString& word) const;
    std::optional<SimulatorAnswer> derived(const QString& word) const;

    QDir directory_;
    bool replay_;
};

}  // namespace kestrum::simulator
