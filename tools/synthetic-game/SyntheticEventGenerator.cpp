#include "SyntheticEventGenerator.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace kestrum::synthetic {

namespace {

// The chances of a skirmish's size, one to five kills.
constexpr std::array<double, 5> kSkirmishSizes{0.33, 0.25, 0.17, 0.13, 0.12};
// How often a killer goes on in the next kill of a fight, which makes the multikills.
constexpr double kKillerKeepsGoing = 0.5;
constexpr double kExecutionChance = 0.03;
constexpr double kMultikillWindowSeconds = 10;
constexpr std::array<const char*, 6> kDragonKinds{"Fire", "Earth", "Water", "Air", "Hextech", "Chemtech"};
// Who takes the elemental dragons, in order: blue's fourth, the soul, comes with the sixth.
constexpr std::array<bool, 6> kDragonTakerIsBlue{true, true, false, true, false, true};

const SyntheticPlayerProfile& profile(int player) {
    return syntheticRoster()[static_cast<std::size_t>(player)];
}

std::string detailOf(const std::string& killer, const std::string& victim) {
    return killer + " \xE2\x86\x92 " + victim;
}

// How likely a player is to make a kill: the carries more, the supports less.
double killerWeight(int player) {
    const std::string_view position = profile(player).position;
    if (position == "MIDDLE" || position == "BOTTOM") return 1.5;
    if (position == "UTILITY") return 0.5;
    return 1;
}

}  // namespace

double respawnSeconds(double gameTime) {
    return 8 + gameTime * 0.017;
}

SyntheticEventGenerator::SyntheticEventGenerator(SyntheticRandom& random, double gameSeconds)
    : random_(random), gameSeconds_(gameSeconds) {}

std::vector<RecordingEvent> SyntheticEventGenerator::generate() {
    events_.clear();
    events_.push_back(event("GameStart", 0, std::nullopt));
    addSkirmishes();
    addDragons();
    addJungleObjectives();
    addStructures();
    events_.push_back(event("GameEnd", gameSeconds_, std::nullopt));
    return std::move(events_);
}

void SyntheticEventGenerator::addSkirmishes() {
    double time = random_.between(90, 150);
    while (time < gameSeconds_ - 40) time = addSkirmish(time) + random_.between(3, 11);
}

double SyntheticEventGenerator::addSkirmish(double start) {
    double draw = random_.unit();
    int size = 1;
    for (const double chance : kSkirmishSizes) {
        if (draw < chance) break;
        draw -= chance;
        ++size;
    }
    const bool blueWins = random_.chance(0.55);
    std::optional<int> lastKiller;
    bool aced = false;
    double time = start;
    for (int kill = 0; kill < std::min(size, 5); ++kill) {
        const bool blueKills = random_.chance(0.8) ? blueWins : !blueWins;
        const std::optional<int> victim = pickAlive(!blueKills, time, false);
        if (!victim) break;
        if (random_.chance(kExecutionChance)) {
            addExecution(time, *victim);
        } else {
            const bool keepsGoing = lastKiller && profile(*lastKiller).isBlue() == blueKills &&
                                    isAlive(*lastKiller, time) && random_.chance(kKillerKeepsGoing);
            const std::optional<int> killer = keepsGoing ? lastKiller : pickAlive(blueKills, time, true);
            if (!killer) break;
            addKill(time, *killer, *victim);
            lastKiller = killer;
        }
        if (!aced && !anyAlive(!blueKills, time)) {
            RecordingEvent ace = event("Ace", time + 0.2, lastKiller);
            ace.team = blueKills ? RecordingTeam::blue : RecordingTeam::red;
            events_.push_back(std::move(ace));
            aced = true;
        }
        time += random_.between(0.4, 3.0);
    }
    return time;
}

