#pragma once

#include <QFuture>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentRun>

#include <utility>

namespace kestrum {

// The process-wide pool for background work of `utility` priority: the capture log's appends, the
// sidecar write of the save path, storage measurement. Threads run at low priority so they never
// compete with capture. Created on first use, thread-safe, never destroyed.
QThreadPool& utilityPool();

// Waits at most `limitMs` for the utility pool's work to end. For the end of a program's main: work still
// running there (a thumbnail loading an image plugin, a log line's append) would run on while the
// toolkit's static objects are destroyed, and crash the exit. True when nothing is left running.
bool finishDetachedWork(int limitMs);

// Runs `work` away from the calling thread on the utility pool. The result is a QFuture that a
// coroutine awaits with `co_await` (QCoro), or that is simply dropped for fire-and-forget work.
template <class Work>
auto detached(Work&& work) {
    return QtConcurrent::run(&utilityPool(), std::forward<Work>(work));
}

}  // namespace kestrum
