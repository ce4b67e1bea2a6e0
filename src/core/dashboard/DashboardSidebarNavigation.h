#pragma once

#include "core/dashboard/DashboardPlayback.h"
#include "core/dashboard/DashboardSelection.h"
#include "core/dashboard/SidebarScrollTarget.h"
#include "core/library/RecordingLibraryModel.h"

#include <QObject>

#include <optional>

namespace kestrum {

// Moving through the sidebar: Up and Down from the list, a click on a card, the switch of collection,
// and where the list should scroll as a result.
//
// Up and Down move one card along the recordings as displayed and stop at either end; with no selection
// among them (none, or one the filters hide) either key selects the first card. A move does not start
// playing. A click selects with the intent to play, unless the card is already selected. The switch of
// collection drops any intent to play and scrolls to the top.
//
// Threads: the main thread. The library, selection and playback must outlive it.
class DashboardSidebarNavigation : public QObject {
    Q_OBJECT

  public:
    enum class Direction { up, down };

    DashboardSidebarNavigation(RecordingLibraryModel& library, DashboardSelection& selection,
                               DashboardPlayback& playback, QObject* parent = nullptr);

    void move(Direction direction);
    void click(const MatchVideo& match);
    void selectCollection(RecordingLibraryCollection collection);

    const std::optional<SidebarScrollTarget>& scrollTarget() const { return sidebarScrollTarget_; }
    // Every request counts, also the same target twice: the view scrolls again.
    quint64 scrollSerial() const { return scrollSerial_; }

  signals:
    void scrollTargetChanged();

  private:
    void select(const MatchVideo& match);
    void setScrollTarget(SidebarScrollTarget target);

    RecordingLibraryModel& library_;
    DashboardSelection& selection_;
    DashboardPlayback& playback_;
    std::optional<SidebarScrollTarget> sidebarScrollTarget_;  // main thread
    quint64 scrollSerial_ = 0;                                // main thread
};

}  // namespace kestrum
