#pragma once

#include <QString>

#include <array>
#include <cstdint>

namespace kestrum {

// What became of a sample that a capture stream delivered for one track of the movie.
enum class RecordingSampleFate {
    written,         // appended to the track's writer input
    afterStop,       // arrived once the stop had begun
    dataNotReady,    // the stream marked its data not ready
    withoutPicture,  // a video sample with no picture (the window showed nothing)
    whileUnfocused,  // a picture of the game while it was not in front: the privacy screen stands in
    notLater,        // a picture not later than the last one written
    beforeSession,   // arrived before the first picture started the movie
    notReady,        // the track's writer input was absent or not ready for more
    refused,         // the writer input refused the append
};

// One count per fate of the samples a stream delivered for one track, so that the stop can say in one
// line where a track's sound or pictures went. Plain counters owned by the capture queue.
class RecordingSampleTally {
  public:
    void count(RecordingSampleFate fate) { ++counts_[static_cast<std::size_t>(fate)]; }
    std::int64_t countOf(RecordingSampleFate fate) const { return counts_[static_cast<std::size_t>(fate)]; }
    // Every sample counted, whatever its fate.
    std::int64_t received() const;
    void reset() { counts_ = {}; }

    // "2890 of 2950 buffers written (50 before the session, 10 not ready)": the written and received
    // counts in `unitPlural`, then every fate that befell a sample, in the order of the enumeration.
    QString description(const QString& unitPlural) const;

  private:
    static constexpr std::size_t kFateCount = static_cast<std::size_t>(RecordingSampleFate::refused) + 1;
    std::array<std::int64_t, kFateCount> counts_{};
};

}  // namespace kestrum
