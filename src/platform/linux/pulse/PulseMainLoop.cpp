#include "platform/linux/pulse/PulseMainLoop.h"

#include "platform/linux/pulse/PulseMainLoopLock.h"

#include <pulse/channelmap.h>
#include <pulse/error.h>
#include <pulse/introspect.h>
#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/rtclock.h>

namespace kestrum {

namespace {

Error unreachable(const QString& reason) {
    return PulseMainLoop::makeError(QStringLiteral("The sound server could not be reached: ") + reason);
}

// The deadline of one waitUntil: set by a time event of the loop, which then wakes the waiter.
struct Deadline {
    pa_threaded_mainloop* mainloop;
    bool expired = false;
};

void onDeadline(pa_mainloop_api*, pa_time_event*, const struct timeval*, void* userdata) {
    auto* deadline = static_cast<Deadline*>(userdata);
    deadline->expired = true;
    pa_threaded_mainloop_signal(deadline->mainloop, 0);
}

// Collects the answer of a source listing. It lives on the requester's stack; a request that has not
// completed is cancelled before it goes out of scope, so the callback never sees it dangling.
struct SourceListing {
    PulseMainLoop* loop;
    std::vector<PulseMainLoop::SourceDescription> sources;
    bool complete = false;
    bool failed = false;
};

void onSourceInfo(pa_context*, const pa_source_info* info, int endOfList, void* userdata) {
    auto* listing = static_cast<SourceListing*>(userdata);
    if (endOfList != 0) {
        listing->failed = endOfList < 0;
        listing->complete = true;
        listing->loop->signal();
        return;
    }
    if (info == nullptr) return;
    listing->sources.push_back({QString::fromUtf8(info->name), info->monitor_of_sink != PA_INVALID_INDEX});
}

}  // namespace

Result<std::shared_ptr<PulseMainLoop>> PulseMainLoop::connect(const QString& clientName,
                                                              std::chrono::milliseconds timeout) {
    std::shared_ptr<PulseMainLoop> loop(new PulseMainLoop());
    const Status established = loop->establish(clientName, timeout);
    if (!established.ok()) return established.error();
    return loop;
}

Error PulseMainLoop::makeError(const QString& description) {
    return Error{QStringLiteral("KestrumSoundServerErrorDomain"), 1, description, nullptr};
}

Status PulseMainLoop::establish(const QString& clientName, std::chrono::milliseconds timeout) {
    mainloop_ = pa_threaded_mainloop_new();
    if (mainloop_ == nullptr) return unreachable(QStringLiteral("no event loop could be made"));
    pa_threaded_mainloop_set_name(mainloop_, "kestrum-pulse");
    const QByteArray name = clientName.toUtf8();
    pa_proplist* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, name.constData());
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ID, "com.tidemoss.Kestrum");
    context_ =
        pa_context_new_with_proplist(pa_threaded_mainloop_get_api(mainloop_), name.constData(), properties);
    pa_proplist_free(properties);
    if (context_ == nullptr) return unreachable(QStringLiteral("no client context could be made"));
    pa_context_set_state_callback(context_, &PulseMainLoop::onContextState, this);
    if (pa_threaded_mainloop_start(mainloop_) < 0)
        return unreachable(QStringLiteral("the event loop did not start"));

    const PulseMainLoopLock lock(*this);
    // No autospawn: starting a sound server is the desktop's business, and a spawned one would hold no
    // device the user listens on.
    if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        return unreachable(lastErrorText());
    }
    const bool settled = waitUntil(
        [this] {
            const pa_context_state_t state = pa_context_get_state(context_);
            return state == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(state);
        },
        timeout);
    if (!settled) {
        return makeError(QStringLiteral("The sound server did not answer within %1 ms.")
                             .arg(static_cast<qint64>(timeout.count())));
    }
    if (!isContextReady()) return unreachable(lastErrorText());
    return Status::success();
}

PulseMainLoop::~PulseMainLoop() {
    if (mainloop_ == nullptr) return;
    if (context_ != nullptr) {
        const PulseMainLoopLock lock(*this);
        pa_context_set_state_callback(context_, nullptr, nullptr);
        pa_context_disconnect(context_);
        pa_context_unref(context_);
        context_ = nullptr;
    }
    // Joins the loop thread; it must not hold the lock, which the scope above released.
    pa_threaded_mainloop_stop(mainloop_);
    pa_threaded_mainloop_free(mainloop_);
}

void PulseMainLoop::lock() {
    pa_threaded_mainloop_lock(mainloop_);
}

void PulseMainLoop::unlock() {
    pa_threaded_mainloop_unlock(mainloop_);
}

bool PulseMainLoop::isContextReady() const {
    return context_ != nullptr && pa_context_get_state(context_) == PA_CONTEXT_READY;
}

QString PulseMainLoop::lastErrorText() const {
    if (context_ == nullptr) return QStringLiteral("no connection");
    return QString::fromUtf8(pa_strerror(pa_context_errno(context_)));
}

bool PulseMainLoop::waitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
    if (done()) return true;
    Deadline deadline{mainloop_, false};
    const auto timeoutUs = std::chrono::duration_cast<std::chrono::microseconds>(timeout).count();
    pa_time_event* timer = pa_context_rttime_new(
        context_, pa_rtclock_now() + static_cast<pa_usec_t>(timeoutUs), &onDeadline, &deadline);
    // Without a timer there is nothing to bound the wait: answer at once instead of risking a hang.
    if (timer == nullptr) return false;
    while (!done() && !deadline.expired) pa_threaded_mainloop_wait(mainloop_);
    pa_threaded_mainloop_get_api(mainloop_)->time_free(timer);
    return done();
}

void PulseMainLoop::signal() {
    pa_threaded_mainloop_signal(mainloop_, 0);
}

bool PulseMainLoop::awaitAnswer(pa_operation* operation, const std::function<bool()>& answered,
                                std::chrono::milliseconds timeout) {
    if (operation == nullptr) return false;
    waitUntil([&] { return answered() || pa_operation_get_state(operation) != PA_OPERATION_RUNNING; },
              timeout);
    if (pa_operation_get_state(operation) == PA_OPERATION_RUNNING) pa_operation_cancel(operation);
    pa_operation_unref(operation);
    return answered();
}

Result<pa_stream*> PulseMainLoop::newStream(const QByteArray& streamName, const pa_sample_spec& sampleSpec) {
    pa_channel_map channelMap;
    pa_channel_map_init_auto(&channelMap, sampleSpec.channels, PA_CHANNEL_MAP_DEFAULT);
    pa_stream* stream = pa_stream_new(context_, streamName.constData(), &sampleSpec, &channelMap);
    if (stream == nullptr)
        return makeError(QStringLiteral("The sound server refused a stream: ") + lastErrorText());
    return stream;
}

std::optional<std::vector<PulseMainLoop::SourceDescription>> PulseMainLoop::sources(
    std::chrono::milliseconds timeout) {
    SourceListing listing{this, {}};
    const PulseMainLoopLock lock(*this);
    if (!isContextReady()) return std::nullopt;
    const bool answered = awaitAnswer(
        pa_context_get_source_info_list(context_, &onSourceInfo, &listing), [&] { return listing.complete; },
        timeout);
    if (!answered || listing.failed) return std::nullopt;
    return std::move(listing.sources);
}

void PulseMainLoop::onContextState(pa_context*, void* userdata) {
    static_cast<PulseMainLoop*>(userdata)->signal();
}

}  // namespace kestrum
