#pragma once

#include "platform/ports/MicrophoneAccess.h"

#include <QObject>

#include <optional>

namespace kestrum {

// Microphone access scripted by a test. A `request` stays open until the test calls `answer`, so that a
// test can look at its caller in the meantime. Main thread only.
class FakeMicrophoneAccess final : public QObject, public MicrophoneAccess {
    Q_OBJECT

  public:
    explicit FakeMicrophoneAccess(Status status = Status::notDetermined) : status_(status) {}

    Status status() const override { return status_; }
    QCoro::Task<bool> request() override;

    void setStatus(Status status) { status_ = status; }
    // Completes the open request (if any) with `granted`, and sets the status to authorized or denied.
    void answer(bool granted);
    bool hasOpenRequest() const { return requestOpen_; }
    int requestCount() const { return requestCount_; }

  signals:
    void answered(bool granted);

  private:
    Status status_;
    bool requestOpen_ = false;
    int requestCount_ = 0;
};

}  // namespace kestrum