void SyntheticEventGenerator::addKill(double time, int killer, int victim) {
    const bool streakGoesOn = streak_[static_cast<std::size_t>(killer)] > 0 &&
                              time - lastKill_[static_cast<std::size_t>(killer)] <= kMultikillWindowSeconds;
    int& streak = streak_[static_cast<std::size_t>(killer)];
    streak = streakGoesOn ? streak + 1 : 1;
    lastKill_[static_cast<std::size_t>(killer)] = time;
    lastDeath_[static_cast<std::size_t>(victim)] = time;

    RecordingEvent kill = event("ChampionKill", time, killer);
    kill.victimName = profile(victim).riotId();
    kill.victimChampion = profile(victim).championKey;
    kill.detail = detailOf(*kill.killerName, *kill.victimName);
    kill.isLocalPlayerDeath = victim == kLocalPlayerIndex;
    std::vector<std::string> assisters;
    for (const int assister : pickAssisters(killer, time)) {
        assisters.push_back(profile(assister).riotId());
        if (assister == kLocalPlayerIndex) kill.isLocalPlayerAssist = true;
    }
    kill.assisterNames = std::move(assisters);
    events_.push_back(kill);
    if (streak < 2 || streak > 5) return;
    RecordingEvent multikill = event("Multikill", time, killer);
    multikill.multiKillCount = streak;
    multikill.victimName = kill.victimName;
    multikill.victimChampion = kill.victimChampion;
    events_.push_back(std::move(multikill));
}

void SyntheticEventGenerator::addExecution(double time, int victim) {
    lastDeath_[static_cast<std::size_t>(victim)] = time;
    RecordingEvent kill = event("ChampionKill", time, std::nullopt);
    const bool blueTurret = !profile(victim).isBlue();
    kill.killerName = blueTurret ? "Turret_T1_C_05_A" : "Turret_T2_C_05_A";
    kill.team = blueTurret ? RecordingTeam::blue : RecordingTeam::red;
    kill.victimName = profile(victim).riotId();
    kill.victimChampion = profile(victim).championKey;
    kill.detail = detailOf(*kill.killerName, *kill.victimName);
    kill.isLocalPlayerDeath = victim == kLocalPlayerIndex;
    events_.push_back(std::move(kill));
}

void SyntheticEventGenerator::addDragons() {
    std::array<const char*, 6> kinds = kDragonKinds;
    for (std::size_t index = kinds.size() - 1; index > 0; --index) {
        std::swap(kinds[index], kinds[static_cast<std::size_t>(random_.below(static_cast<int>(index) + 1))]);
    }
    double spawn = 300;
    for (std::size_t dragon = 0; spawn < gameSeconds_ - 60; ++dragon) {
        const double time = spawn + random_.between(8, 40);
        const bool elemental = dragon < kDragonTakerIsBlue.size();
        const bool blue = elemental ? kDragonTakerIsBlue[dragon] : random_.chance(0.5);
        RecordingEvent kill = event("DragonKill", time, teamJungler(blue));
        kill.detail = elemental ? kinds[dragon] : "Elder";
        events_.push_back(std::move(kill));
        // After the soul (the last elemental) only Elders come, on the longer interval.
        spawn = time + (dragon + 1 >= kDragonTakerIsBlue.size() ? 360 : 300);
    }
}

void SyntheticEventGenerator::addJungleObjectives() {
    double time = 480 + random_.between(20, 70);
    for (const char* name : {"HordeKill", "HordeKill", "VoidGrubKill"}) {
        events_.push_back(event(name, time, teamJungler(random_.chance(0.6))));
        time += random_.between(3, 8);
    }
    events_.push_back(event("HeraldKill", 900 + random_.between(40, 150), teamJungler(random_.chance(0.5))));
    for (double baron = 1200 + random_.between(90, 260); baron < gameSeconds_ - 90;
         baron += 360 + random_.between(40, 220)) {
        events_.push_back(event("BaronKill", baron, teamJungler(random_.chance(0.6))));
    }
    RecordingEvent nexus = event("NexusKill", gameSeconds_ - 3, kLocalPlayerIndex);
    nexus.isLocalPlayerKill = false;  // only kills, multikills and aces carry the flag
    events_.push_back(std::move(nexus));
}

