#pragma once

#include <QCoroTask>
#include <QStringList>

namespace kestrum::tools {

// `collect --seconds N [--port P]`: runs the collector against the local service for N seconds, the
// movie taken to start now, and prints the session document the save path would write (no metadata).
// Yields the exit status: 0, 1 when the document cannot be written, 2 for bad usage. Main thread.
QCoro::Task<int> runCollect(QStringList arguments);

}  // namespace kestrum::tools
