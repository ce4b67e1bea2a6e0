#include "platform/linux/pulse/PulseNullSink.h"

#include <pulse/introspect.h>

#include <QList>

#include <vector>

namespace kestrum {

namespace {

constexpr char kModuleName[] = "module-null-sink";

// The answers of one request, on the requester's stack; PulseMainLoop::awaitAnswer cancels an unanswered
// request before it goes out of scope.
struct ModuleListing {
    PulseMainLoop* loop;
    QByteArray sinkArgument;  // "sink_name=<name>", a whole word of the module's argument
    std::vector<std::uint32_t> matches;
    bool complete = false;
    bool failed = false;
};

void onModuleInfo(pa_context*, const pa_module_info* info, int endOfList, void* userdata) {
    auto* listing = static_cast<ModuleListing*>(userdata);
    if (endOfList != 0) {
        listing->failed = endOfList < 0;
        listing->complete = true;
        listing->loop->signal();
        return;
    }
    if (info == nullptr || info->name == nullptr || info->argument == nullptr) return;
    if (QByteArray(info->name) != kModuleName) return;
    const QList<QByteArray> words = QByteArray(info->argument).simplified().split(' ');
    if (words.contains(listing->sinkArgument)) listing->matches.push_back(info->index);
}

struct Loading {
    PulseMainLoop* loop;
    std::optional<std::uint32_t> moduleIndex;
    bool answered = false;
};

void onLoaded(pa_context*, std::uint32_t index, void* userdata) {
    auto* loading = static_cast<Loading*>(userdata);
    loading->answered = true;
    if (index != PA_INVALID_INDEX) loading->moduleIndex = index;
    loading->loop->signal();
}

struct Unloading {
    PulseMainLoop* loop;
    bool succeeded = false;
    bool answered = false;
};

void onUnloaded(pa_context*, int success, void* userdata) {
    auto* unloading = static_cast<Unloading*>(userdata);
    unloading->answered = true;
    unloading->succeeded = success != 0;
    unloading->loop->signal();
}

}  // namespace

PulseNullSink::PulseNullSink(PulseMainLoop& loop, QByteArray sinkName, QString description)
    : loop_(loop), sinkName_(std::move(sinkName)), description_(std::move(description)) {}

Status PulseNullSink::create() {
    if (moduleIndex_) return Status::success();
    const Status cleared = unloadStale();
    if (!cleared.ok()) return cleared;
    const QByteArray argument = moduleArgument();
    Loading loading{&loop_, std::nullopt};
    const bool answered = loop_.awaitAnswer(
        pa_context_load_module(loop_.context(), kModuleName, argument.constData(), &onLoaded, &loading),
        [&] { return loading.answered; });
    if (!answered || !loading.moduleIndex) {
        // A load the server carried out after we stopped waiting is found as stale by the next create.
        return PulseMainLoop::makeError(
            QStringLiteral("The sound server could not make the sink “%1”: %2")
                .arg(description_, answered ? loop_.lastErrorText() : QStringLiteral("no answer in time")));
    }
    moduleIndex_ = loading.moduleIndex;
    return Status::success();
}

Status PulseNullSink::remove() {
    if (!moduleIndex_) return Status::success();
    const std::uint32_t index = *moduleIndex_;
    moduleIndex_.reset();
    return unload(index);
}

Status PulseNullSink::unloadStale() {
    ModuleListing listing{&loop_, QByteArrayLiteral("sink_name=") + sinkName_, {}};
    const bool answered =
        loop_.awaitAnswer(pa_context_get_module_info_list(loop_.context(), &onModuleInfo, &listing),
                          [&] { return listing.complete; });
    if (!answered || listing.failed) {
        return PulseMainLoop::makeError(QStringLiteral("The sound server did not list its modules: ") +
                                        loop_.lastErrorText());
    }
    for (const std::uint32_t stale : listing.matches) {
        const Status unloaded = unload(stale);
        if (!unloaded.ok()) return unloaded;
    }
    return Status::success();
}

Status PulseNullSink::unload(std::uint32_t moduleIndex) {
    Unloading unloading{&loop_};
    const bool answered =
        loop_.awaitAnswer(pa_context_unload_module(loop_.context(), moduleIndex, &onUnloaded, &unloading),
                          [&] { return unloading.answered; });
    if (answered && unloading.succeeded) return Status::success();
    return PulseMainLoop::makeError(
        QStringLiteral("The sound server could not remove the sink “%1”: %2")
            .arg(description_, answered ? loop_.lastErrorText() : QStringLiteral("no answer in time")));
}

QByteArray PulseNullSink::moduleArgument() const {
    // The description goes through two parsers: the module's arguments (single quotes) and the sink's
    // property list (double quotes), so that its space survives both.
    QByteArray description = description_.toUtf8();
    description.replace('\\', "\\\\").replace('"', "\\\"").replace('\'', "");
    return QByteArrayLiteral("sink_name=") + sinkName_ +
           QByteArrayLiteral(" sink_properties='device.description=\"") + description +
           QByteArrayLiteral("\"'");
}

}  // namespace kestrum
