#include "core/recording/StandardOutput.h"

#include <cstdio>

namespace kestrum {

void printStandardOutputLine(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    // One fwrite per line, so that lines printed by several threads never interleave inside a line.
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

}  // namespace kestrum
