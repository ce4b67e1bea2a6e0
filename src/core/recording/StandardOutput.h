#pragma once

#include <QString>

namespace kestrum {

// Writes `line` and a line feed to standard output as UTF-8 and flushes, for the diagnostics that go to
// the console only and never to the capture log. Any thread; a failed write is ignored.
void printStandardOutputLine(const QString& line);

}  // namespace kestrum
