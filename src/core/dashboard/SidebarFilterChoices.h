#pragma once

#include "core/library/MatchVideo.h"
#include "core/library/RecordingLibraryFilters.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// One choice of the sidebar's filter pop-up.
struct SidebarFilterChoice {
    enum class Kind : std::uint8_t { gameMode, lane, champion };

    Kind kind = Kind::gameMode;
    QString group;  // "Mode", "Lane", "Champion"
    QString label;
    // The filter's value when chosen; absent for the group's "All ..." choice, which clears the filter.
    std::optional<std::string> value;
    bool isSelected = false;

    friend bool operator==(const SidebarFilterChoice&, const SidebarFilterChoice&) = default;
};

// The choices for the recordings of the chosen collection: per group an "All Modes", "All Lanes" or
// "All Champions" choice, then the values those recordings have: modes upper-cased and named by their
// title, lanes in the order of the map (Top, Jungle, Mid, Bot, Support), champions by name, keyed by the
// lower-cased asset name. A mode or champion filtered on but found in none of them is still offered, so
// it can be seen and cleared.
std::vector<SidebarFilterChoice> sidebarFilterChoices(const std::vector<MatchVideo>& collectionMatches,
                                                      const RecordingLibraryFilters& filters);

}  // namespace kestrum
