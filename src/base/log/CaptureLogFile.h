#pragma once

#include <QString>

namespace kestrum {

// The capture log's file: `$XDG_STATE_HOME/Kestrum/Logs/kestrum_system.log`, where an unset, empty or
// relative XDG_STATE_HOME stands for `~/.local/state` (the XDG rule). Computed on every call, so that a
// change of the environment or a deleted folder is picked up by the next append.
QString captureLogDirectoryPath();
QString captureLogFilePath();

// Appends one finished line (line feed included) to the file, encoded as UTF-8 with no byte-order mark.
// Runs on a utility pool thread, never on the caller of the log. Makes the folder with its parents when
// it is missing (a failure there is ignored); appends to an existing file with a single unbuffered
// O_APPEND write, so that concurrent appends never split a line; writes a missing file atomically
// (temporary file in the same folder, then rename). Any failure drops the line silently. There is no
// lock: concurrent appends are safe by O_APPEND, except that two appends that both find the file missing
// both write it whole and one of the two lines is lost, which is accepted.
void appendCaptureLogLine(const QString& line);

}  // namespace kestrum
