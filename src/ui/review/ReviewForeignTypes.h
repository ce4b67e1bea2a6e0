#pragma once

#include "core/review/GameTimelineModel.h"
#include "core/review/PlaybackVolumeModel.h"
#include "core/review/RecordingScoreboardModel.h"
#include "core/review/ReviewRowListModel.h"
#include "core/review/ScoreboardTeamHeader.h"
#include "core/review/TimelineHoverCard.h"

// QML_FOREIGN lives in QtQml (not in QtQmlIntegration) in Qt 6.4; moc must see its definition.
#include <QtQml/qqmlregistration.h>

// The review objects of the core as the views know them. The core holds no QML: these declarations name
// its classes for QML's type registrar (and so for qmllint and the compiled bindings). Every one is made
// in C++ by the review window and handed to a view; none is created in QML. They stand together in one
// file because each is a declaration only, with no code of its own.
namespace kestrum::ui {

struct GameTimelineModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::GameTimelineModel)
    QML_NAMED_ELEMENT(GameTimelineModel)
    QML_UNCREATABLE("made by the review window")
};

struct RecordingScoreboardModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::RecordingScoreboardModel)
    QML_NAMED_ELEMENT(RecordingScoreboardModel)
    QML_UNCREATABLE("made by the review window")
};

struct ReviewRowListModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::ReviewRowListModel)
    QML_NAMED_ELEMENT(ReviewRowListModel)
    QML_UNCREATABLE("made by a review model")
};

struct PlaybackVolumeModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::PlaybackVolumeModel)
    QML_NAMED_ELEMENT(PlaybackVolumeModel)
    QML_UNCREATABLE("made by the timeline model")
};

struct TimelineHoverCardForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::TimelineHoverCard)
    QML_NAMED_ELEMENT(TimelineHoverCard)
    QML_UNCREATABLE("made by the timeline model")
};

struct ScoreboardTeamHeaderForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::ScoreboardTeamHeader)
    QML_NAMED_ELEMENT(ScoreboardTeamHeader)
    QML_UNCREATABLE("made by the scoreboard model")
};

}  // namespace kestrum::ui
