#pragma once

#include "core/library/detail/RecordingDetail.h"

#include <cstdint>
#include <optional>

namespace kestrum {

// One entry of the detail cache, in memory and as the JSON file of the disk cache (keys are the field
// names). It is valid while its `version` is the loader's cache version and its `fingerprint` equals
// the files' present stamps. These stamps belong to the detail loader and differ from the scanner's.
struct CachedDetail {
    // What one file-attribute query of a file gives; both absent when the query fails (a missing file).
    struct FileStamp {
        // The content modification time, seconds since 2001-01-01 00:00:00 UTC, with the file system's
        // resolution (nanoseconds on Linux).
        std::optional<double> modificationTime;
        // Bytes.
        std::optional<std::int64_t> size;

        friend bool operator==(const FileStamp&, const FileStamp&) = default;
    };

    struct Fingerprint {
        FileStamp video;
        FileStamp sidecar;

        friend bool operator==(const Fingerprint&, const Fingerprint&) = default;
    };

    std::int64_t version = 0;
    Fingerprint fingerprint;
    RecordingDetail detail;

    friend bool operator==(const CachedDetail&, const CachedDetail&) = default;
};

}  // namespace kestrum
