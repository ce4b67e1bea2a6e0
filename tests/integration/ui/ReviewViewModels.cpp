#include "ReviewViewModels.h"

#include "support/ScoreboardPlayerRow.h"

#include <QCoreApplication>

#include <memory>
#include <string>

namespace kestrum::test {

namespace {

RecordingEvent event(std::int64_t id, std::string name, double videoTime, std::optional<RecordingTeam> team) {
    RecordingEvent row;
    row.id = id;
    row.name = std::move(name);
    row.videoTime = videoTime;
    row.team = team;
    row.isLocalPlayerKill = row.isLocalPlayerDeath = row.isLocalPlayerAssist = false;
    return row;
}

RecordingEvent kill(std::int64_t id, double videoTime, RecordingTeam team, const std::string& killer,
                    const std::string& victim) {
    RecordingEvent row = event(id, "ChampionKill", videoTime, team);
    row.killerName = killer;
    row.victimName = victim;
    return row;
}

RecordingScoreboardPlayer player(const std::string& name, const std::string& champion, const char* team,
                                 const char* position, std::int64_t itemID) {
    RecordingScoreboardPlayer row = scoreboardPlayer(name, champion, team);
    row.position = position;
    row.riotId = name + "#EUW";
    row.level = 9;
    row.scores = {3, 120, 1, 2};
    row.items = {{1, "Item", itemID, 1000, 0}, {1, "Ward", 3340, 0, 6}};
    return row;
}

std::shared_ptr<const RecordingDetail> recording() {
    auto detail = std::make_shared<RecordingDetail>();
    RecordingEvent localKill =
        kill(2, ReviewViewModels::kLocalKillSeconds, RecordingTeam::blue, "Kestrel", "Rook");
    localKill.isLocalPlayerKill = true;
    detail->events = {event(1, "GameStart", 2, std::nullopt), localKill,
                      kill(3, ReviewViewModels::kOtherKillSeconds, RecordingTeam::red, "Rook", "Wren"),
                      event(4, "TurretKilled", ReviewViewModels::kTurretSeconds, RecordingTeam::red)};
    detail->scoreboard = {
        {1,
         0,
         {player("Oak", "Garen", "ORDER", "TOP", 1055), player("Fern", "LeeSin", "ORDER", "JUNGLE", 1055),
          player("Kestrel", "Ahri", "ORDER", "MIDDLE", 1056), player("Wren", "Jinx", "ORDER", "BOTTOM", 1055),
          player("Moss", "Thresh", "ORDER", "UTILITY", 3850), player("Flint", "Darius", "CHAOS", "TOP", 1055),
          player("Ash", "Viego", "CHAOS", "JUNGLE", 1055), player("Rook", "Lux", "CHAOS", "MIDDLE", 1056),
          player("Slate", "Kaisa", "CHAOS", "BOTTOM", 1055),
          player("Cinder", "Leona", "CHAOS", "UTILITY", 3850)}}};
    detail->duration = ReviewViewModels::kDurationSeconds;
    return detail;
}

QVariant object(QObject* value) {
    return QVariant::fromValue(value);
}

}  // namespace

ReviewViewModels::ReviewViewModels()
    : defaults(folder.filePath(QStringLiteral("defaults.json"))),
      player(QStringLiteral("/movies/game.mov"), kDurationSeconds),
      timeline(defaults, clock),
      scoreboard(fileActions, clock) {
    const std::shared_ptr<const RecordingDetail> detail = recording();
    timeline.setRecording(detail);
    timeline.setPlayer(&player);
    scoreboard.setRecording(detail);
    scoreboard.setLocalPlayer({std::string("Ahri"), std::string("MIDDLE")});
    timeline.setCurrentTime(30);
    scoreboard.setCurrentTime(30);
}

ReviewViewModels::~ReviewViewModels() {
    timeline.setPlayer(nullptr);
    // Cancelled waits wake through the event loop; let them end before the clock goes.
    QCoreApplication::processEvents();
}

QVariantMap ReviewViewModels::propertiesFor(const QString& fileName) {
    const QString name = fileName.section(QLatin1Char('/'), -1);
    if (name == QLatin1String("GameTimelineView.qml") || name == QLatin1String("TimelineFilterPanel.qml") ||
        name == QLatin1String("PlaybackRatePanel.qml")) {
        return {{QStringLiteral("model"), object(&timeline)}};
    }
    if (name == QLatin1String("PlayerVolumeControl.qml") ||
        name == QLatin1String("VerticalPlayerVolumeControl.qml"))
        return {{QStringLiteral("volume"), object(timeline.volume())}};
    if (name == QLatin1String("RecordingEventHoverCard.qml"))
        return {{QStringLiteral("hoverCard"), object(timeline.hoverCard())}};
    if (name == QLatin1String("RecordingScoreboardHeaderView.qml") ||
        name == QLatin1String("RecordingScoreboardView.qml")) {
        return {{QStringLiteral("model"), object(&scoreboard)}};
    }
    if (name == QLatin1String("ScoreboardTeamSummary.qml"))
        return {{QStringLiteral("team"), object(scoreboard.blueTeam())}};
    if (name == QLatin1String("ScoreboardPlayerRow.qml")) {
        // The first blue row, as its delegate is given it: the roles it declares.
        QVariantMap row{{QStringLiteral("scoreboard"), object(&scoreboard)}};
        for (const char* role : {"exists", "playerID", "championName", "championIdentifier", "displayName",
                                 "level", "isDead", "respawnText", "kdaText", "creepScore", "roleName",
                                 "itemIDs", "rankToolTip", "riotIdToolTip", "isHovered", "isLocalPlayer"}) {
            const QString key = QString::fromLatin1(role);
            row.insert(key, scoreboard.blueRows()->value(0, key));
        }
        return row;
    }
    return {};
}

}  // namespace kestrum::test
