#pragma once

#include "support/QtPrinters.h"

#include <QString>
#include <QStringList>

namespace kestrum::test {

// Empties the capture log's file, after the appends still queued, so that captureLogLines() shows only
// what comes later. The file is left in place: an existing file takes every line by appending, while two
// first lines racing to create it would lose one.
void resetCaptureLogFile();

// The capture log file's lines, each without its timestamp: "[INFO] [Capture] message".
QStringList captureLogLines();

}  // namespace kestrum::test
