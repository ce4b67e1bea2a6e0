#pragma once

#include "core/library/MatchVideo.h"
#include "platform/ports/FileActions.h"

#include <QSet>
#include <QStringList>

#include <vector>

namespace kestrum {

// What became of the files of some recordings sent to the trash.
struct RecordingTrashOutcome {
    // The movies that went; their recordings leave the library.
    QSet<QString> trashedMoviePaths;
    // One line per file that stayed: its name, ": " and the reason.
    QStringList failureLines;
};

// Moves each recording's movie to the trash, then its session document ("<movie without extension>.json")
// when one exists. A movie that stays keeps its document too; a missing document is no failure. Nothing
// is ever deleted outright. Main thread, like the file actions.
RecordingTrashOutcome moveRecordingFilesToTrash(FileActions& fileActions,
                                                const std::vector<MatchVideo>& matches);

}  // namespace kestrum
