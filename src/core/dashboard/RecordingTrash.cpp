#include "core/dashboard/RecordingTrash.h"

#include "core/telemetry/SessionDocumentBuilder.h"

#include <QFileInfo>

namespace kestrum {

namespace {

QString failureLine(const QString& path, const Error& error) {
    return QFileInfo(path).fileName() + QStringLiteral(": ") + error.description;
}

}  // namespace

RecordingTrashOutcome moveRecordingFilesToTrash(FileActions& fileActions,
                                                const std::vector<MatchVideo>& matches) {
    RecordingTrashOutcome outcome;
    for (const MatchVideo& match : matches) {
        const Status movie = fileActions.moveToTrash(match.url);
        if (!movie) {
            outcome.failureLines.append(failureLine(match.url, movie.error()));
            continue;
        }
        outcome.trashedMoviePaths.insert(match.url);
        const QString sidecar = sessionDocumentPath(match.url);
        if (!QFileInfo::exists(sidecar)) continue;
        const Status document = fileActions.moveToTrash(sidecar);
        if (!document) outcome.failureLines.append(failureLine(sidecar, document.error()));
    }
    return outcome;
}

}  // namespace kestrum
