#include "core/capture/audio/RecordingSampleTally.h"

#include <QStringList>

#include <numeric>

namespace kestrum {

namespace {

QString wordsFor(RecordingSampleFate fate) {
    switch (fate) {
        case RecordingSampleFate::written:
            return QStringLiteral("written");
        case RecordingSampleFate::afterStop:
            return QStringLiteral("after the stop");
        case RecordingSampleFate::dataNotReady:
            return QStringLiteral("data not ready");
        case RecordingSampleFate::withoutPicture:
            return QStringLiteral("without a picture");
        case RecordingSampleFate::whileUnfocused:
            return QStringLiteral("while unfocused");
        case RecordingSampleFate::notLater:
            return QStringLiteral("not later than the last");
        case RecordingSampleFate::beforeSession:
            return QStringLiteral("before the session");
        case RecordingSampleFate::notReady:
            return QStringLiteral("not ready");
        case RecordingSampleFate::refused:
            return QStringLiteral("refused");
    }
    return {};
}

}  // namespace

std::int64_t RecordingSampleTally::received() const {
    return std::accumulate(counts_.begin(), counts_.end(), std::int64_t{0});
}

QString RecordingSampleTally::description(const QString& unitPlural) const {
    QString text = QStringLiteral("%1 of %2 %3 written")
                       .arg(countOf(RecordingSampleFate::written))
                       .arg(received())
                       .arg(unitPlural);
    QStringList others;
    for (std::size_t index = 0; index < kFateCount; ++index) {
        const auto fate = static_cast<RecordingSampleFate>(index);
        if (fate == RecordingSampleFate::written || counts_[index] == 0) continue;
        others << QStringLiteral("%1 %2").arg(counts_[index]).arg(wordsFor(fate));
    }
    if (!others.isEmpty())
        text += QStringLiteral(" (") + others.join(QStringLiteral(", ")) + QLatin1Char(')');
    return text;
}

}  // namespace kestrum
