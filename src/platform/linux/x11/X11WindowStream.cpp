#include "platform/linux/x11/X11WindowStream.h"

#include "platform/linux/x11/X11StreamCaptureLoop.h"

#include <QCoroFuture>
#include <QPromise>

#include <algorithm>

namespace kestrum {

namespace {

constexpr int kMaximumSidePixels = 16384;
constexpr int kMaximumFrameRate = 240;

Status validate(const WindowStreamConfiguration& configuration) {
    const auto inRange = [](int value, int maximum) { return value >= 1 && value <= maximum; };
    if (inRange(configuration.width, kMaximumSidePixels) &&
        inRange(configuration.height, kMaximumSidePixels) &&
        inRange(configuration.frameRate, kMaximumFrameRate)) {
        return Status::success();
    }
    return Error::withDescription(QStringLiteral("The window stream cannot deliver %1x%2 pixels at %3 FPS.")
                                      .arg(configuration.width)
                                      .arg(configuration.height)
                                      .arg(configuration.frameRate));
}

}  // namespace

X11WindowStream::X11WindowStream(ShareableWindow window, WindowStreamConfiguration configuration)
    : window_(std::move(window)), configuration_(configuration) {}

X11WindowStream::~X11WindowStream() {
    endWatcher_.reset();
    if (!captureThread_.joinable()) return;
    loop_->requestStop();
    captureThread_.join();
}

Status X11WindowStream::addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type,
                                        SerialQueue& queue) {
    if (type != CaptureOutputType::screen) {
        return Error::withDescription(QStringLiteral("A window stream delivers screen samples only."));
    }
    const auto same = [&](const X11StreamOutput& registered) { return registered.output == &output; };
    std::erase_if(outputs_, same);
    outputs_.push_back({&output, &queue});
    if (loop_) loop_->setOutputs(outputs_);
    return Status::success();
}

QCoro::Task<Status> X11WindowStream::startCapture() {
    if (captureThread_.joinable()) {
        co_return Error::withDescription(QStringLiteral("The window stream is already running."));
    }
    const Status valid = validate(configuration_);
    if (!valid.ok()) co_return valid;
    loop_ = std::make_shared<X11StreamCaptureLoop>(window_.windowID, configuration_, outputs_);
    QPromise<Status> opened;
    QPromise<void> ended;
    opened.start();
    ended.start();
    QFuture<Status> openedFuture = opened.future();
    captureThreadEnded_ = ended.future();
    captureThread_ =
        std::thread([loop = loop_, opened = std::move(opened), ended = std::move(ended)]() mutable {
            loop->run(opened);
            ended.finish();
        });
    const Status status = co_await openedFuture;
    if (!status.ok()) {
        auto join = joinCaptureThread();
        co_await std::move(join);
        co_return status;
    }
    watchForEnd();
    co_return status;
}

void X11WindowStream::watchForEnd() {
    endWatcher_ = std::make_unique<QFutureWatcher<void>>();
    // The watcher is the context: a stop or the destructor deletes it, and with it a notice not yet
    // delivered.
    QObject::connect(endWatcher_.get(), &QFutureWatcherBase::finished, endWatcher_.get(),
                     [this, loop = loop_] { tellEnd(loop); });
    endWatcher_->setFuture(captureThreadEnded_);
}

void X11WindowStream::tellEnd(const std::shared_ptr<X11StreamCaptureLoop>& loop) {
    if (loop != loop_ || !endHandler_) return;
    // No error: the thread returned on a stop request, which the stop itself reports.
    const std::optional<Error> reason = loop->endError();
    if (!reason) return;
    const EndHandler handler = endHandler_;  // the handler may replace itself
    handler(*reason);
}

QCoro::Task<Status> X11WindowStream::stopCapture() {
    endWatcher_.reset();
    if (!captureThread_.joinable()) co_return Status::success();
    loop_->requestStop();
    auto join = joinCaptureThread();
    co_await std::move(join);
    if (std::optional<Error> ended = loop_->endError()) co_return *ended;
    co_return Status::success();
}

QCoro::Task<void> X11WindowStream::joinCaptureThread() {
    // The thread has returned from its work once the future is finished, so the join is immediate.
    QFuture<void> ended = captureThreadEnded_;
    co_await ended;
    if (captureThread_.joinable()) captureThread_.join();
}

QCoro::Task<Status> X11WindowStream::updateConfiguration(WindowStreamConfiguration configuration) {
    const Status valid = validate(configuration);
    if (!valid.ok()) co_return valid;
    configuration_ = configuration;
    if (loop_) loop_->updateConfiguration(configuration);
    co_return Status::success();
}

WindowStreamCounters X11WindowStream::counters() const {
    return loop_ ? loop_->counters() : WindowStreamCounters{};
}

}  // namespace kestrum
