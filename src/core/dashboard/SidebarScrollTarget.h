#pragma once

#include "core/library/RecordingLibraryCollection.h"

#include <QString>

#include <cstdint>

namespace kestrum {

// Where the sidebar's list should scroll: the head of the list, the top of a collection's section, or
// one card (by its movie path).
struct SidebarScrollTarget {
    enum class Kind : std::uint8_t { top, collection, match };

    Kind kind = Kind::top;
    RecordingLibraryCollection collection = RecordingLibraryCollection::fullMatches;  // for `collection`
    QString moviePath;                                                                // for `match`

    static SidebarScrollTarget top() { return {}; }
    static SidebarScrollTarget ofCollection(RecordingLibraryCollection collection) {
        return {Kind::collection, collection, {}};
    }
    static SidebarScrollTarget ofMatch(const QString& moviePath) {
        return {Kind::match, RecordingLibraryCollection::fullMatches, moviePath};
    }

    friend bool operator==(const SidebarScrollTarget&, const SidebarScrollTarget&) = default;
};

}  // namespace kestrum