void SyntheticEventGenerator::addStructures() {
    struct Wave {
        double from;
        double to;
        int count;
        const char* tier;
    };
    constexpr std::array<Wave, 4> kWaves{
        {{600, 1100, 6, "03"}, {1100, 1600, 6, "02"}, {1600, 2100, 5, "01"}, {2150, 2380, 2, "00"}}};
    constexpr std::array<char, 3> kLanes{'L', 'C', 'R'};
    const double scale = gameSeconds_ / 2400;
    for (const Wave& wave : kWaves) {
        for (int turret = 0; turret < wave.count; ++turret) {
            const bool blue = random_.chance(0.68);
            const std::string name = std::string("Turret_") + (blue ? "T2" : "T1") + "_" +
                                     kLanes[static_cast<std::size_t>(turret % 3)] + "_" + wave.tier + "_A";
            addStructure(random_.between(wave.from, wave.to) * scale, blue, "TurretKilled", name);
        }
    }
    for (int inhibitor = 0; inhibitor < 4; ++inhibitor) {
        const bool blue = inhibitor != 2;
        const std::string name = std::string("Barracks_") + (blue ? "T2" : "T1") + "_" +
                                 kLanes[static_cast<std::size_t>(inhibitor % 3)] + "1";
        addStructure(random_.between(1750, 2350) * scale, blue, "InhibKilled", name);
    }
}

void SyntheticEventGenerator::addStructure(double time, bool blueCredited, const std::string& name,
                                           const std::string& structure) {
    const std::optional<int> player =
        random_.chance(0.7) ? pickAlive(blueCredited, time, true) : std::nullopt;
    RecordingEvent destroyed = event(name.c_str(), time, player);
    if (!player) {
        char minion[40];
        std::snprintf(minion, sizeof minion, "Minion_%sL1S%02dN%04d", blueCredited ? "T100" : "T200",
                      random_.below(40), random_.below(10000));
        destroyed.killerName = minion;
    }
    destroyed.team = blueCredited ? RecordingTeam::blue : RecordingTeam::red;
    destroyed.victimName = structure;
    destroyed.detail = detailOf(*destroyed.killerName, structure);
    events_.push_back(std::move(destroyed));
}

RecordingEvent SyntheticEventGenerator::event(const char* name, double time, std::optional<int> actor) const {
    RecordingEvent event;
    event.name = name;
    event.videoTime = time;
    event.isLocalPlayerKill = event.isLocalPlayerDeath = event.isLocalPlayerAssist = false;
    if (!actor) return event;
    const SyntheticPlayerProfile& player = profile(*actor);
    event.killerName = player.riotId();
    event.killerChampion = player.championKey;
    event.team = player.isBlue() ? RecordingTeam::blue : RecordingTeam::red;
    const std::string_view kind = name;
    if (kind == "ChampionKill" || kind == "Multikill" || kind == "Ace")
        event.isLocalPlayerKill = *actor == kLocalPlayerIndex;
    if (kind != "ChampionKill") event.detail = event.killerName;
    return event;
}

bool SyntheticEventGenerator::isAlive(int player, double time) const {
    const std::optional<double>& death = lastDeath_[static_cast<std::size_t>(player)];
    return !death || time >= *death + respawnSeconds(*death);
}

bool SyntheticEventGenerator::anyAlive(bool blue, double time) const {
    for (int player = blue ? 0 : 5; player < (blue ? 5 : 10); ++player) {
        if (isAlive(player, time)) return true;
    }
    return false;
}

std::optional<int> SyntheticEventGenerator::pickAlive(bool blue, double time, bool asKiller) {
    std::vector<std::pair<int, double>> candidates;
    double total = 0;
    for (int player = blue ? 0 : 5; player < (blue ? 5 : 10); ++player) {
        if (!isAlive(player, time)) continue;
        const double weight = asKiller ? killerWeight(player) : 1;
        candidates.emplace_back(player, weight);
        total += weight;
    }
    if (candidates.empty()) return std::nullopt;
    double draw = random_.between(0, total);
    for (const auto& [player, weight] : candidates) {
        if (draw < weight) return player;
        draw -= weight;
    }
    return candidates.back().first;
}

std::vector<int> SyntheticEventGenerator::pickAssisters(int killer, double time) {
    std::vector<int> assisters;
    const int first = profile(killer).isBlue() ? 0 : 5;
    for (int player = first; player < first + 5; ++player) {
        if (player != killer && isAlive(player, time) && random_.chance(0.45)) assisters.push_back(player);
    }
    return assisters;
}

}  // namespace kestrum::synthetic
