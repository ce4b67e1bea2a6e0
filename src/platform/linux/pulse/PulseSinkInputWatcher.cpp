#include "platform/linux/pulse/PulseSinkInputWatcher.h"

#include <pulse/operation.h>
#include <pulse/proplist.h>

#include <QByteArray>

namespace kestrum {

namespace {

std::optional<std::int64_t> processIDOf(const pa_proplist* properties) {
    const char* text = pa_proplist_gets(properties, PA_PROP_APPLICATION_PROCESS_ID);
    if (text == nullptr) return std::nullopt;
    bool ok = false;
    const qlonglong processID = QByteArray(text).toLongLong(&ok);
    return ok ? std::optional<std::int64_t>(processID) : std::nullopt;
}

}  // namespace

Status PulseSinkInputWatcher::start() {
    if (started_) return Status::success();
    pa_context* context = loop_.context();
    pa_context_set_subscribe_callback(context, &PulseSinkInputWatcher::onSubscription, this);
    const auto mask =
        static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SINK_INPUT);
    started_ = true;
    // The server answers in the order asked: the sinks, and so their monitors, are known before the
    // playback streams on them are reported.
    const bool asked =
        track(pa_context_subscribe(context, mask, nullptr, nullptr)) &&
        track(pa_context_get_sink_info_list(context, &PulseSinkInputWatcher::onSinkInfo, this)) &&
        track(pa_context_get_sink_input_info_list(context, &PulseSinkInputWatcher::onSinkInputInfo, this));
    if (asked) return Status::success();
    const Error error = PulseMainLoop::makeError(
        QStringLiteral("The sound server did not list its playback streams: ") + loop_.lastErrorText());
    stop();
    return error;
}

void PulseSinkInputWatcher::stop() {
    if (!started_) return;
    started_ = false;
    pa_context* context = loop_.context();
    pa_context_set_subscribe_callback(context, nullptr, nullptr);
    if (loop_.isContextReady()) {
        pa_operation* unsubscribe =
            pa_context_subscribe(context, PA_SUBSCRIPTION_MASK_NULL, nullptr, nullptr);
        if (unsubscribe != nullptr) pa_operation_unref(unsubscribe);
    }
    for (pa_operation* operation : pending_) {
        if (pa_operation_get_state(operation) == PA_OPERATION_RUNNING) pa_operation_cancel(operation);
        pa_operation_unref(operation);
    }
    pending_.clear();
    monitorSourceOfSink_.clear();
}

bool PulseSinkInputWatcher::track(pa_operation* operation) {
    if (operation == nullptr) return false;
    std::erase_if(pending_, [](pa_operation* answered) {
        if (pa_operation_get_state(answered) == PA_OPERATION_RUNNING) return false;
        pa_operation_unref(answered);
        return true;
    });
    pending_.push_back(operation);
    return true;
}

void PulseSinkInputWatcher::onEvent(pa_subscription_event_type_t type, std::uint32_t index) {
    const auto facility = type & PA_SUBSCRIPTION_EVENT_FACILITY_MASK;
    const auto kind = type & PA_SUBSCRIPTION_EVENT_TYPE_MASK;
    pa_context* context = loop_.context();
    if (facility == PA_SUBSCRIPTION_EVENT_SINK) {
        if (kind == PA_SUBSCRIPTION_EVENT_REMOVE) {
            monitorSourceOfSink_.erase(index);
            handlers_.sinkGone(index);
        } else {
            track(
                pa_context_get_sink_info_by_index(context, index, &PulseSinkInputWatcher::onSinkInfo, this));
        }
    } else if (facility == PA_SUBSCRIPTION_EVENT_SINK_INPUT) {
        if (kind == PA_SUBSCRIPTION_EVENT_REMOVE) {
            handlers_.gone(index);
        } else {
            track(pa_context_get_sink_input_info(context, index, &PulseSinkInputWatcher::onSinkInputInfo,
                                                 this));
        }
    }
}

void PulseSinkInputWatcher::report(const pa_sink_input_info& info) {
    // A stream not yet linked to a sink, or on a sink whose notice has not been answered, is reported at
    // its next change.
    const auto monitor = monitorSourceOfSink_.find(info.sink);
    if (info.sink == PA_INVALID_INDEX || monitor == monitorSourceOfSink_.end()) return;
    const char* name = pa_proplist_gets(info.proplist, PA_PROP_APPLICATION_NAME);
    handlers_.seen(PulseSinkInputDescription{info.index, info.sink, monitor->second,
                                             processIDOf(info.proplist),
                                             name != nullptr ? QString::fromUtf8(name) : QString()});
}

void PulseSinkInputWatcher::reportSink(const pa_sink_info& info) {
    monitorSourceOfSink_[info.index] = info.monitor_source;
    handlers_.sinkSeen(info.index, info.monitor_source);
}

void PulseSinkInputWatcher::onSubscription(pa_context*, pa_subscription_event_type_t type,
                                           std::uint32_t index, void* userdata) {
    static_cast<PulseSinkInputWatcher*>(userdata)->onEvent(type, index);
}

void PulseSinkInputWatcher::onSinkInfo(pa_context*, const pa_sink_info* info, int endOfList, void* userdata) {
    if (endOfList != 0 || info == nullptr) return;
    static_cast<PulseSinkInputWatcher*>(userdata)->reportSink(*info);
}

void PulseSinkInputWatcher::onSinkInputInfo(pa_context*, const pa_sink_input_info* info, int endOfList,
                                            void* userdata) {
    if (endOfList != 0 || info == nullptr) return;
    static_cast<PulseSinkInputWatcher*>(userdata)->report(*info);
}

}  // namespace kestrum
