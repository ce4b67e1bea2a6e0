#pragma once

#include "core/library/MatchVideo.h"

#include <optional>
#include <vector>

namespace kestrum {

// The selection of the library: the recording on show and the multi-selection, a set of entries kept
// as a list without two entries of one movie.
struct LibrarySelection {
    std::optional<MatchVideo> selectedMatch;
    std::vector<MatchVideo> selectedMatches;

    friend bool operator==(const LibrarySelection&, const LibrarySelection&) = default;

    // The selection carried over to a new list. Members are mapped to the new list's entry of the same
    // movie, and drop out when it has none. The recording on show is the mapped one if it is visible;
    // else the newest visible member of the mapped set; else the first visible entry; else none. The
    // set is the mapped set, or the chosen entry alone when that is empty. `visible` is the new list
    // restricted to the collection and the filters; entries are compared by movie there and by all
    // fields here, since a refresh may have changed the record of the same file.
    static LibrarySelection carriedOver(const LibrarySelection& old,
                                        const std::vector<MatchVideo>& newMatches,
                                        const std::vector<MatchVideo>& visible);
};

}  // namespace kestrum
