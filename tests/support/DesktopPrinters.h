#pragma once

#include "platform/ports/RunningApplication.h"
#include "platform/ports/ShareableContent.h"
#include "support/QtPrinters.h"

#include <ostream>

// GoogleTest printers for the desktop's records, found by argument-dependent lookup.
namespace kestrum {

inline void PrintTo(const RunningApplication& application, std::ostream* out) {
    *out << "{pid " << application.processIdentifier << " "
         << application.bundleIdentifier.value_or(QStringLiteral("<no id>")).toStdString() << " "
         << application.localizedName.value_or(QStringLiteral("<no name>")).toStdString() << "}";
}

inline void PrintTo(const ShareableApplication& application, std::ostream* out) {
    *out << "{pid " << application.processID << " \"" << application.bundleIdentifier.toStdString() << "\" \""
         << application.applicationName.toStdString() << "\"}";
}

}  // namespace kestrum
