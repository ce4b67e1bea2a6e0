#include "MatchScript.h"

#include <QFile>
#include <QJsonDocument>

#include <algorithm>

namespace kestrum::simulator {

namespace {

QJsonObject withFreshChampionDefaults(QJsonObject row) {
    const auto setDefault = [&row](const QString& key, const QJsonValue& value) {
        if (!row.contains(key)) row.insert(key, value);
    };
    setDefault(QStringLiteral("isDead"), false);
    setDefault(QStringLiteral("items"), QJsonArray{});
    setDefault(QStringLiteral("level"), 1);
    setDefault(QStringLiteral("respawnTimer"), 0.0);
    setDefault(QStringLiteral("scores"), QJsonObject{{QStringLiteral("assists"), 0},
                                                     {QStringLiteral("creepScore"), 0},
                                                     {QStringLiteral("deaths"), 0},
                                                     {QStringLiteral("kills"), 0},
                                                     {QStringLiteral("wardScore"), 0.0}});
    return row;
}

bool fail(QString* errorMessage, const QString& text) {
    if (errorMessage) *errorMessage = text;
    return false;
}

bool readPlayers(const QJsonArray& rows, MatchScript& script, QString* errorMessage) {
    for (const QJsonValue& value : rows) {
        QJsonObject row = value.toObject();
        if (!row.value(QStringLiteral("summonerName")).isString() ||
            !row.value(QStringLiteral("championName")).isString() ||
            !row.value(QStringLiteral("team")).isString()) {
            return fail(errorMessage,
                        QStringLiteral("every player needs summonerName, championName and team"));
        }
        MatchScript::Player player;
        for (const QJsonValue& change : row.take(QStringLiteral("timeline")).toArray()) {
            QJsonObject values = change.toObject();
            const double time = values.take(QStringLiteral("time")).toDouble();
            player.timeline.push_back({time, values});
        }
        std::stable_sort(player.timeline.begin(), player.timeline.end(),
                         [](const auto& a, const auto& b) { return a.time < b.time; });
        player.base = withFreshChampionDefaults(row);
        script.players.push_back(std::move(player));
    }
    return true;
}

bool readEvents(const QJsonArray& rows, MatchScript& script, QString* errorMessage) {
    for (const QJsonValue& value : rows) {
        const QJsonObject row = value.toObject();
        if (!row.value(QStringLiteral("EventName")).isString() ||
            !row.value(QStringLiteral("EventTime")).isDouble()) {
            return fail(errorMessage, QStringLiteral("every event needs EventName and EventTime"));
        }
        script.events.push_back(row);
    }
    std::stable_sort(script.events.begin(), script.events.end(),
                     [](const QJsonObject& a, const QJsonObject& b) {
                         return a.value(QStringLiteral("EventTime")).toDouble() <
                                b.value(QStringLiteral("EventTime")).toDouble();
                     });
    int nextID = 0;
    for (QJsonObject& event : script.events) {
        if (!event.contains(QStringLiteral("EventID"))) event.insert(QStringLiteral("EventID"), nextID);
        nextID = event.value(QStringLiteral("EventID")).toInt() + 1;
    }
    return true;
}

}  // namespace

std::optional<MatchScript> MatchScript::load(const QString& path, QString* errorMessage) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(errorMessage, QStringLiteral("cannot read the script %1: %2").arg(path, file.errorString()));
        return std::nullopt;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (!document.isObject()) {
        fail(errorMessage,
             QStringLiteral("the script %1 is not a JSON object: %2").arg(path, parseError.errorString()));
        return std::nullopt;
    }
    return fromJson(document.object(), errorMessage);
}

std::optional<MatchScript> MatchScript::fromJson(const QJsonObject& root, QString* errorMessage) {
    MatchScript script;
    script.gameMode = root.value(QStringLiteral("gameMode")).toString(QStringLiteral("CLASSIC"));
    script.activePlayer = root.value(QStringLiteral("activePlayer")).toString();
    script.loadingSeconds = root.value(QStringLiteral("loadingSeconds")).toDouble(0);
    script.durationSeconds = root.value(QStringLiteral("durationSeconds")).toDouble(0);
    script.replay = root.value(QStringLiteral("replay")).toBool(false);
    if (script.activePlayer.isEmpty() || script.durationSeconds <= 0) {
        fail(errorMessage, QStringLiteral("the script needs an activePlayer and a positive durationSeconds"));
        return std::nullopt;
    }
    if (!readPlayers(root.value(QStringLiteral("players")).toArray(), script, errorMessage))
        return std::nullopt;
    if (!readEvents(root.value(QStringLiteral("events")).toArray(), script, errorMessage))
        return std::nullopt;
    return script;
}

QJsonObject MatchScript::playerAt(const Player& player, double time) const {
    QJsonObject row = player.base;
    for (const PlayerChange& change : player.timeline) {
        if (change.time > time) break;
        for (auto it = change.values.begin(); it != change.values.end(); ++it)
            row.insert(it.key(), it.value());
    }
    return row;
}

}  // namespace kestrum::simulator
