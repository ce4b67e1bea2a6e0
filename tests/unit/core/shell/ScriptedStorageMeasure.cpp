#include "ScriptedStorageMeasure.h"

namespace kestrum::test {

RecordingStorageBudgetSource::Measure ScriptedStorageMeasure::measure() {
    return [state = state_](const RecordingStorageQuery& query) {
        std::unique_lock lock(state->mutex);
        ++state->calls;
        state->released.wait(lock, [&] { return state->held.count(query.folderPath) == 0; });
        const auto scripted = state->usages.find(query.folderPath);
        return scripted == state->usages.end() ? state->defaultUsage : scripted->second;
    };
}

void ScriptedStorageMeasure::setDefaultUsage(const RecordingStorageUsage& usage) {
    const std::lock_guard lock(state_->mutex);
    state_->defaultUsage = usage;
}

void ScriptedStorageMeasure::setUsage(const QString& folderPath, const RecordingStorageUsage& usage) {
    const std::lock_guard lock(state_->mutex);
    state_->usages[folderPath] = usage;
}

void ScriptedStorageMeasure::holdFolder(const QString& folderPath) {
    const std::lock_guard lock(state_->mutex);
    state_->held.insert(folderPath);
}

void ScriptedStorageMeasure::releaseFolder(const QString& folderPath) {
    {
        const std::lock_guard lock(state_->mutex);
        state_->held.erase(folderPath);
    }
    state_->released.notify_all();
}

void ScriptedStorageMeasure::releaseAll() {
    {
        const std::lock_guard lock(state_->mutex);
        state_->held.clear();
    }
    state_->released.notify_all();
}

int ScriptedStorageMeasure::callCount() const {
    const std::lock_guard lock(state_->mutex);
    return state_->calls;
}

}  // namespace kestrum::test
