#pragma once

#include <QEventLoop>
#include <QObject>
#include <QTimer>

#include <functional>

namespace kestrum::bench {

// Runs the event loop until `predicate` holds (checked every millisecond) or `timeoutMs` passed; whether
// it holds. Main thread, like the windows and players the benchmarks watch.
inline bool waitFor(const std::function<bool()>& predicate, int timeoutMs) {
    QEventLoop loop;
    QTimer check;
    QObject::connect(&check, &QTimer::timeout, &loop, [&] {
        if (predicate()) loop.quit();
    });
    check.start(1);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    if (!predicate()) loop.exec();
    return predicate();
}

// Runs the event loop for `milliseconds`.
inline void runEventLoopFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

}  // namespace kestrum::bench
