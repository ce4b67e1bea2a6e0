#include "core/dashboard/DashboardSwipeRows.h"

#include <QMetaObject>

#include <utility>

namespace kestrum {

DashboardSwipeRows::DashboardSwipeRows(Clock& clock, OptionsFor optionsFor, ActionFor actionFor,
                                       QObject* parent)
    : QObject(parent), clock_(clock), optionsFor_(std::move(optionsFor)), actionFor_(std::move(actionFor)) {}

DashboardSwipeRows::~DashboardSwipeRows() = default;

void DashboardSwipeRows::press(const QString& moviePath, QPointF point) {
    swipeFor(moviePath).press(point);
}

void DashboardSwipeRows::move(const QString& moviePath, QPointF point) {
    if (const auto found = swipes_.find(moviePath); found != swipes_.end()) found->second->move(point);
}

void DashboardSwipeRows::release(const QString& moviePath, QPointF point) {
    if (const auto found = swipes_.find(moviePath); found != swipes_.end()) found->second->release(point);
}

void DashboardSwipeRows::cancel(const QString& moviePath) {
    if (const auto found = swipes_.find(moviePath); found != swipes_.end()) found->second->cancel();
}

void DashboardSwipeRows::performAction(const QString& moviePath, SwipeSide side) {
    swipeFor(moviePath).performAction(side);
    scheduleSweep();
}

const RecordingRowSwipe* DashboardSwipeRows::find(const QString& moviePath) const {
    const auto found = swipes_.find(moviePath);
    return found == swipes_.end() ? nullptr : found->second.get();
}

RecordingRowSwipe& DashboardSwipeRows::swipeFor(const QString& moviePath) {
    if (const auto found = swipes_.find(moviePath); found != swipes_.end()) return *found->second;
    RecordingRowSwipe::Callbacks callbacks{
        [this, moviePath] {
            emit swipeChanged(moviePath);
            scheduleSweep();
        },
        [this, moviePath] { emit interacted(moviePath); },
        [this, moviePath](SwipeSide side) { actionFor_(moviePath, side); },
    };
    auto swipe = std::make_unique<RecordingRowSwipe>(clock_, optionsFor_(moviePath), std::move(callbacks));
    RecordingRowSwipe& made = *swipe;
    swipes_.emplace(moviePath, std::move(swipe));
    return made;
}

void DashboardSwipeRows::scheduleSweep() {
    if (isSweepScheduled_) return;
    isSweepScheduled_ = true;
    QMetaObject::invokeMethod(this, &DashboardSwipeRows::sweep, Qt::QueuedConnection);
}

void DashboardSwipeRows::sweep() {
    isSweepScheduled_ = false;
    std::erase_if(swipes_, [](const auto& entry) { return entry.second->isAtRest(); });
}

}  // namespace kestrum
