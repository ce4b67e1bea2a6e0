#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <set>

namespace kestrum {

// A playback stream of the sound server (a "sink input"), as far as choosing what to record needs it.
struct PulseSinkInputDescription {
    std::uint32_t index = 0;
    std::uint32_t sinkIndex = 0;
    // The monitor source of the sink it plays to: where a recording of it is connected.
    std::uint32_t monitorSourceIndex = 0;
    // The process that plays it, from the client's "application.process.id"; absent when the client did
    // not say.
    std::optional<std::int64_t> processID;
    QString applicationName;

    friend bool operator==(const PulseSinkInputDescription&, const PulseSinkInputDescription&) = default;
};

// Which playback streams a recording of the system's sound takes in: every one, every one but those of
// some processes (this application's own sound), or only those of some processes (one game's sound).
// A stream whose process is unknown counts as belonging to no listed process.
class PulseSinkInputFilter {
  public:
    static PulseSinkInputFilter everyInput() { return PulseSinkInputFilter(Rule::allBut, {}); }
    static PulseSinkInputFilter everyInputExcept(std::set<std::int64_t> processIDs) {
        return PulseSinkInputFilter(Rule::allBut, std::move(processIDs));
    }
    static PulseSinkInputFilter inputsOf(std::set<std::int64_t> processIDs) {
        return PulseSinkInputFilter(Rule::only, std::move(processIDs));
    }

    bool accepts(const PulseSinkInputDescription& input) const {
        const bool listed = input.processID && processIDs_.count(*input.processID) > 0;
        return rule_ == Rule::only ? listed : !listed;
    }

  private:
    enum class Rule { allBut, only };
    PulseSinkInputFilter(Rule rule, std::set<std::int64_t> processIDs)
        : rule_(rule), processIDs_(std::move(processIDs)) {}

    Rule rule_;
    std::set<std::int64_t> processIDs_;
};

}  // namespace kestrum
