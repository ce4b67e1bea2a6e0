#include "core/dashboard/DashboardSidebarNavigation.h"

#include <algorithm>

namespace kestrum {

DashboardSidebarNavigation::DashboardSidebarNavigation(RecordingLibraryModel& library,
                                                       DashboardSelection& selection,
                                                       DashboardPlayback& playback, QObject* parent)
    : QObject(parent), library_(library), selection_(selection), playback_(playback) {}

void DashboardSidebarNavigation::move(Direction direction) {
    const std::vector<MatchVideo> displayed = library_.visibleMatches();
    if (displayed.empty()) return;
    const std::optional<MatchVideo>& selected = library_.selectedMatch();
    const auto position = std::find_if(displayed.begin(), displayed.end(), [&](const MatchVideo& match) {
        return selected && match.url == selected->url;
    });
    std::size_t target = 0;
    if (position != displayed.end()) {
        const auto index = static_cast<std::size_t>(position - displayed.begin());
        if (direction == Direction::up) {
            if (index == 0) return;
            target = index - 1;
        } else {
            if (index + 1 >= displayed.size()) return;
            target = index + 1;
        }
    }
    select(displayed[target]);
    setScrollTarget(SidebarScrollTarget::ofMatch(displayed[target].url));
}

void DashboardSidebarNavigation::click(const MatchVideo& match) {
    const std::optional<MatchVideo>& selected = library_.selectedMatch();
    if (selected && selected->url == match.url) return;
    selection_.requestAutoplay(match.url);
    playback_.setRequestedIsPlaying(true);
    select(match);
}

void DashboardSidebarNavigation::selectCollection(RecordingLibraryCollection collection) {
    selection_.clearAutoplayRequest();
    playback_.setRequestedIsPlaying(false);
    setScrollTarget(SidebarScrollTarget::top());
    library_.selectCollection(collection);
}

void DashboardSidebarNavigation::select(const MatchVideo& match) {
    library_.setSelectedMatches({match});
    library_.setSelectedMatch(match);
}

void DashboardSidebarNavigation::setScrollTarget(SidebarScrollTarget target) {
    sidebarScrollTarget_ = std::move(target);
    ++scrollSerial_;
    emit scrollTargetChanged();
}

}  // namespace kestrum
