#pragma once

#include "base/common/ReferenceDate.h"
#include "core/library/MatchVideo.h"

#include <QFileInfo>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrum {

// What the library scanner knows of the movies it has built entries for: for each, the stamps its
// movie and sidecar had when the entry was built, and the entry. The scanner keeps it in memory, and on
// disk between launches (its JSON form is in MatchVideoCodec.h), so that a launch decodes only the
// sidecars that changed.
struct LibraryScanCache {
    // What one file-attribute query of a file gives; both absent when the query fails, as for a missing
    // sidecar. The modification date has the file system's resolution as Qt reports it (milliseconds).
    struct FileStamp {
        std::optional<ReferenceDate> modificationDate;
        std::optional<std::int64_t> fileSize;

        static FileStamp of(const QString& path);
        // From an info whose attributes may already be cached (as the walk's are, at most once).
        static FileStamp of(const QFileInfo& info);
        friend bool operator==(const FileStamp&, const FileStamp&) = default;
    };

    struct Fingerprint {
        FileStamp video;
        FileStamp sidecar;

        friend bool operator==(const Fingerprint&, const Fingerprint&) = default;
    };

    // One movie: the entry is valid exactly while both stamps are unchanged. `match.url` names the movie.
    struct Recording {
        Fingerprint fingerprint;
        MatchVideo match;

        friend bool operator==(const Recording&, const Recording&) = default;
    };

    // The layout of the records and of the entries derived in them. A file of another version is not
    // used: a program that derives entries differently must not show those of an older one.
    // 2: entries say whether their movie is damaged.
    static constexpr std::int64_t currentVersion = 2;

    std::int64_t version = currentVersion;
    // Each movie at most once.
    std::vector<Recording> recordings;

    friend bool operator==(const LibraryScanCache&, const LibraryScanCache&) = default;
};

}  // namespace kestrum
