#include "media/ffmpeg/LowerPriorityThread.h"

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>

namespace kestrum::ffmpeg {

void lowerCurrentThreadPriority(const char* threadName, int niceIncrement) {
    pthread_setname_np(pthread_self(), threadName);
    const auto thread = static_cast<id_t>(gettid());
    // -1 is a valid nice value: only errno tells a failed read.
    errno = 0;
    const int nice = getpriority(PRIO_PROCESS, thread);
    if (errno != 0) return;
    (void)setpriority(PRIO_PROCESS, thread, nice + niceIncrement);
}

}  // namespace kestrum::ffmpeg
