#pragma once

#include "base/async/ManualClock.h"
#include "core/review/GameTimelineModel.h"
#include "core/review/RecordingScoreboardModel.h"
#include "core/settings/UserDefaults.h"
#include "platform/fake/FakeFileActions.h"
#include "platform/fake/FakeVideoPlayer.h"

#include <QString>
#include <QTemporaryDir>
#include <QVariantMap>

#include <memory>

namespace kestrum::test {

// The review panels' objects over a short recording whose every marker and player the view tests know:
// a 100 s movie with the game's start at 2 s, the local player's kill at 50 s (blue, Ahri over Lux), a
// kill between two others at 60 s (red, hidden by the default filters) and a red turret at 80 s; one
// scoreboard snapshot of five blue and five red players from 1 s. Time is a ManualClock, the player and
// the file actions are fakes that record their calls.
//
// Main thread. The players' listeners are removed before the player goes.
class ReviewViewModels {
  public:
    static constexpr double kDurationSeconds = 100;
    static constexpr double kLocalKillSeconds = 50;
    static constexpr double kOtherKillSeconds = 60;
    static constexpr double kTurretSeconds = 80;

    ReviewViewModels();
    ~ReviewViewModels();

    // The required properties that the QML file named `fileName` ("GameTimelineView.qml") needs to be
    // made, bound to these objects; empty for a file that needs none.
    QVariantMap propertiesFor(const QString& fileName);

    QTemporaryDir folder;
    UserDefaults defaults;
    ManualClock clock;
    FakeVideoPlayer player;
    FakeFileActions fileActions;
    GameTimelineModel timeline;
    RecordingScoreboardModel scoreboard;
};

}  // namespace kestrum::test
