#pragma once

#include <QString>
#include <QStringList>

#include <ostream>

// Lets GoogleTest print a QString as its text in failure messages (found by argument-dependent lookup).
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace kestrum::test {

// Empties the capture log's file, after the appends still queued, so that captureLogLines() shows only
// what comes later. The file is left in place: an existing file takes every line by appending, while two
// first lines racing to create it would lose one.
void resetCaptureLogFile();

// The capture log file's lines, each without its timestamp: "[INFO] [Capture] message".
QStringList captureLogLines();

}  // namespace kestrum::test
