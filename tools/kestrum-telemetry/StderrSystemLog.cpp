#include "StderrSystemLog.h"

#include <cstdio>

namespace kestrum::tools {

void StderrSystemLog::info(const QString& message) {
    std::fprintf(stderr, "[INFO] %s\n", qPrintable(message));
}

void StderrSystemLog::error(const QString& message) {
    std::fprintf(stderr, "[ERROR] %s\n", qPrintable(message));
}

}  // namespace kestrum::tools
