#pragma once

#include <QString>

#include <ostream>

// Lets GoogleTest print a QString (and so a QStringList) as its text in failure messages; found by
// argument-dependent lookup.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
