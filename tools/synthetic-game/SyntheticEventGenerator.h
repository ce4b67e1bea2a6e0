#pragma once

#include "SyntheticRandom.h"
#include "SyntheticRoster.h"
#include "core/telemetry/RecordingEvent.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace kestrum::synthetic {

// The seconds a champion who died at game time `gameTime` waits before coming back.
double respawnSeconds(double gameTime);

// Makes the timeline of a made-up game as the recorder would have stored it, on the game's own clock
// (`videoTime` holds game seconds until the caller shifts it): skirmishes of one to five kills with their
// multikills and aces, executions by turrets, dragons of every kind and the Elders after a soul, void
// grubs, the herald, barons, turrets, inhibitors, the nexus, and the game's start and end. Names, teams,
// details and the local player's flags follow the recorder's conversion of the live feed. Ids and the
// first kill's "FirstBlood" name are the caller's, once the events are in order.
class SyntheticEventGenerator {
  public:
    SyntheticEventGenerator(SyntheticRandom& random, double gameSeconds);

    std::vector<RecordingEvent> generate();

  private:
    void addSkirmishes();
    // One fight from `start`; returns when it ended.
    double addSkirmish(double start);
    void addKill(double time, int killer, int victim);
    void addExecution(double time, int victim);
    void addDragons();
    void addJungleObjectives();
    void addStructures();
    void addStructure(double time, bool blueCredited, const std::string& name, const std::string& structure);

    RecordingEvent event(const char* name, double time, std::optional<int> actor) const;
    bool isAlive(int player, double time) const;
    bool anyAlive(bool blue, double time) const;
    // A living player of a side: killers by how often their role kills, victims evenly.
    std::optional<int> pickAlive(bool blue, double time, bool asKiller);
    std::vector<int> pickAssisters(int killer, double time);
    int teamJungler(bool blue) const { return blue ? 1 : 6; }

    SyntheticRandom& random_;
    const double gameSeconds_;
    std::vector<RecordingEvent> events_;
    std::array<std::optional<double>, kPlayerCount> lastDeath_;
    std::array<double, kPlayerCount> lastKill_{};
    std::array<int, kPlayerCount> streak_{};
};

}  // namespace kestrum::synthetic
