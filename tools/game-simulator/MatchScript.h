#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace kestrum::simulator {

// A scripted match, read from JSON:
//   {"gameMode": "CLASSIC", "activePlayer": "<summonerName of the local player>",
//    "loadingSeconds": 5, "durationSeconds": 180, "replay": false,
//    "players": [{<a /liveclientdata/playerlist row>, "timeline": [{"time": 60, <keys that change>}]}],
//    "events": [{"EventName": "ChampionKill", "EventTime": 95.5, "KillerName": ..., ...}]}
// Times are game seconds. A player row may leave out the keys a fresh champion has (level 1, alive, no
// items, zero scores); a timeline entry replaces the keys it names from its time on. Events are fed in
// order of time, numbered from 0 unless they carry an "EventID"; they are otherwise served as written.
struct MatchScript {
    struct PlayerChange {
        double time = 0;
        QJsonObject values;
    };
    struct Player {
        QJsonObject base;
        std::vector<PlayerChange> timeline;  // ordered by time
    };

    QString gameMode;
    QString activePlayer;
    double loadingSeconds = 0;
    double durationSeconds = 0;
    bool replay = false;
    std::vector<Player> players;
    std::vector<QJsonObject> events;  // ordered by "EventTime", each with its "EventID"

    // The script at `path`, or a message saying what is wrong with it.
    static std::optional<MatchScript> load(const QString& path, QString* errorMessage);
    static std::optional<MatchScript> fromJson(const QJsonObject& root, QString* errorMessage);

    // A player's playerlist row at game time `time`.
    QJsonObject playerAt(const Player& player, double time) const;
};

}  // namespace kestrum::simulator
