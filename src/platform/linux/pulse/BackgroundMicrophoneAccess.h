#pragma once

#include "platform/ports/MicrophoneAccess.h"

#include <QObject>
#include <QThreadPool>

#include <memory>

namespace kestrum {

// Microphone access whose reads never block the main thread: the wrapped access (which asks the sound
// server and may wait seconds on a server that hangs) is asked on a worker thread of its own, and its
// answer is published. `status` answers at once with the last answer (`notDetermined` before the first)
// and starts a new read unless one is under way; `statusChanged` tells of every answer that differs, so
// that whoever shows the state reads it again. At most one read runs at a time, so a hung server holds
// one thread and nothing piles up.
//
// Threads: `status`, `request` and the signal on the main thread. The wrapped access is called on the
// worker only, one call at a time, so it must be safe to call from a thread that is not the main one
// (PulseMicrophoneAccess is: every read opens its own connection). Destroying the object waits for a read
// under way, at most the wrapped access's own time-out.
class BackgroundMicrophoneAccess final : public QObject, public MicrophoneAccess {
    Q_OBJECT

  public:
    explicit BackgroundMicrophoneAccess(std::shared_ptr<const MicrophoneAccess> reader,
                                        QObject* parent = nullptr);
    ~BackgroundMicrophoneAccess() override;

    Status status() const override;
    // Reads afresh in the background (no prompt exists here) and answers whether access is authorised.
    QCoro::Task<bool> request() override;

    bool isReading() const { return isReading_; }

  signals:
    void statusChanged(kestrum::MicrophoneAccess::Status status);
    // Every answer, changed or not.
    void statusRead(kestrum::MicrophoneAccess::Status status);

  private:
    void startRead() const;

    const std::shared_ptr<const MicrophoneAccess> reader_;
    mutable QThreadPool worker_;
    // Main thread; mutable because `status` is a query that may start a read.
    mutable Status published_ = Status::notDetermined;
    mutable bool isReading_ = false;
};

}  // namespace kestrum
