#include "SyntheticGame.h"

#include "SyntheticEventGenerator.h"
#include "SyntheticRandom.h"
#include "SyntheticRoster.h"
#include "SyntheticScoreboard.h"

#include <QUuid>

#include <algorithm>

namespace kestrum::synthetic {

namespace {

constexpr double kSecondsAfterTheEnd = 12;

// Orders the events, numbers them as the feed does, and names the first champion kill "FirstBlood".
void numberEvents(std::vector<RecordingEvent>& events) {
    std::stable_sort(events.begin(), events.end(), [](const RecordingEvent& a, const RecordingEvent& b) {
        return a.videoTime < b.videoTime;
    });
    bool firstKillNamed = false;
    for (std::size_t index = 0; index < events.size(); ++index) {
        events[index].id = static_cast<std::int64_t>(index);
        if (!firstKillNamed && events[index].name == "ChampionKill") {
            events[index].name = "FirstBlood";
            firstKillNamed = true;
        }
    }
}

}  // namespace

SyntheticGame makeSyntheticGame(const SyntheticGameOptions& options) {
    SyntheticRandom random(options.seed);
    std::vector<RecordingEvent> events = SyntheticEventGenerator(random, options.gameSeconds).generate();
    numberEvents(events);

    SyntheticGame game;
    RecordingSessionData& document = game.document;
    document.schemaVersion = 4;
    // Derived from the seed, so that the same seed gives the same document.
    document.recordingID =
        QUuid::createUuidV5(QUuid(), QStringLiteral("kestrum-synthetic-game-%1").arg(options.seed));
    document.metadataRevision = 1;
    document.scoreboard = syntheticScoreboard(events, options.gameSeconds, options.loadingSeconds, random);
    SyntheticScoreKeeper finalScores;
    finalScores.advance(events, options.gameSeconds);
    document.matchData = syntheticMatchData(finalScores.killsDeathsAssists(),
                                            static_cast<std::int64_t>(options.gameSeconds), random);
    document.apmSamples.emplace();
    for (RecordingEvent& event : events) event.videoTime += options.loadingSeconds;
    document.events = std::move(events);

    game.movieDurationSeconds = options.loadingSeconds + options.gameSeconds + kSecondsAfterTheEnd;
    const SyntheticPlayerProfile& local = syntheticRoster()[kLocalPlayerIndex];
    game.localChampionIdentifier = local.championKey;
    game.localPosition = local.position;
    return game;
}

}  // namespace kestrum::synthetic
