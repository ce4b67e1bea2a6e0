#pragma once

#include <QString>

#include <optional>

namespace kestrum {

// Whether a movie file has the shape of a finished QuickTime movie, told from its top-level atoms alone
// (a few small reads, whatever the movie's size): the atoms follow each other to the end of the file,
// and one of them is the movie's index ("moov"), which a writer writes last. A movie cut off by a crash
// before its index was written cannot be played.
//
// Gives absent for a finished movie, else the reason it cannot be played, in words for the person who
// looks at the library:
//   "The movie file is empty."
//   "The file is not a QuickTime movie."
//   "The movie was cut off before it was finished: it has no index."
//   "The movie was cut short: its last part is missing."
//   "The movie file could not be read."
// Any thread; reads the file only.
std::optional<QString> movieFileDamage(const QString& path);

}  // namespace kestrum
