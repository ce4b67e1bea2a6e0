#pragma once

#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

namespace kestrum::ffmpeg {

// Gives the calling thread the name `threadName` and a nice value `niceIncrement` above the one it has.
// On Linux the nice value is a thread's own, and every thread it creates starts with it; raising it
// needs no privilege. A refusal is ignored: the thread then simply keeps its priority.
void lowerCurrentThreadPriority(const char* threadName, int niceIncrement);

// Runs `work` to completion on a new thread lowered by `lowerCurrentThreadPriority` and gives its
// result; the caller waits. What `work` starts, such as an encoder's worker threads, keeps the lower
// priority and the name for its whole life, while the caller's own priority is untouched.
template <class Work>
auto runOnLowerPriorityThread(const char* threadName, int niceIncrement, Work work)
    -> std::invoke_result_t<Work&> {
    std::optional<std::invoke_result_t<Work&>> result;
    std::thread thread([&] {
        lowerCurrentThreadPriority(threadName, niceIncrement);
        result.emplace(work());
    });
    thread.join();
    return std::move(*result);
}

}  // namespace kestrum::ffmpeg
