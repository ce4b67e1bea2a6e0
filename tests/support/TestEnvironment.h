#pragma once

#include <QString>

namespace kestrum::test {

// Every test program runs with HOME and the XDG base directories pointed at a private temporary
// folder made by the test main, so that no test reads or writes the developer's real settings,
// caches or logs. These return the folders in force for this process.
// Points HOME and the XDG base directories at folders under `root`: what every test main does first.
void usePrivateHome(const QString& root);

QString testHomeDirectory();
QString testConfigDirectory();
QString testCacheDirectory();
QString testStateDirectory();

// Reads a whole file; an empty result when it cannot be read.
QByteArray readFileBytes(const QString& path);
// Writes a whole file, making its folder; returns false on any failure.
bool writeFileBytes(const QString& path, const QByteArray& bytes);

// Processes Qt events until `predicate` holds or `timeoutMs` passes; returns the predicate's last value.
template <class Predicate>
bool waitUntil(Predicate predicate, int timeoutMs = 5000);

void processEventsFor(int milliseconds);

// Whether the test program was started only to list its tests (CTest's discovery), when a main need not
// start any server.
bool onlyListsTests(int argc, char** argv);

}  // namespace kestrum::test

#include <QCoreApplication>
#include <QDeadlineTimer>

template <class Predicate>
bool kestrum::test::waitUntil(Predicate predicate, int timeoutMs) {
    QDeadlineTimer deadline(timeoutMs);
    while (!predicate()) {
        if (deadline.hasExpired()) return predicate();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}
