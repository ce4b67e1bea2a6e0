#pragma once

#include "base/async/Clock.h"
#include "core/dashboard/RecordingRowSwipe.h"

#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <memory>

namespace kestrum {

// The swipes of the match cards, keyed by movie path. A card that was never touched has no swipe and
// draws at rest, so a list of a thousand cards keeps only the one or two that move. A swipe is made at
// the press and forgotten once it rests again, at the next turn of the event loop (never inside one of
// its own callbacks).
//
// Threads: the main thread; the clock must outlive the rows.
class DashboardSwipeRows : public QObject {
    Q_OBJECT

  public:
    // The card's options (whether each side acts) and what a committed swipe does.
    using OptionsFor = std::function<RecordingRowSwipe::Options(const QString& moviePath)>;
    using ActionFor = std::function<void(const QString& moviePath, SwipeSide side)>;

    DashboardSwipeRows(Clock& clock, OptionsFor optionsFor, ActionFor actionFor, QObject* parent = nullptr);
    ~DashboardSwipeRows() override;

    void press(const QString& moviePath, QPointF point);
    void move(const QString& moviePath, QPointF point);
    void release(const QString& moviePath, QPointF point);
    void cancel(const QString& moviePath);
    void performAction(const QString& moviePath, SwipeSide side);

    // The swipe of a card; null while it rests.
    const RecordingRowSwipe* find(const QString& moviePath) const;
    std::size_t activeCount() const { return swipes_.size(); }

  signals:
    // What the card at `moviePath` draws changed.
    void swipeChanged(const QString& moviePath);
    // The card was touched.
    void interacted(const QString& moviePath);

  private:
    RecordingRowSwipe& swipeFor(const QString& moviePath);
    void scheduleSweep();
    void sweep();

    Clock& clock_;
    OptionsFor optionsFor_;
    ActionFor actionFor_;
    std::map<QString, std::unique_ptr<RecordingRowSwipe>> swipes_;  // main thread
    bool isSweepScheduled_ = false;                                 // main thread
};

}  // namespace kestrum
