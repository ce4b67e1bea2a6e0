#include "core/dashboard/SidebarFilterChoices.h"

#include "core/library/LibraryPositions.h"
#include "core/telemetry/vocabulary/GameModeTitle.h"
#include "core/telemetry/vocabulary/TextCase.h"

#include <array>
#include <map>

namespace kestrum {

namespace {

using Kind = SidebarFilterChoice::Kind;

constexpr std::array<const char*, 5> kLaneOrder{"TOP", "JUNGLE", "MIDDLE", "BOTTOM", "UTILITY"};

// One group: its "All" choice, then its values by label.
void appendGroup(std::vector<SidebarFilterChoice>& choices, Kind kind, const QString& group,
                 const QString& allLabel, const std::map<QString, std::string>& valuesByLabel,
                 const std::optional<std::string>& chosen) {
    choices.push_back({kind, group, allLabel, std::nullopt, !chosen});
    for (const auto& [label, value] : valuesByLabel)
        choices.push_back({kind, group, label, value, chosen == value});
}

}  // namespace

std::vector<SidebarFilterChoice> sidebarFilterChoices(const std::vector<MatchVideo>& collectionMatches,
                                                      const RecordingLibraryFilters& filters) {
    std::map<QString, std::string> modes;
    std::map<std::string, bool> lanes;
    std::map<QString, std::string> champions;
    for (const MatchVideo& match : collectionMatches) {
        if (match.gameMode) {
            const std::string mode = upperCased(*match.gameMode);
            modes.emplace(QString::fromStdString(gameModeTitle(mode)), mode);
        }
        if (match.role) {
            if (const std::optional<std::string> lane = normalizedPosition(*match.role)) lanes[*lane] = true;
        }
        const std::optional<std::string>& key =
            match.championAssetName ? match.championAssetName : match.champion;
        if (key) {
            const std::string name = match.champion.value_or(*key);
            champions.emplace(QString::fromStdString(name), lowerCased(*key));
        }
    }
    if (filters.gameMode)
        modes.emplace(QString::fromStdString(gameModeTitle(*filters.gameMode)), *filters.gameMode);
    if (filters.lane) lanes[*filters.lane] = true;
    if (filters.champion) champions.emplace(QString::fromStdString(*filters.champion), *filters.champion);

    std::vector<SidebarFilterChoice> choices;
    appendGroup(choices, Kind::gameMode, QStringLiteral("Mode"), QStringLiteral("All Modes"), modes,
                filters.gameMode);
    choices.push_back(
        {Kind::lane, QStringLiteral("Lane"), QStringLiteral("All Lanes"), std::nullopt, !filters.lane});
    for (const char* lane : kLaneOrder) {
        if (!lanes.count(lane)) continue;
        const QString label = QString::fromStdString(laneDisplayName(lane).value_or(lane));
        choices.push_back(
            {Kind::lane, QStringLiteral("Lane"), label, std::string(lane), filters.lane == lane});
    }
    appendGroup(choices, Kind::champion, QStringLiteral("Champion"), QStringLiteral("All Champions"),
                champions, filters.champion);
    return choices;
}

}  // namespace kestrum
