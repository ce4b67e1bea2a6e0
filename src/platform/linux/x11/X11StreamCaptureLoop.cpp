#include "platform/linux/x11/X11StreamCaptureLoop.h"

#include "platform/linux/x11/X11StreamFramePacer.h"

#include <pthread.h>
#include <sys/prctl.h>

#include <utility>

namespace kestrum {

namespace {

// The kernel keeps 15 bytes of a thread's name.
constexpr char kThreadName[] = "kestrum-x11win";

void prepareCaptureThread() {
    pthread_setname_np(pthread_self(), kThreadName);
    // The default slack of 50 us would let the kernel defer every deadline of the grid.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
}

}  // namespace

X11StreamCaptureLoop::X11StreamCaptureLoop(std::uint32_t windowID, WindowStreamConfiguration configuration,
                                           std::vector<X11StreamOutput> outputs)
    : windowID_(windowID), initialConfiguration_(configuration), outputs_(std::move(outputs)) {}

void X11StreamCaptureLoop::run(QPromise<Status>& opened) {
    prepareCaptureThread();
    const Status status = reader_.open(windowID_);
    opened.addResult(status);
    opened.finish();
    if (!status.ok()) return;
    WindowStreamConfiguration configuration = initialConfiguration_;
    const auto startedAt = std::chrono::steady_clock::now();
    const HostTimeNs startedAtNs = hostTimeNow();
    X11StreamFramePacer pacer(startedAt, configuration.frameRate);
    while (waitUntil(pacer.deadline())) {
        if (const std::optional<WindowStreamConfiguration> change = takeConfigurationChange()) {
            if (change->frameRate != configuration.frameRate) pacer.retime(change->frameRate);
            configuration = *change;
        }
        const HostTimeNs deadlineNs =
            startedAtNs + std::chrono::nanoseconds(pacer.deadline() - startedAt).count();
        if (!captureFrame(configuration, deadlineNs)) break;
        deadlinesSkipped_ += pacer.advance(std::chrono::steady_clock::now());
    }
    reader_.close();
}

bool X11StreamCaptureLoop::waitUntil(std::chrono::steady_clock::time_point deadline) {
    std::unique_lock lock(mutex_);
    return !wake_.wait_until(lock, deadline, [this] { return stopRequested_; });
}

std::optional<WindowStreamConfiguration> X11StreamCaptureLoop::takeConfigurationChange() {
    const std::lock_guard lock(mutex_);
    return std::exchange(pendingConfiguration_, std::nullopt);
}

bool X11StreamCaptureLoop::captureFrame(const WindowStreamConfiguration& configuration,
                                        HostTimeNs deadlineNs) {
    const X11StreamRead read = reader_.read(configuration.showsCursor);
    switch (read.outcome) {
        case X11StreamReadOutcome::ended: {
            const std::lock_guard lock(mutex_);
            endError_ = reader_.endError();
            return false;
        }
        case X11StreamReadOutcome::failed:
            ++readsFailed_;
            return true;
        case X11StreamReadOutcome::unreadable: {
            // Blank samples carry no picture: the receiver keeps what it showed last.
            CaptureSample sample;
            sample.presentationTimeNs = deadlineNs;
            sample.frameStatus = CaptureFrameStatus::blank;
            ++blankFrames_;
            deliver(sample);
            return true;
        }
        case X11StreamReadOutcome::picture:
            deliverPicture(read, configuration, deadlineNs);
            return true;
    }
    return true;
}

void X11StreamCaptureLoop::deliverPicture(const X11StreamRead& read,
                                          const WindowStreamConfiguration& configuration,
                                          HostTimeNs deadlineNs) {
    const QSize size = windowStreamPictureSize(QSize(read.width, read.height), configuration);
    CaptureSample sample;
    sample.imageBuffer =
        scaler_.scale(read.pixels, read.width, read.height, read.bytesPerRow, size.width(), size.height());
    if (!sample.imageBuffer) {
        ++readsFailed_;
        return;
    }
    const std::pair outputSize{size.width(), size.height()};
    const bool resized = outputSize != lastOutputSize_;
    lastOutputSize_ = outputSize;
    // Stamped on the grid, not when the read ended: a read a few milliseconds late (the X server or the
    // encoder busy) still shows the window as it stood at its deadline, the game repainting at most once
    // in between, and stamping it late would put a hitch of that length in the movie's cadence.
    sample.presentationTimeNs = deadlineNs;
    sample.frameStatus = read.changed || resized ? CaptureFrameStatus::complete : CaptureFrameStatus::idle;
    ++framesRead_;
    deliver(sample);
}

void X11StreamCaptureLoop::deliver(const CaptureSample& sample) {
    std::vector<X11StreamOutput> outputs;
    {
        const std::lock_guard lock(mutex_);
        outputs = outputs_;
    }
    for (const X11StreamOutput& registration : outputs) {
        CaptureStreamOutput* output = registration.output;
        registration.queue->async([output, sample = sample]() mutable {
            output->didOutputSample(sample, CaptureOutputType::screen);
        });
    }
}

void X11StreamCaptureLoop::requestStop() {
    const std::lock_guard lock(mutex_);
    stopRequested_ = true;
    wake_.notify_all();
}

void X11StreamCaptureLoop::updateConfiguration(const WindowStreamConfiguration& configuration) {
    const std::lock_guard lock(mutex_);
    pendingConfiguration_ = configuration;
}

void X11StreamCaptureLoop::setOutputs(std::vector<X11StreamOutput> outputs) {
    const std::lock_guard lock(mutex_);
    outputs_ = std::move(outputs);
}

WindowStreamCounters X11StreamCaptureLoop::counters() const {
    return {framesRead_.load(), blankFrames_.load(), deadlinesSkipped_.load(), readsFailed_.load()};
}

std::optional<Error> X11StreamCaptureLoop::endError() const {
    const std::lock_guard lock(mutex_);
    return endError_;
}

}  // namespace kestrum
