#include "core/library/MatchVideoDerivation.h"

#include "core/library/FinishedItems.h"
#include "core/library/RecordingTitles.h"
#include "core/telemetry/vocabulary/ChampionNames.h"
#include "core/telemetry/vocabulary/TextCase.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <unordered_set>
#include <utility>

namespace kestrum {

namespace {

constexpr std::int64_t kSummonersRiftMapID = 11;
constexpr std::int64_t kHowlingAbyssMapID = 12;
constexpr std::int64_t kNexusBlitzMapID = 21;
constexpr std::int64_t kArenaMapID = 30;

constexpr std::array<std::pair<std::int64_t, std::int64_t>, 22> kMapIDByQueue{{
    {0, kSummonersRiftMapID},    {4, kSummonersRiftMapID},    {6, kSummonersRiftMapID},
    {42, kSummonersRiftMapID},   {400, kSummonersRiftMapID},  {420, kSummonersRiftMapID},
    {430, kSummonersRiftMapID},  {440, kSummonersRiftMapID},  {480, kSummonersRiftMapID},
    {490, kSummonersRiftMapID},  {700, kSummonersRiftMapID},  {830, kSummonersRiftMapID},
    {840, kSummonersRiftMapID},  {850, kSummonersRiftMapID},  {900, kSummonersRiftMapID},
    {1020, kSummonersRiftMapID}, {1400, kSummonersRiftMapID}, {450, kHowlingAbyssMapID},
    {1300, kNexusBlitzMapID},    {1700, kArenaMapID},         {1710, kArenaMapID},
    {1740, kArenaMapID},
}};

// The local player as far as the session shows it. The scoreboard player is the one of the last
// snapshot; the pointers point into the session.
struct LocalPlayer {
    const RecordingMatchData::Participant* participant = nullptr;
    const RecordingScoreboardSnapshot* lastSnapshot = nullptr;
    const RecordingScoreboardPlayer* scoreboardPlayer = nullptr;
};

const RecordingScoreboardSnapshot* lastSnapshotOf(const std::optional<ScoreboardDigest>& scoreboard) {
    return scoreboard && scoreboard->lastSnapshot ? &*scoreboard->lastSnapshot : nullptr;
}

LocalPlayer findLocalPlayer(const SessionDigest& digest, const std::optional<LocalPlayerSearch>& search) {
    LocalPlayer local;
    local.lastSnapshot = lastSnapshotOf(digest.scoreboard);
    if (!search) return local;
    if (digest.session.matchData) local.participant = search->participantIn(*digest.session.matchData);
    if (local.lastSnapshot) local.scoreboardPlayer = search->playerIn(*local.lastSnapshot);
    return local;
}

std::optional<std::int64_t> killParticipation(const RecordingSessionData& session, const LocalPlayer& local) {
    if (session.matchData && local.participant) {
        double teamKills = 0;
        for (const auto& participant : session.matchData->participants) {
            if (participant.teamID == local.participant->teamID)
                teamKills += static_cast<double>(participant.kills);
        }
        return killParticipationPercent(local.participant->kills, local.participant->assists, teamKills);
    }
    if (!local.scoreboardPlayer) return std::nullopt;
    double teamKills = 0;
    for (const auto& player : local.lastSnapshot->players) {
        if (player.team == local.scoreboardPlayer->team)
            teamKills += static_cast<double>(player.scores.kills);
    }
    const auto& scores = local.scoreboardPlayer->scores;
    return killParticipationPercent(scores.kills, scores.assists, teamKills);
}

// Game seconds truncated to whole seconds; absent when they do not fit a 64-bit integer.
std::optional<std::int64_t> wholeSeconds(double seconds) {
    const double truncated = std::trunc(seconds);
    constexpr double kLimit = 9.2e18;
    if (!(truncated > -kLimit && truncated < kLimit)) return std::nullopt;
    return static_cast<std::int64_t>(truncated);
}

void applyScores(MatchVideo& video, const LocalPlayer& local) {
    if (local.scoreboardPlayer) {
        const auto& scores = local.scoreboardPlayer->scores;
        video.finalKills = scores.kills;
        video.finalDeaths = scores.deaths;
        video.finalAssists = scores.assists;
        video.finalCreepScore = scores.creepScore;
    } else if (local.participant) {
        const auto& participant = *local.participant;
        video.finalKills = participant.kills;
        video.finalDeaths = participant.deaths;
        video.finalAssists = participant.assists;
        video.finalCreepScore = participant.totalMinionsKilled + participant.neutralMinionsKilled;
    }
}

// The champion and role favour the post-game record, the scores (applyScores) the scoreboard: the
// asymmetry is intended.
void applySession(MatchVideo& video, const SessionDigest& digest, const ParsedRecordingFileName& fileName) {
    const RecordingSessionData& session = digest.session;
    const std::optional<LocalPlayerSearch> search = LocalPlayerSearch::fromFileName(fileName);
    const LocalPlayer local = findLocalPlayer(digest, search);
    if (session.title) video.matchTitle = session.title;
    video.mediaKind = session.mediaKind;
    if (session.matchData) {
        video.queueID = session.matchData->queueID;
        video.gameVersion = session.matchData->gameVersion;
        video.gameDuration = session.matchData->gameDuration;
    } else if (local.lastSnapshot) {
        video.gameDuration = wholeSeconds(local.lastSnapshot->gameTime);
    }
    if (local.participant) {
        video.champion = local.participant->championName;
        video.championAssetName = local.participant->championName;
        if (!local.participant->teamPosition.empty()) video.role = local.participant->teamPosition;
        video.didWin = local.participant->win;
    }
    if (local.scoreboardPlayer) video.championAssetName = cleanedChampionName(*local.scoreboardPlayer);
    applyScores(video, local);
    video.killParticipation = killParticipation(session, local);
    video.finalItemIDs = finalItemIDs(digest.scoreboard, search);
    const bool isArena = fileName.gameMode && upperCased(*fileName.gameMode) == "CHERRY";
    video.legendaryItemIDsInPurchaseOrder = legendaryItemIDsInPurchaseOrder(digest.scoreboard, isArena);
}

}  // namespace

MatchVideo deriveMatchVideo(const QString& moviePath, ReferenceDate date,
                            const ParsedRecordingFileName& fileName,
                            const std::optional<SessionDigest>& digest) {
    MatchVideo video;
    video.url = moviePath;
    video.date = date;
    video.matchTitle = fileNameTitle(fileName);
    video.champion = fileName.champion;
    video.championAssetName = fileName.champion;
    video.gameMode = fileName.gameMode;
    video.role = fileName.lane;
    video.mapID = mapIDFor(fileName.gameMode, digest ? digest->session.matchData : std::nullopt);
    if (digest) applySession(video, *digest, fileName);
    return video;
}

MatchVideo deriveMatchVideo(const QString& moviePath, ReferenceDate date,
                            const ParsedRecordingFileName& fileName,
                            std::optional<RecordingSessionData> session) {
    std::optional<SessionDigest> digest;
    if (session) digest = SessionDigest::of(std::move(*session), LocalPlayerSearch::fromFileName(fileName));
    return deriveMatchVideo(moviePath, date, fileName, digest);
}

std::optional<std::int64_t> mapIDFor(const std::optional<std::string>& gameMode,
                                     const std::optional<RecordingMatchData>& matchData) {
    if (gameMode) {
        const std::string mode = upperCased(*gameMode);
        if (mode == "ARAM" || mode == "KIWI") return kHowlingAbyssMapID;
        if (mode == "CHERRY") return kArenaMapID;
    }
    if (!matchData) return std::nullopt;
    for (const auto& [queueID, mapID] : kMapIDByQueue) {
        if (queueID == matchData->queueID) return mapID;
    }
    return std::nullopt;
}

std::int64_t killParticipationPercent(std::int64_t kills, std::int64_t assists, double teamKills) {
    if (!(teamKills >= 1)) return 0;
    const double percent =
        std::round((static_cast<double>(kills) + static_cast<double>(assists)) / teamKills * 100.0);
    // The lower bound only keeps a hostile document's negative scores inside the integer's range.
    return static_cast<std::int64_t>(std::clamp(percent, -9.2e18, 100.0));
}

std::optional<std::vector<std::int64_t>> finalItemIDs(const std::optional<ScoreboardDigest>& scoreboard,
                                                      const std::optional<LocalPlayerSearch>& search) {
    const RecordingScoreboardSnapshot* last = lastSnapshotOf(scoreboard);
    if (!last || !search) return std::nullopt;
    const RecordingScoreboardPlayer* player = search->playerIn(*last);
    if (!player) return std::nullopt;
    return slottedItemIDs(*player);
}

std::optional<std::vector<std::int64_t>> legendaryItemIDsInPurchaseOrder(
    const std::optional<ScoreboardDigest>& scoreboard, bool isArena) {
    if (!scoreboard) return std::nullopt;
    std::vector<const ScoreboardDigest::LocalItems*> byGameTime;
    byGameTime.reserve(scoreboard->localItems.size());
    for (const auto& held : scoreboard->localItems) byGameTime.push_back(&held);
    std::stable_sort(byGameTime.begin(), byGameTime.end(),
                     [](const auto* a, const auto* b) { return a->gameTime < b->gameTime; });

    std::vector<std::int64_t> ids;
    std::unordered_set<std::int64_t> seen;
    for (const ScoreboardDigest::LocalItems* held : byGameTime) {
        for (const std::int64_t itemID : held->itemIDs) {
            if (isFinishedItem(itemID, isArena) && seen.insert(itemID).second) ids.push_back(itemID);
        }
    }
    if (ids.empty()) return std::nullopt;
    return ids;
}

void sortNewestFirst(std::vector<MatchVideo>& matches) {
    std::stable_sort(matches.begin(), matches.end(),
                     [](const MatchVideo& a, const MatchVideo& b) { return a.date > b.date; });
}

}  // namespace kestrum
