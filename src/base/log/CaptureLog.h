#pragma once

#include "base/log/SystemLog.h"

#include <QString>

#include <memory>

namespace kestrum {

// The capture log: the one logging facility of the recording side. Each entry goes to two sinks, the
// installed system log (see installCaptureSystemLog) and the plain text file at captureLogFilePath(),
// one line per entry:
//     [2026-03-14 21:07:55.302] [INFO] [Capture] Live Game Client verified. Recording is allowed.
//
// All functions here are callable from any thread, return nothing and never fail: nothing that goes
// wrong in logging reaches the caller, and a line that cannot be written is lost. The caller pays for
// one timestamp and one string; the file append runs later on utilityPool(), so the order of lines in
// the file may differ slightly from the order of the calls (the timestamps give the true order). The
// file is never read back, rotated or truncated.

// An information entry, level word "INFO". `message` is a finished text and is written as it stands,
// line feeds and all.
void logCaptureInfo(const QString& message);

// An error entry, level word "ERROR". The system log receives "❌ " in front of the message; the file
// does not, it tells errors by the level word alone.
void logCaptureError(const QString& message);

// The shared step of both: the system sink (skipped when it has `level` disabled or none is installed),
// then the timestamp of this moment, the line, and the queued append.
void writeCaptureLogEntry(const QString& message, SystemLog::Level level);

// Installs the system sink for every later entry; nullptr removes it, leaving the file as the only sink.
// The application installs the platform's adapter at start. Thread-safe.
void installCaptureSystemLog(std::shared_ptr<SystemLog> systemLog);

// For tests: blocks until every append queued so far, and any queued meanwhile, has finished (written or
// dropped). Never call it on a utility pool thread.
void waitForCaptureLogWrites();

}  // namespace kestrum
