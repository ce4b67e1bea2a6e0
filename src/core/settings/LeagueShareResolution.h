#pragma once

#include <QString>

#include <array>
#include <optional>

namespace kestrum {

// The picture size of League Share, stored as its raw string at "leagueShareResolution". The box sizes
// belong to the share coordinator.
enum class LeagueShareResolution { p720, p1080, p1440 };

// All cases in the order of the picker.
inline constexpr std::array<LeagueShareResolution, 3> kLeagueShareResolutions = {
    LeagueShareResolution::p720, LeagueShareResolution::p1080, LeagueShareResolution::p1440};

inline QString rawValue(LeagueShareResolution resolution) {
    switch (resolution) {
        case LeagueShareResolution::p720:
            return QStringLiteral("p720");
        case LeagueShareResolution::p1080:
            return QStringLiteral("p1080");
        case LeagueShareResolution::p1440:
            return QStringLiteral("p1440");
    }
    return {};
}

// The picker's label: "720p", "1080p", "1440p".
inline QString displayText(LeagueShareResolution resolution) {
    switch (resolution) {
        case LeagueShareResolution::p720:
            return QStringLiteral("720p");
        case LeagueShareResolution::p1080:
            return QStringLiteral("1080p");
        case LeagueShareResolution::p1440:
            return QStringLiteral("1440p");
    }
    return {};
}

// The case whose raw value is exactly `raw`; absent for any other text.
inline std::optional<LeagueShareResolution> parseLeagueShareResolution(const QString& raw) {
    for (const LeagueShareResolution resolution : kLeagueShareResolutions) {
        if (rawValue(resolution) == raw) return resolution;
    }
    return std::nullopt;
}

}  // namespace kestrum
