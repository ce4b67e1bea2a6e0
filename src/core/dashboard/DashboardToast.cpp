#include "core/dashboard/DashboardToast.h"

#include <utility>

namespace kestrum {

DashboardToast::DashboardToast(Clock& clock, std::function<void()> changed)
    : clock_(clock), changed_(std::move(changed)) {}

DashboardToast::~DashboardToast() {
    cancelDismissal();
}

void DashboardToast::show(const QString& title, const QString& symbol) {
    cancelDismissal();
    feedback_ = PlaybackFeedback{title, symbol};
    changed_();
    dismissal_ = Job<void>::start([this, clock = &clock_](CancellationToken token) -> QCoro::Task<void> {
        QCoro::Task<bool> sleep = clock->sleep(kDuration, token);
        const bool waited = co_await sleep;
        // A cancelled sleep may wake after the toast has gone: touch nothing then.
        if (!waited || token.isCancelled()) co_return;
        feedback_.reset();
        changed_();
    });
}

void DashboardToast::cancelDismissal() {
    if (dismissal_) dismissal_->cancel();
    dismissal_.reset();
}

}  // namespace kestrum
