#include "base/async/Detached.h"

namespace kestrum {

QThreadPool& utilityPool() {
    // Leaked on purpose: appends may still be queued while static destructors run at exit.
    static QThreadPool* const pool = [] {
        auto* created = new QThreadPool;
        created->setObjectName(QStringLiteral("com.kestrum.utility"));
        created->setThreadPriority(QThread::LowPriority);
        created->setMaxThreadCount(4);
        return created;
    }();
    return *pool;
}

bool finishDetachedWork(int limitMs) {
    return utilityPool().waitForDone(limitMs);
}

}  // namespace kestrum
