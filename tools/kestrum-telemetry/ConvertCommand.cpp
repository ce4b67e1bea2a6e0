#include "ConvertCommand.h"

#include "EventRowsJson.h"

#include "core/telemetry/vocabulary/EventConversion.h"
#include "core/telemetry/vocabulary/LiveGamePayloadCodec.h"

#include <QCommandLineParser>
#include <QFile>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdio>
#include <optional>
#include <string>

namespace kestrum::tools {

namespace {

// What one conversion needs, however it was given.
struct ConversionInput {
    std::vector<LiveEvent> feed;
    std::vector<RecordingScoreboardPlayer> players;
    std::optional<std::string> activePlayerName;
    std::optional<double> gameTime;  // the answer's own clock, when it has one
};

int complain(const QString& message, int status) {
    std::fprintf(stderr, "kestrum-telemetry convert: %s\n", qPrintable(message));
    return status;
}

std::optional<std::string> readFile(const QString& path, QString* error) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    return file.readAll().toStdString();
}

template <class T>
std::optional<T> decodeFile(const QString& path, Result<T> (*decode)(std::string_view), QString* error) {
    const auto bytes = readFile(path, error);
    if (!bytes) return std::nullopt;
    auto decoded = decode(*bytes);
    if (!decoded.ok()) {
        *error = QStringLiteral("%1 is not a valid answer: %2").arg(path, decoded.error().description);
        return std::nullopt;
    }
    return std::move(decoded).value();
}

std::string member(const rapidjson::Value& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return {buffer.GetString(), buffer.GetSize()};
}

// allgamedata holds the other answers inside it: events.Events, allPlayers, activePlayer, gameData.
std::optional<ConversionInput> fromAllGameData(const QString& path, QString* error) {
    const auto bytes = readFile(path, error);
    if (!bytes) return std::nullopt;
    rapidjson::Document root;
    root.Parse(bytes->data(), bytes->size());
    if (root.HasParseError() || !root.IsObject() || !root.HasMember("events") ||
        !root.HasMember("allPlayers") || !root.HasMember("activePlayer") ||
        !root["activePlayer"].IsObject()) {
        *error = path + QStringLiteral(" is not an allgamedata answer (events, allPlayers, activePlayer)");
        return std::nullopt;
    }
    ConversionInput input;
    auto feed = decodeEventData(member(root["events"]));
    auto players = decodePlayerList(member(root["allPlayers"]));
    if (!feed.ok() || !players.ok()) {
        *error = QStringLiteral("%1 is not a valid answer: %2")
                     .arg(path, (!feed.ok() ? feed.error() : players.error()).description);
        return std::nullopt;
    }
    input.feed = std::move(feed).value();
    input.players = std::move(players).value();
    const auto& active = root["activePlayer"];
    for (const char* key : {"riotId", "summonerName"}) {
        if (active.HasMember(key) && active[key].IsString()) {
            input.activePlayerName = active[key].GetString();
            break;
        }
    }
    if (root.HasMember("gameData") && root["gameData"].IsObject() && root["gameData"].HasMember("gameTime") &&
        root["gameData"]["gameTime"].IsNumber()) {
        input.gameTime = root["gameData"]["gameTime"].GetDouble();
    }
    return input;
}

std::optional<ConversionInput> fromSeparateAnswers(const QCommandLineParser& parser, QString* error) {
    ConversionInput input;
    auto feed = decodeFile(parser.value(QStringLiteral("eventdata")), &decodeEventData, error);
    if (!feed) return std::nullopt;
    auto players = decodeFile(parser.value(QStringLiteral("playerlist")), &decodePlayerList, error);
    if (!players) return std::nullopt;
    auto name = decodeFile(parser.value(QStringLiteral("activeplayername")), &decodeActivePlayerName, error);
    if (!name) return std::nullopt;
    return ConversionInput{std::move(*feed), std::move(*players), std::move(*name), std::nullopt};
}

std::optional<double> secondsOption(const QCommandLineParser& parser, const QString& name, bool* ok) {
    if (!parser.isSet(name)) return std::nullopt;
    return parser.value(name).toDouble(ok);
}

}  // namespace

int runConvert(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.addOptions(
        {{QStringLiteral("eventdata"), QStringLiteral("eventdata answer"), QStringLiteral("file")},
         {QStringLiteral("playerlist"), QStringLiteral("playerlist answer"), QStringLiteral("file")},
         {QStringLiteral("activeplayername"), QStringLiteral("activeplayername answer"),
          QStringLiteral("file")},
         {QStringLiteral("allgamedata"), QStringLiteral("allgamedata answer"), QStringLiteral("file")},
         {QStringLiteral("elapsed"), QStringLiteral("movie seconds at the answer"), QStringLiteral("s")},
         {QStringLiteral("gametime"), QStringLiteral("game clock at the answer"), QStringLiteral("s")}});
    if (!parser.parse(arguments)) return complain(parser.errorText(), 2);
    const bool separate = parser.isSet(QStringLiteral("eventdata")) &&
                          parser.isSet(QStringLiteral("playerlist")) &&
                          parser.isSet(QStringLiteral("activeplayername"));
    if (separate == parser.isSet(QStringLiteral("allgamedata"))) {
        return complain(
            QStringLiteral("give --eventdata, --playerlist and --activeplayername, or --allgamedata alone"),
            2);
    }
    bool elapsedOk = true;
    bool gameTimeOk = true;
    const auto elapsed = secondsOption(parser, QStringLiteral("elapsed"), &elapsedOk);
    const auto gameTime = secondsOption(parser, QStringLiteral("gametime"), &gameTimeOk);
    if (!elapsedOk || !gameTimeOk)
        return complain(QStringLiteral("--elapsed and --gametime take seconds"), 2);

    QString error;
    const auto input = separate ? fromSeparateAnswers(parser, &error)
                                : fromAllGameData(parser.value(QStringLiteral("allgamedata")), &error);
    if (!input) return complain(error, 1);
    const double clock = gameTime.value_or(input->gameTime.value_or(0));
    const auto rows = convertEvents(input->feed, input->players, input->activePlayerName,
                                    elapsed.value_or(clock), clock, KnownEventIDs{});
    const auto json = encodeEventRows(rows);
    if (!json.ok()) return complain(json.error().description, 1);
    std::printf("%s\n", json.value().c_str());
    return 0;
}

}  // namespace kestrum::tools
