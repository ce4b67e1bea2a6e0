#pragma once

#include "core/library/MatchVideo.h"

#include <string>
#include <vector>

namespace kestrum {

// The persisted library list, stored as JSON data under "recordingLibraryCache": the folder it belongs
// to and its entries, newest first. It holds no fingerprints, so it can only show a list at once, never
// spare a scan.
struct LibraryCache {
    // The recordings folder's absolute path, UTF-8.
    std::string folderPath;
    std::vector<MatchVideo> matches;

    friend bool operator==(const LibraryCache&, const LibraryCache&) = default;
};

}  // namespace kestrum
