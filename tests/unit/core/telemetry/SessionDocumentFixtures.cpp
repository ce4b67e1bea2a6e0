#include "SessionDocumentFixtures.h"

#include "support/TestEnvironment.h"

#include <array>
#include <functional>
#include <optional>

namespace kestrum::test {

namespace {

class RandomDocument {
  public:
    explicit RandomDocument(std::mt19937& random) : random_(random) {}

    RecordingSessionData session() {
        RecordingSessionData s;
        s.schemaVersion = maybe([&] { return integer(); });
        s.recordingID = maybe([] { return QUuid::createUuid(); });
        s.metadataRevision = maybe([&] { return integer(); });
        s.gameID = maybe([&] { return text(); });
        s.events = list([&] { return event(); });
        s.scoreboard = maybe([&] { return list([&] { return snapshot(); }); });
        s.apmSamples = maybe([&] {
            return list([&] { return RecordingAPMSample{number(), integer(), integer()}; });
        });
        s.matchData = maybe([&] { return matchData(); });
        s.enrichment = maybe([&] {
            return RecordingEnrichmentState{static_cast<RecordingEnrichmentState::Status>(below(5)),
                                            integer(), maybe([&] { return ReferenceDate{number()}; }),
                                            maybe([&] { return text(); })};
        });
        s.mediaKind = maybe([&] { return text(); });
        s.title = maybe([&] { return text(); });
        s.sourceRecordingID = maybe([] { return QUuid::createUuid(); });
        return s;
    }

  private:
    int below(std::size_t bound) {
        return std::uniform_int_distribution<int>(0, static_cast<int>(bound) - 1)(random_);
    }
    bool coin() { return below(2) == 1; }
    std::int64_t integer() {
        static constexpr std::array<std::int64_t, 4> kEdges{0, -1, std::numeric_limits<std::int64_t>::min(),
                                                            std::numeric_limits<std::int64_t>::max()};
        if (below(8) == 0) return kEdges[static_cast<std::size_t>(below(4))];
        return std::uniform_int_distribution<std::int64_t>(-100000, 10000000)(random_);
    }
    double number() {
        switch (below(4)) {
            case 0:
                return std::uniform_real_distribution<double>(0, 4000)(random_);
            case 1:
                return static_cast<double>(below(5000)) / 4;
            case 2:
                return std::uniform_real_distribution<double>(-1e300, 1e300)(random_);
            default:
                return std::ldexp(std::uniform_real_distribution<double>(0.5, 1)(random_),
                                  below(2098) - 1074);
        }
    }
    std::string text() {
        static constexpr std::array<std::string_view, 10> kPieces{"Kayn",         " ",
                                                                  "\xe2\x86\x92", "/",
                                                                  "\"",           "\\",
                                                                  "\n\t",         std::string_view("\0", 1),
                                                                  "\xc3\xa9",     "\xf0\x9f\x90\x89"};
        std::string result;
        const int count = below(5);
        for (int i = 0; i < count; ++i) result += kPieces[static_cast<std::size_t>(below(kPieces.size()))];
        return result;
    }
    template <class Make>
    auto maybe(Make make) -> std::optional<decltype(make())> {
        if (coin()) return make();
        return std::nullopt;
    }
    template <class Make>
    auto list(Make make) -> std::vector<decltype(make())> {
        std::vector<decltype(make())> items;
        const int count = below(4);
        for (int i = 0; i < count; ++i) items.push_back(make());
        return items;
    }

    RecordingEvent event() {
        RecordingEvent e;
        e.id = integer();
        e.name = text();
        e.videoTime = number();
        e.detail = maybe([&] { return text(); });
        e.team = maybe([&] { return coin() ? RecordingTeam::blue : RecordingTeam::red; });
        e.multiKillCount = maybe([&] { return integer(); });
        e.isLocalPlayerKill = maybe([&] { return coin(); });
        e.isLocalPlayerDeath = maybe([&] { return coin(); });
        e.isLocalPlayerAssist = maybe([&] { return coin(); });
        e.killerName = maybe([&] { return text(); });
        e.killerChampion = maybe([&] { return text(); });
        e.victimName = maybe([&] { return text(); });
        e.victimChampion = maybe([&] { return text(); });
        e.assisterNames = maybe([&] { return list([&] { return text(); }); });
        return e;
    }

    RecordingScoreboardSnapshot snapshot() {
        return {number(), number(), list([&] { return player(); })};
    }

    RecordingScoreboardPlayer player() {
        RecordingScoreboardPlayer p;
        p.championName = text();
        p.isDead = coin();
        p.items = list([&] {
            return RecordingScoreboardPlayer::Item{integer(), text(), integer(), integer(), integer()};
        });
        p.level = integer();
        p.position = maybe([&] { return text(); });
        p.rawChampionName = maybe([&] { return text(); });
        p.respawnTimer = number();
        p.riotId = maybe([&] { return text(); });
        p.riotIdGameName = maybe([&] { return text(); });
        p.riotIdTagLine = maybe([&] { return text(); });
        p.roleQuestCompleted = maybe([&] { return coin(); });
        p.positionQuestCompleted = maybe([&] { return coin(); });
        p.scores = {integer(), integer(), integer(), integer()};
        p.summonerName = text();
        p.team = coin() ? "ORDER" : "CHAOS";
        return p;
    }

    RecordingMatchData::Rank rank() { return {text(), text(), text(), integer()}; }

    RecordingMatchData matchData() {
        RecordingMatchData m;
        m.matchID = text();
        m.gameVersion = text();
        m.queueID = integer();
        m.gameDuration = integer();
        m.gameEndTimestamp = maybe([&] { return integer(); });
        m.participants = list([&] {
            RecordingMatchData::Participant p{
                integer(), text(),    text(),    integer(),    text(),       text(),       text(),
                integer(), integer(), integer(), integer(),    integer(),    integer(),    integer(),
                integer(), integer(), coin(),    std::nullopt, std::nullopt, std::nullopt, std::nullopt};
            p.roleBoundItem = maybe([&] { return integer(); });
            p.runeIDs = maybe([&] { return list([&] { return integer(); }); });
            p.currentRank = maybe([&] { return rank(); });
            p.seasonHighRank = maybe([&] { return rank(); });
            return p;
        });
        m.frames = list([&] {
            return RecordingMatchData::Frame{
                integer(), list([&] {
                    RecordingMatchData::PlayerFrame f{integer(), integer(), integer(), integer(),
                                                      integer(), integer(), integer(), std::nullopt};
                    f.position = maybe([&] {
                        return RecordingMatchData::PlayerFrame::Position{integer(), integer()};
                    });
                    return f;
                })};
        });
        return m;
    }

    std::mt19937& random_;
};

}  // namespace

std::string telemetryFixture(const char* fileName) {
    const QByteArray bytes =
        readFileBytes(QStringLiteral(KESTRUM_FIXTURES_DIR "/telemetry/") + QString::fromUtf8(fileName));
    return bytes.toStdString();
}

RecordingSessionData randomSessionData(std::mt19937& random) {
    return RandomDocument(random).session();
}

}  // namespace kestrum::test
