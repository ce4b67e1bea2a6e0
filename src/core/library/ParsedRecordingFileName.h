#pragma once

#include <QString>

#include <optional>
#include <string>

namespace kestrum {

// What a movie's file name tells of its game. The save path names a movie "<date>_<time>_<mode>_
// <champion>_<position>.mov", leaving out the parts it does not know; this reads such a name back.
// Each piece is UTF-8 as written in the name.
struct ParsedRecordingFileName {
    std::optional<std::string> gameMode;
    std::optional<std::string> champion;
    // Only one of "TOP", "JUNGLE", "MIDDLE", "BOTTOM", "UTILITY" (any case), as written.
    std::optional<std::string> lane;

    friend bool operator==(const ParsedRecordingFileName&, const ParsedRecordingFileName&) = default;

    // Reads the last path component of `moviePath` without its extension, cut at "_" with empty pieces
    // dropped. Fewer than three pieces give nothing. The first two pieces (date and time) are skipped; a
    // lane word at the end of the rest is the lane; a rest of exactly a champion and a lane has no mode;
    // otherwise the rest's first piece is the mode and its second the champion, a rest of one piece
    // giving that piece for both (and for the lane, if it is a lane word).
    static ParsedRecordingFileName parse(const QString& moviePath);
};

}  // namespace kestrum
