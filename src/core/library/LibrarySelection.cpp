#include "core/library/LibrarySelection.h"

#include <QHash>

#include <algorithm>

namespace kestrum {

namespace {

bool contains(const std::vector<MatchVideo>& matches, const MatchVideo& match) {
    return std::find(matches.begin(), matches.end(), match) != matches.end();
}

}  // namespace

LibrarySelection LibrarySelection::carriedOver(const LibrarySelection& old,
                                               const std::vector<MatchVideo>& newMatches,
                                               const std::vector<MatchVideo>& visible) {
    QHash<QString, const MatchVideo*> byPath;
    byPath.reserve(static_cast<qsizetype>(newMatches.size()));
    for (const auto& match : newMatches) byPath.insert(match.url, &match);

    LibrarySelection carried;
    for (const auto& member : old.selectedMatches) {
        const MatchVideo* mapped = byPath.value(member.url);
        if (mapped && !contains(carried.selectedMatches, *mapped)) carried.selectedMatches.push_back(*mapped);
    }
    std::optional<MatchVideo> mapped;
    if (old.selectedMatch) {
        if (const MatchVideo* entry = byPath.value(old.selectedMatch->url)) mapped = *entry;
    }

    if (mapped && contains(visible, *mapped)) {
        carried.selectedMatch = mapped;
    } else {
        // `visible` is newest first, so its first entry that is a member is the newest member.
        const auto member = std::find_if(visible.begin(), visible.end(), [&](const MatchVideo& match) {
            return contains(carried.selectedMatches, match);
        });
        if (member != visible.end()) {
            carried.selectedMatch = *member;
        } else if (!visible.empty()) {
            carried.selectedMatch = visible.front();
        }
    }
    if (carried.selectedMatches.empty() && carried.selectedMatch)
        carried.selectedMatches = {*carried.selectedMatch};
    return carried;
}

}  // namespace kestrum
