#include "GatedStorageMeasure.h"

namespace kestrum::test {

RecordingStorageBudgetSource::Measure GatedStorageMeasure::measure() {
    return [state = state_](const RecordingStorageQuery& query) {
        std::unique_lock lock(state->mutex);
        const int callNumber = ++state->calls;
        state->queries.push_back(query);
        if (state->callsToHold.count(callNumber) != 0) {
            ++state->held;
            state->released.wait(lock, [&] { return state->callsToHold.count(callNumber) == 0; });
            --state->held;
        }
        const qint64 maximumBytes = query.isUnlimited ? 1'000'000 : query.maximumBytes;
        const qint64 usedBytes = state->limitReached ? maximumBytes : maximumBytes / 2;
        return RecordingStorageUsage{usedBytes, maximumBytes, query.warningFraction, query.isUnlimited};
    };
}

void GatedStorageMeasure::setLimitReached(bool reached) {
    const std::lock_guard lock(state_->mutex);
    state_->limitReached = reached;
}

void GatedStorageMeasure::holdCall(int callNumber) {
    const std::lock_guard lock(state_->mutex);
    state_->callsToHold.insert(callNumber);
}

void GatedStorageMeasure::releaseAll() {
    {
        const std::lock_guard lock(state_->mutex);
        state_->callsToHold.clear();
    }
    state_->released.notify_all();
}

int GatedStorageMeasure::callCount() const {
    const std::lock_guard lock(state_->mutex);
    return state_->calls;
}

int GatedStorageMeasure::heldCount() const {
    const std::lock_guard lock(state_->mutex);
    return state_->held;
}

std::vector<RecordingStorageQuery> GatedStorageMeasure::queries() const {
    const std::lock_guard lock(state_->mutex);
    return state_->queries;
}

}  // namespace kestrum::test
