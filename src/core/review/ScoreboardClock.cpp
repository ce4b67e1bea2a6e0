#include "core/review/ScoreboardClock.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

ScoreboardClock::ScoreboardClock(const std::vector<RecordingScoreboardSnapshot>& snapshots)
    : offsetSeconds_(medianOffsetSeconds(snapshots)) {
    videoTimes_.reserve(snapshots.size());
    for (const RecordingScoreboardSnapshot& snapshot : snapshots) videoTimes_.push_back(snapshot.videoTime);
    // NaN compares false both ways, so a list holding one is walked, never searched.
    isSorted_ =
        std::is_sorted(videoTimes_.begin(), videoTimes_.end()) &&
        std::none_of(videoTimes_.begin(), videoTimes_.end(), [](double time) { return std::isnan(time); });
}

double ScoreboardClock::medianOffsetSeconds(const std::vector<RecordingScoreboardSnapshot>& snapshots) {
    std::vector<double> offsets;
    offsets.reserve(snapshots.size());
    for (const RecordingScoreboardSnapshot& snapshot : snapshots) {
        const double offset = snapshot.gameTime - snapshot.videoTime;
        if (std::isfinite(offset)) offsets.push_back(offset);
    }
    if (offsets.empty()) return 0;
    std::sort(offsets.begin(), offsets.end());
    const std::size_t middle = offsets.size() / 2;
    if (offsets.size() % 2 == 1) return offsets[middle];
    return (offsets[middle - 1] + offsets[middle]) / 2;
}

double ScoreboardClock::gameClock(double currentTime) const {
    const double gameTime = currentTime + offsetSeconds_;
    return gameTime > 0 ? gameTime : 0;  // NaN included
}

std::optional<std::size_t> ScoreboardClock::currentSnapshotIndex(double currentTime) const {
    if (videoTimes_.empty()) return std::nullopt;
    if (std::isnan(currentTime)) return 0;
    if (isSorted_) {
        const auto after = std::upper_bound(videoTimes_.begin(), videoTimes_.end(), currentTime);
        if (after == videoTimes_.begin()) return 0;
        return static_cast<std::size_t>(after - videoTimes_.begin()) - 1;
    }
    for (std::size_t index = videoTimes_.size(); index-- > 0;) {
        if (videoTimes_[index] <= currentTime) return index;
    }
    return 0;
}

}  // namespace kestrum
