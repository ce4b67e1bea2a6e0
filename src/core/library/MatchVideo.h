#pragma once

#include "base/common/ReferenceDate.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// One entry of the recordings library: all that the sidebar, the filters and the match cards need to
// know of a recording without opening its movie or its whole sidecar. A plain value, built by
// RecordingLibraryScanner and persisted in the library cache (MatchVideoCodec.h). Equality is by all
// fields; identity in lists is by `url`.
//
// Texts are UTF-8, as in the session document the entry is derived from.
struct MatchVideo {
    // The movie file as an absolute local path ("/home/a/Videos/Kestrum/2026-01-02_10-00-00.mov"), not
    // a URL: every reader here wants the path, and the sidecar is sessionDocumentPath(url). The JSON
    // form is the fully encoded file URL, QUrl::fromLocalFile(url).toString(QUrl::FullyEncoded)
    // ("file:///home/a/My%20Games/...").
    QString url;
    // The movie's creation date, else the time of the scan that built the entry.
    ReferenceDate date;
    std::optional<std::string> matchTitle;
    // The sidecar's mediaKind; "highlight" marks a clip, anything else a full match.
    std::optional<std::string> mediaKind;
    std::optional<std::int64_t> queueID;
    std::optional<std::string> champion;
    // The champion key for game art.
    std::optional<std::string> championAssetName;
    std::optional<std::string> gameVersion;
    // The mode word of the file name, as written there ("CLASSIC").
    std::optional<std::string> gameMode;
    // The position word.
    std::optional<std::string> role;
    // 11, 12, 21 or 30.
    std::optional<std::int64_t> mapID;
    std::optional<std::int64_t> finalKills;
    std::optional<std::int64_t> finalDeaths;
    std::optional<std::int64_t> finalAssists;
    std::optional<std::int64_t> finalCreepScore;
    // Percent, 0 to 100.
    std::optional<std::int64_t> killParticipation;
    // Seconds.
    std::optional<std::int64_t> gameDuration;
    // Item ids in slots 0 to 5, in slot order.
    std::optional<std::vector<std::int64_t>> finalItemIDs;
    // Finished items in the order in which they first appeared, as their raw ids.
    std::optional<std::vector<std::int64_t>> legendaryItemIDsInPurchaseOrder;
    // Win or loss of the local player.
    std::optional<bool> didWin;
    // Present when the movie cannot be played (a recording cut off before its index was written that
    // could not be rebuilt): why, in words a view shows as they stand. The entry stays in the library.
    std::optional<std::string> damageReason;

    bool isDamaged() const { return damageReason.has_value(); }

    friend bool operator==(const MatchVideo&, const MatchVideo&) = default;
};

// The title that a match card shows: the queue's title in front of the stored title's details, or the
// stored title alone, or "Recorded Match".
std::string displayTitle(const MatchVideo& video);

}  // namespace kestrum
