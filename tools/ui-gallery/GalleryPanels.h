#pragma once

#include "GalleryOptions.h"
#include "core/library/detail/RecordingDetail.h"
#include "core/review/GameTimelineModel.h"
#include "core/review/RecordingScoreboardModel.h"
#include "core/settings/UserDefaults.h"
#include "platform/fake/FakeVideoPlayer.h"
#include "platform/linux/freedesktop/FreedesktopFileActions.h"

#include <QObject>
#include <QTimer>
#include <QtQmlIntegration>

#include <memory>

class QJSEngine;
class QQmlEngine;
class QQuickWindow;

namespace kestrum::gallery {

// The review panels of the gallery on one recording: the timeline and scoreboard models over a fake
// player whose playhead moves in real time, read 20 times a second as the review window reads its player.
// The desktop's file actions copy the Riot IDs. Made once by main, shown to QML as the singleton
// `GalleryPanels`; after the window has drawn, it hovers the marker and opens the pop-up that the options
// ask for, so that a screenshot can show them.
//
// Threads: the main thread.
class GalleryPanels : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(kestrum::GameTimelineModel* timeline READ timeline CONSTANT)
    Q_PROPERTY(kestrum::RecordingScoreboardModel* scoreboard READ scoreboard CONSTANT)
    Q_PROPERTY(bool showsTimeline READ showsTimeline CONSTANT)
    Q_PROPERTY(bool showsScoreboard READ showsScoreboard CONSTANT)

  public:
    // How often the panels read the playhead, as the review window does.
    static constexpr int kPositionPollMs = 50;

    GalleryPanels(const GalleryOptions& options, std::shared_ptr<const RecordingDetail> recording,
                  const ScoreboardLocalPlayer& localPlayer, UserDefaults& defaults,
                  QObject* parent = nullptr);
    ~GalleryPanels() override;

    static void setShown(GalleryPanels& panels);
    static GalleryPanels* create(QQmlEngine* qmlEngine, QJSEngine* jsEngine);

    GameTimelineModel* timeline() { return &timeline_; }
    RecordingScoreboardModel* scoreboard() { return &scoreboard_; }
    bool showsTimeline() const { return options_.panel != GalleryOptions::Panel::scoreboard; }
    bool showsScoreboard() const { return options_.panel != GalleryOptions::Panel::timeline; }

    // Plays from the start time (--at, or a second before the game starts).
    void start();
    // Once the window has drawn: the hover and the pop-up asked for. True when `settled` can follow.
    void present(QQuickWindow& window);
    // Whatever was asked for is on show, and has been drawn.
    bool isSettled() const { return framesSincePresent_ >= 2; }
    void frameShown();

  private:
    double startSeconds() const;
    void followPlayhead();
    void togglePlayback();
    void hoverNearest(QQuickWindow& window, double seconds);

    GalleryOptions options_;
    std::shared_ptr<const RecordingDetail> recording_;
    FreedesktopFileActions fileActions_;
    FakeVideoPlayer player_;
    GameTimelineModel timeline_;
    RecordingScoreboardModel scoreboard_;
    QTimer poll_;
    int framesSincePresent_ = -1;  // main thread; -1 before `present`
};

}  // namespace kestrum::gallery
