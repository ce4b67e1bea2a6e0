#pragma once

#include "core/library/MatchVideo.h"
#include "core/library/RecordingLibraryCollection.h"

#include <QSet>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// The three filters of the sidebar; an absent filter lets every entry through, and all present ones
// must pass. Texts are UTF-8.
struct RecordingLibraryFilters {
    // An upper-case mode word, compared with the entry's upper-cased `gameMode`.
    std::optional<std::string> gameMode;
    // A normal position ("MIDDLE"), compared with the normal position of the entry's `role`.
    std::optional<std::string> lane;
    // A lower-case champion key, compared with the entry's lower-cased `championAssetName`, or
    // `champion` when it has none.
    std::optional<std::string> champion;

    friend bool operator==(const RecordingLibraryFilters&, const RecordingLibraryFilters&) = default;

    // An entry that lacks the field a present filter compares fails that filter.
    bool passes(const MatchVideo& match) const;
};

// Whether an entry belongs to `collection`: highlights to none, every other entry to `fullMatches`,
// and those whose movie path is in `favoritePaths` to `favorites` too.
bool belongsTo(const MatchVideo& match, RecordingLibraryCollection collection,
               const QSet<QString>& favoritePaths);

// `matches` restricted to the collection, in their order.
std::vector<MatchVideo> collectionMatches(const std::vector<MatchVideo>& matches,
                                          RecordingLibraryCollection collection,
                                          const QSet<QString>& favoritePaths);

// `matches` restricted to the collection and the filters, in their order.
std::vector<MatchVideo> visibleMatches(const std::vector<MatchVideo>& matches,
                                       RecordingLibraryCollection collection,
                                       const QSet<QString>& favoritePaths,
                                       const RecordingLibraryFilters& filters);

}  // namespace kestrum
