#pragma once

#include "base/common/Result.h"
#include "platform/linux/pulse/PulseMainLoop.h"
#include "platform/linux/pulse/PulseSinkInputFilter.h"

#include <pulse/introspect.h>
#include <pulse/subscribe.h>

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace kestrum {

// Follows the sinks and the playback streams of the sound server: reports each as it appears or changes
// (a stream may move to another sink, whose monitor then records it), and as it vanishes. Those that
// exist at the start are reported as they are found.
//
// Threads: the handlers run on the loop thread with the loop's lock held, from the answers of the server;
// `start` and `stop` are called with the lock held too. After `stop` no handler runs.
class PulseSinkInputWatcher {
  public:
    struct Handlers {
        std::function<void(const PulseSinkInputDescription&)> seen;  // appeared, or changed
        std::function<void(std::uint32_t sinkInputIndex)> gone;
        std::function<void(std::uint32_t sinkIndex, std::uint32_t monitorSourceIndex)> sinkSeen;
        std::function<void(std::uint32_t sinkIndex)> sinkGone;
    };

    PulseSinkInputWatcher(PulseMainLoop& loop, Handlers handlers)
        : loop_(loop), handlers_(std::move(handlers)) {}
    ~PulseSinkInputWatcher() { stop(); }
    PulseSinkInputWatcher(const PulseSinkInputWatcher&) = delete;
    PulseSinkInputWatcher& operator=(const PulseSinkInputWatcher&) = delete;

    // Subscribes to the server's notices of sinks and playback streams and asks for the present ones.
    // An Error when the server refuses the requests.
    Status start();
    void stop();

  private:
    // Keeps a request until the server answered it, so that `stop` can cancel it.
    bool track(pa_operation* operation);
    void onEvent(pa_subscription_event_type_t type, std::uint32_t index);
    void report(const pa_sink_input_info& info);
    void reportSink(const pa_sink_info& info);

    static void onSubscription(pa_context* context, pa_subscription_event_type_t type, std::uint32_t index,
                               void* userdata);
    static void onSinkInfo(pa_context* context, const pa_sink_info* info, int endOfList, void* userdata);
    static void onSinkInputInfo(pa_context* context, const pa_sink_input_info* info, int endOfList,
                                void* userdata);

    PulseMainLoop& loop_;
    const Handlers handlers_;
    bool started_ = false;
    std::map<std::uint32_t, std::uint32_t> monitorSourceOfSink_;
    std::vector<pa_operation*> pending_;
};

}  // namespace kestrum
