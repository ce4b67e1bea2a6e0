#include "SyntheticRoster.h"

#include "SyntheticRandom.h"

namespace kestrum::synthetic {

namespace {

struct ItemEntry {
    std::int64_t itemID;
    const char* displayName;
    std::int64_t price;
};

constexpr ItemEntry kTrinket{3340, "Stealth Ward", 0};
constexpr std::array<ItemEntry, 3> kStarters{
    {{1055, "Doran's Blade", 450}, {1056, "Doran's Ring", 400}, {3865, "World Atlas", 400}}};
constexpr std::array<ItemEntry, 4> kBoots{{{3047, "Plated Steelcaps", 1200},
                                           {3111, "Mercury's Treads", 1250},
                                           {3020, "Sorcerer's Shoes", 1100},
                                           {3006, "Berserker's Greaves", 1100}}};
constexpr std::array<ItemEntry, 12> kCompleted{{{6672, "Kraken Slayer", 3100},
                                                {3031, "Infinity Edge", 3400},
                                                {3157, "Zhonya's Hourglass", 3250},
                                                {4645, "Shadowflame", 3200},
                                                {3068, "Sunfire Aegis", 2700},
                                                {3075, "Thornmail", 2450},
                                                {6631, "Stridebreaker", 3300},
                                                {3071, "Black Cleaver", 3000},
                                                {3190, "Locket of the Iron Solari", 2200},
                                                {3050, "Zeke's Convergence", 2200},
                                                {3089, "Rabadon's Deathcap", 3600},
                                                {3036, "Lord Dominik's Regards", 3000}}};

constexpr std::array<const char*, 7> kTiers{"IRON",     "BRONZE",  "SILVER", "GOLD",
                                            "PLATINUM", "EMERALD", "DIAMOND"};
constexpr std::array<const char*, 4> kDivisions{"IV", "III", "II", "I"};

RecordingMatchData::Rank soloRank(int tier, SyntheticRandom& random) {
    return {"RANKED_SOLO_5x5", kTiers[static_cast<std::size_t>(tier)],
            kDivisions[static_cast<std::size_t>(random.below(4))], random.below(100)};
}

}  // namespace

const std::array<SyntheticPlayerProfile, kPlayerCount>& syntheticRoster() {
    static const std::array<SyntheticPlayerProfile, kPlayerCount> roster{{
        {"Ironclad Tom", "EUW", "Garen", "Garen", "ORDER", "TOP", 7.1},
        {"Leaf Walker", "EUW", "Lee Sin", "LeeSin", "ORDER", "JUNGLE", 5.6},
        {"Kestrum Demo", "EUW", "Ahri", "Ahri", "ORDER", "MIDDLE", 7.8},
        {"Void Hunter", "1234", "Kai'Sa", "Kaisa", "ORDER", "BOTTOM", 8.4},
        {"Lantern", "EUW", "Thresh", "Thresh", "ORDER", "UTILITY", 1.3},
        {"Hand of Noxus", "NOX", "Darius", "Darius", "CHAOS", "TOP", 6.8},
        {"Mantis", "EUW", "Kha'Zix", "Khazix", "CHAOS", "JUNGLE", 5.9},
        {"Clockwork", "EUW", "Orianna", "Orianna", "CHAOS", "MIDDLE", 7.6},
        {"Get Excited", "ZAUN", "Jinx", "Jinx", "CHAOS", "BOTTOM", 8.9},
        {"Deep Anchor", "EUW", "Nautilus", "Nautilus", "CHAOS", "UTILITY", 1.1},
    }};
    return roster;
}

std::vector<SyntheticPurchase> syntheticBuildPath(int playerIndex, SyntheticRandom& random) {
    std::vector<SyntheticPurchase> path;
    path.push_back({0, kTrinket.itemID, kTrinket.displayName, kTrinket.price, 6});
    const ItemEntry& starter = kStarters[static_cast<std::size_t>(playerIndex % 3)];
    path.push_back({0, starter.itemID, starter.displayName, starter.price, 0});
    const ItemEntry& boots = kBoots[static_cast<std::size_t>(playerIndex % 4)];
    path.push_back({random.between(360, 540), boots.itemID, boots.displayName, boots.price, 1});
    double time = random.between(540, 720);
    for (int item = 0; item < 5; ++item) {
        const ItemEntry& entry = kCompleted[static_cast<std::size_t>((playerIndex * 5 + item * 7) % 12)];
        // The starter's slot is sold for the first completed item.
        path.push_back({time, entry.itemID, entry.displayName, entry.price, item == 0 ? 0 : item + 1});
        time += random.between(300, 480);
    }
    return path;
}

RecordingMatchData syntheticMatchData(
    const std::array<std::array<std::int64_t, 3>, kPlayerCount>& killsDeathsAssists, std::int64_t gameSeconds,
    SyntheticRandom& random) {
    RecordingMatchData match;
    match.matchID = "EUW1_7014000001";
    match.gameVersion = "14.23.636.1";
    match.queueID = 420;
    match.gameDuration = gameSeconds;
    for (int index = 0; index < kPlayerCount; ++index) {
        const SyntheticPlayerProfile& profile = syntheticRoster()[static_cast<std::size_t>(index)];
        const auto& [kills, deaths, assists] = killsDeathsAssists[static_cast<std::size_t>(index)];
        RecordingMatchData::Participant participant;
        participant.participantID = index + 1;
        participant.puuid = "synthetic-puuid-" + std::to_string(index + 1);
        participant.championName = profile.championKey;
        participant.teamID = profile.isBlue() ? 100 : 200;
        participant.teamPosition = profile.position;
        participant.riotIdGameName = profile.gameName;
        participant.riotIdTagline = profile.tagLine;
        participant.kills = kills;
        participant.deaths = deaths;
        participant.assists = assists;
        participant.totalMinionsKilled =
            static_cast<std::int64_t>(profile.creepScorePerMinute * gameSeconds / 60);
        participant.goldEarned = 9000 + random.below(9000);
        participant.goldSpent = participant.goldEarned - random.below(1500);
        participant.totalDamageDealtToChampions = 8000 + random.below(40000);
        participant.visionScore = 10 + random.below(60);
        participant.win = profile.isBlue();
        // One in five players has not played ranked this season.
        if (random.below(5) != 0) {
            const int tier = 2 + random.below(5);
            participant.currentRank = soloRank(tier, random);
            if (random.chance(0.5))
                participant.seasonHighRank = soloRank(tier + 1 < 7 ? tier + 1 : tier, random);
        }
        match.participants.push_back(std::move(participant));
    }
    return match;
}

}  // namespace kestrum::synthetic
