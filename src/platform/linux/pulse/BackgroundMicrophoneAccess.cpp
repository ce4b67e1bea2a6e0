#include "platform/linux/pulse/BackgroundMicrophoneAccess.h"

#include <QCoroSignal>
#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>

namespace kestrum {

BackgroundMicrophoneAccess::BackgroundMicrophoneAccess(std::shared_ptr<const MicrophoneAccess> reader,
                                                       QObject* parent)
    : QObject(parent), reader_(std::move(reader)) {
    worker_.setMaxThreadCount(1);
    worker_.setObjectName(QStringLiteral("com.kestrum.microphone-status"));
    startRead();
}

BackgroundMicrophoneAccess::~BackgroundMicrophoneAccess() {
    worker_.waitForDone();
}

MicrophoneAccess::Status BackgroundMicrophoneAccess::status() const {
    startRead();
    return published_;
}

QCoro::Task<bool> BackgroundMicrophoneAccess::request() {
    startRead();
    const Status answer = co_await qCoro(this, &BackgroundMicrophoneAccess::statusRead);
    co_return answer == Status::authorized;
}

void BackgroundMicrophoneAccess::startRead() const {
    if (isReading_) return;
    isReading_ = true;
    auto* self = const_cast<BackgroundMicrophoneAccess*>(this);
    auto* watcher = new QFutureWatcher<Status>(self);
    connect(watcher, &QFutureWatcher<Status>::finished, self, [self, watcher] {
        const Status answer = watcher->result();
        watcher->deleteLater();
        self->isReading_ = false;
        const bool changed = answer != self->published_;
        self->published_ = answer;
        emit self->statusRead(answer);
        if (changed) emit self->statusChanged(answer);
    });
    watcher->setFuture(QtConcurrent::run(&worker_, [reader = reader_] { return reader->status(); }));
}

}  // namespace kestrum
