#include "core/library/RecordingLibraryFilters.h"

#include "core/library/LibraryPositions.h"
#include "core/library/RecordingTitles.h"
#include "core/telemetry/vocabulary/TextCase.h"

namespace kestrum {

bool RecordingLibraryFilters::passes(const MatchVideo& match) const {
    if (gameMode && (!match.gameMode || upperCased(*match.gameMode) != *gameMode)) return false;
    if (lane) {
        if (!match.role) return false;
        const std::optional<std::string> position = normalizedPosition(*match.role);
        if (!position || *position != *lane) return false;
    }
    if (champion) {
        const std::optional<std::string>& key =
            match.championAssetName ? match.championAssetName : match.champion;
        if (!key || lowerCased(*key) != *champion) return false;
    }
    return true;
}

bool belongsTo(const MatchVideo& match, RecordingLibraryCollection collection,
               const QSet<QString>& favoritePaths) {
    if (match.mediaKind == kHighlightMediaKind) return false;
    return collection == RecordingLibraryCollection::fullMatches || favoritePaths.contains(match.url);
}

std::vector<MatchVideo> collectionMatches(const std::vector<MatchVideo>& matches,
                                          RecordingLibraryCollection collection,
                                          const QSet<QString>& favoritePaths) {
    std::vector<MatchVideo> kept;
    for (const auto& match : matches) {
        if (belongsTo(match, collection, favoritePaths)) kept.push_back(match);
    }
    return kept;
}

std::vector<MatchVideo> visibleMatches(const std::vector<MatchVideo>& matches,
                                       RecordingLibraryCollection collection,
                                       const QSet<QString>& favoritePaths,
                                       const RecordingLibraryFilters& filters) {
    std::vector<MatchVideo> kept;
    for (const auto& match : matches) {
        if (belongsTo(match, collection, favoritePaths) && filters.passes(match)) kept.push_back(match);
    }
    return kept;
}

}  // namespace kestrum
