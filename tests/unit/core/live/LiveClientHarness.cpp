#include "LiveClientHarness.h"

namespace kestrum::test {

LiveClientHarness::LiveClientHarness() : client(service, clock, [this] { return wallNow(); }) {
    installCaptureSystemLog(log);
}

LiveClientHarness::~LiveClientHarness() {
    installCaptureSystemLog(nullptr);
    waitForCaptureLogWrites();
}

ReferenceDate LiveClientHarness::wallNow() const {
    return {kWallStart.secondsSince2001 + std::chrono::duration<double>(clock.now() - clockStart).count()};
}

QStringList LiveClientHarness::logLines() const {
    QStringList messages;
    // The system sink marks errors with a leading "❌ "; the capture log's own words follow it.
    for (const auto& line : log->lines())
        messages << QString(line.message).remove(0, line.level == SystemLog::Level::Error ? 2 : 0);
    return messages;
}

}  // namespace kestrum::test
