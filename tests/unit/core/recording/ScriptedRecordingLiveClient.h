#pragma once

#include "core/recording/RecordingLiveClient.h"

#include <QObject>

#include <optional>
#include <vector>

namespace kestrum::test {

// A live client scripted by the test. Classifications answer at once or stay suspended until released;
// the metadata and telemetry operations behave as the real ones do towards their caller: they run until
// their token is cancelled (waiting on the given clock) and then yield what the test set.
class ScriptedRecordingLiveClient final : public QObject, public RecordingLiveClient {
    Q_OBJECT

  public:
    struct MetadataCall {
        int attempts = 0;
        Clock::Duration delay{};
        CancellationToken token;
    };
    struct TelemetryCall {
        ReferenceDate startDate;
        CancellationToken token;
        std::shared_ptr<RecordingTelemetryJournal> journal;
    };

    explicit ScriptedRecordingLiveClient(Clock& clock) : clock_(clock) {}

    QCoro::Task<bool> classifyGameProcess() override;
    QCoro::Task<std::optional<RecordingMetadata>> fetchRecordingMetadata(int attempts, Clock::Duration delay,
                                                                         CancellationToken token) override;
    QCoro::Task<RecordingTelemetry> collectTelemetry(ReferenceDate startDate,
                                                     std::shared_ptr<RecordingTelemetryJournal> journal,
                                                     CancellationToken token) override;

    void setIsReplay(bool isReplay) { isReplay_ = isReplay; }
    void holdClassifications(bool hold) { holdClassifications_ = hold; }
    // Answers every suspended classification with `isReplay`.
    void releaseClassifications(bool isReplay);
    void setMetadata(std::optional<RecordingMetadata> metadata) { metadata_ = std::move(metadata); }
    void setTelemetry(RecordingTelemetry telemetry) { telemetry_ = std::move(telemetry); }

    int classificationCount() const { return classificationCount_; }
    int suspendedClassifications() const { return suspendedClassifications_; }
    const std::vector<MetadataCall>& metadataCalls() const { return metadataCalls_; }
    const std::vector<TelemetryCall>& telemetryCalls() const { return telemetryCalls_; }

  signals:
    void classificationsReleased();

  private:
    Clock& clock_;
    bool isReplay_ = false;
    bool releasedIsReplay_ = false;
    bool holdClassifications_ = false;
    int classificationCount_ = 0;
    int suspendedClassifications_ = 0;
    std::optional<RecordingMetadata> metadata_;
    RecordingTelemetry telemetry_;
    std::vector<MetadataCall> metadataCalls_;
    std::vector<TelemetryCall> telemetryCalls_;
};

}  // namespace kestrum::test
