#pragma once

#include "base/common/Result.h"

#include <pulse/context.h>
#include <pulse/operation.h>
#include <pulse/stream.h>
#include <pulse/thread-mainloop.h>

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// One connection to the sound server (PulseAudio, or PipeWire's pulse server) with the thread that
// services it: a pa_threaded_mainloop named "kestrum-pulse" and one pa_context.
//
// The server is the one PULSE_SERVER or the client configuration names; none is ever spawned, and a
// server that does not answer within the connect timeout is an Error, so that no caller hangs on a dead
// or stalled socket.
//
// Threads: libpulse runs every callback on the loop thread with the loop's lock held. Any other thread
// takes the lock (PulseMainLoopLock) before it touches the context or a stream of it; the members below
// marked "lock held" require that. The object is destroyed on a thread other than the loop's (the
// destructor joins the loop thread), normally the main thread of its owner.
class PulseMainLoop {
  public:
    // The bound on connecting, and on each synchronous request made later on a connected server. A
    // local server answers in milliseconds; this only limits the cost of a stalled one.
    static constexpr std::chrono::milliseconds kConnectTimeout{3000};
    static constexpr std::chrono::milliseconds kRequestTimeout{3000};

    // A capture source the server offers. `isMonitor` marks the monitor of a sink (what plays), as
    // opposed to an input such as a microphone.
    struct SourceDescription {
        QString name;
        bool isMonitor = false;
    };

    // Starts the loop thread and connects. Error when the server cannot be reached, refuses the client,
    // or has not answered within `timeout`.
    static Result<std::shared_ptr<PulseMainLoop>> connect(
        const QString& clientName, std::chrono::milliseconds timeout = kConnectTimeout);

    // An Error of the sound server's domain, "KestrumSoundServerErrorDomain".
    static Error makeError(const QString& description);

    ~PulseMainLoop();
    PulseMainLoop(const PulseMainLoop&) = delete;
    PulseMainLoop& operator=(const PulseMainLoop&) = delete;

    void lock();
    void unlock();

    // Lock held. The context, for making streams on it.
    pa_context* context() const { return context_; }
    // Lock held. The loop's interface, for its time events.
    pa_mainloop_api* api() const { return pa_threaded_mainloop_get_api(mainloop_); }
    // Lock held. False once the server went away or dropped the connection.
    bool isContextReady() const;
    // Lock held. The server's words for the context's last failure.
    QString lastErrorText() const;

    // Lock held. Sleeps on the loop's condition, releasing the lock meanwhile, until `done` holds or
    // `timeout` has passed; true when `done` held. The loop thread wakes it with `signal`.
    bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout);
    // Lock held (callbacks hold it). Wakes every `waitUntil` so that it tests its predicate again.
    void signal();
    // Lock held. Waits for the request `operation` (which this call takes over, null when the server
    // refused to send it) until `answered` holds, the server ended it, or `timeout` passed; an unanswered
    // one is cancelled, so that its callback never runs on state that goes out of scope. True when
    // `answered` held. The request's callback calls `signal`.
    bool awaitAnswer(pa_operation* operation, const std::function<bool()>& answered,
                     std::chrono::milliseconds timeout = kRequestTimeout);

    // Lock held. A new stream of interleaved `sampleSpec` in the default channel order, not connected;
    // an Error when the server refused it.
    Result<pa_stream*> newStream(const QByteArray& streamName, const pa_sample_spec& sampleSpec);

    // Any thread but the loop's, lock not held. The server's capture sources, or absent when the server
    // did not answer within `timeout`.
    std::optional<std::vector<SourceDescription>> sources(
        std::chrono::milliseconds timeout = kRequestTimeout);

  private:
    PulseMainLoop() = default;
    // Lock not held: creates the context and waits for it to settle.
    Status establish(const QString& clientName, std::chrono::milliseconds timeout);
    static void onContextState(pa_context* context, void* userdata);

    pa_threaded_mainloop* mainloop_ = nullptr;
    pa_context* context_ = nullptr;  // lock held for every use after construction
};

}  // namespace kestrum
