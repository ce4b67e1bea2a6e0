#include "ScriptedRecordingLiveClient.h"

#include <QCoroSignal>

#include <chrono>

namespace kestrum::test {
namespace {

// Longer than any test advances its clock: only a cancellation ends it.
constexpr Clock::Duration kUntilCancelled = std::chrono::hours(24 * 365);

}  // namespace

QCoro::Task<bool> ScriptedRecordingLiveClient::classifyGameProcess() {
    ++classificationCount_;
    if (!holdClassifications_) co_return isReplay_;
    ++suspendedClassifications_;
    co_await qCoro(this, &ScriptedRecordingLiveClient::classificationsReleased);
    --suspendedClassifications_;
    co_return releasedIsReplay_;
}

void ScriptedRecordingLiveClient::releaseClassifications(bool isReplay) {
    holdClassifications_ = false;
    releasedIsReplay_ = isReplay;
    emit classificationsReleased();
}

QCoro::Task<std::optional<RecordingMetadata>> ScriptedRecordingLiveClient::fetchRecordingMetadata(
    int attempts, Clock::Duration delay, CancellationToken token) {
    metadataCalls_.push_back({attempts, delay, token});
    co_await clock_.sleep(kUntilCancelled, token);
    co_return metadata_;
}

QCoro::Task<RecordingTelemetry> ScriptedRecordingLiveClient::collectTelemetry(
    ReferenceDate startDate, std::shared_ptr<RecordingTelemetryJournal> journal, CancellationToken token) {
    telemetryCalls_.push_back({startDate, token, std::move(journal)});
    co_await clock_.sleep(kUntilCancelled, token);
    co_return telemetry_;
}

}  // namespace kestrum::test
