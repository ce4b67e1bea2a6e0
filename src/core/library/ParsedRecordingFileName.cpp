#include "core/library/ParsedRecordingFileName.h"

#include "core/library/LibraryPositions.h"

#include <QFileInfo>
#include <QStringList>

namespace kestrum {

ParsedRecordingFileName ParsedRecordingFileName::parse(const QString& moviePath) {
    const QStringList pieces = QFileInfo(moviePath).completeBaseName().split(u'_', Qt::SkipEmptyParts);
    if (pieces.size() < 3) return {};
    const QStringList tail = pieces.mid(2);

    ParsedRecordingFileName parsed;
    const std::string last = tail.last().toStdString();
    const bool endsWithLane = isLaneWord(last);
    if (endsWithLane) parsed.lane = last;
    if (endsWithLane && tail.size() == 2) {
        parsed.champion = tail.first().toStdString();
        return parsed;
    }
    parsed.gameMode = tail.first().toStdString();
    parsed.champion = (tail.size() > 1 ? tail.at(1) : tail.first()).toStdString();
    return parsed;
}

}  // namespace kestrum
