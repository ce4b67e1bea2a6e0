#pragma once

#include "base/async/Clock.h"
#include "core/dashboard/DashboardPlayback.h"
#include "core/review/DelayedActions.h"
#include "core/review/ReviewRowListModel.h"
#include "platform/ports/VideoPlayer.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace kestrum {

// The movie's surface with its optional controls: it knows nothing of recordings, only the player on
// show, the duration and the current time (both the review window's), and it reports clicks, seeks and
// changes as signals.
//
// Clicks: a single click waits out the double-click interval before it counts, so a double click never
// toggles playback on its way; the double click is reported once and the single click not at all.
// A single click is an interaction and the play/pause action: a playing player pauses; otherwise a
// current time at or past a positive duration seeks to 0 first, then the player plays.
//
// The scrubber runs from 0 to the larger of the duration and 0.01; it reads the current time kept within
// 0 and the duration (a negative duration counting as 0). A seek needs a finite positive duration; it
// keeps the time within 0 and the duration.
//
// End of play: the player on show pausing at its end makes the surface not playing and puts the current
// time at the duration; a notice from a player no longer on show changes nothing. Nothing loops.
//
// `speedRates` roles: "rate", "label" ("%g×"), "isSelected".
//
// Threads: the main thread; the click delay runs on the Clock. The playback and the clock must outlive it.
class VideoPlayerSurfaceModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(double playbackRate READ playbackRate NOTIFY playbackRateChanged)
    Q_PROPERTY(double scrubberMaximum READ scrubberMaximum NOTIFY timesChanged)
    Q_PROPERTY(double scrubberValue READ scrubberValue NOTIFY timesChanged)
    Q_PROPERTY(QString currentTimeText READ currentTimeText NOTIFY timesChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY timesChanged)
    Q_PROPERTY(QString timeSeparator READ timeSeparator CONSTANT)
    Q_PROPERTY(QString positionAccessibilityLabel READ positionAccessibilityLabel CONSTANT)
    Q_PROPERTY(QString positionAccessibilityValue READ positionAccessibilityValue NOTIFY timesChanged)
    Q_PROPERTY(QString playPauseSymbol READ playPauseSymbol NOTIFY isPlayingChanged)
    Q_PROPERTY(QString playPauseHelp READ playPauseHelp NOTIFY isPlayingChanged)
    Q_PROPERTY(double playPauseWidth READ playPauseWidth CONSTANT)
    Q_PROPERTY(QString backSymbol READ backSymbol CONSTANT)
    Q_PROPERTY(QString backHelp READ backHelp CONSTANT)
    Q_PROPERTY(QString forwardSymbol READ forwardSymbol CONSTANT)
    Q_PROPERTY(QString forwardHelp READ forwardHelp CONSTANT)
    Q_PROPERTY(QString speedHelp READ speedHelp CONSTANT)
    Q_PROPERTY(kestrum::ReviewRowListModel* speedRates READ speedRates CONSTANT)
    Q_PROPERTY(int doubleClickIntervalMs READ doubleClickIntervalMs WRITE setDoubleClickIntervalMs NOTIFY
                   doubleClickIntervalChanged)

  public:
    static constexpr double kMinimumScrubberRange = 0.01;
    static constexpr double kSkipSeconds = 5;

    VideoPlayerSurfaceModel(DashboardPlayback& playback, Clock& clock, QObject* parent = nullptr);
    ~VideoPlayerSurfaceModel() override;

    bool isPlaying() const { return isPlaying_; }
    double playbackRate() const { return playbackRate_; }
    double scrubberMaximum() const;
    double scrubberValue() const;
    QString currentTimeText() const;
    QString durationText() const;
    QString timeSeparator() const { return QStringLiteral(" / "); }
    QString positionAccessibilityLabel() const { return QStringLiteral("Playback position"); }
    QString positionAccessibilityValue() const;
    QString playPauseSymbol() const;
    QString playPauseHelp() const;
    double playPauseWidth() const { return 18; }
    QString backSymbol() const { return QStringLiteral("gobackward.5"); }
    QString backHelp() const { return QStringLiteral("Back 5 seconds (Left Arrow)"); }
    QString forwardSymbol() const { return QStringLiteral("goforward.5"); }
    QString forwardHelp() const { return QStringLiteral("Forward 5 seconds (Right Arrow)"); }
    QString speedHelp() const { return QStringLiteral("Playback speed"); }
    ReviewRowListModel* speedRates() const { return speedRates_; }
    int doubleClickIntervalMs() const { return doubleClickIntervalMs_; }
    void setDoubleClickIntervalMs(int intervalMs);

    // A mouse press on the surface with the platform's click count (1, 2, ...).
    Q_INVOKABLE void mouseDown(int clickCount);
    Q_INVOKABLE void seek(double seconds);
    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void skipBackward() { seek(playback_.currentTime() - kSkipSeconds); }
    Q_INVOKABLE void skipForward() { seek(playback_.currentTime() + kSkipSeconds); }
    Q_INVOKABLE void selectRate(double rate);

  signals:
    void isPlayingChanged();
    void playbackRateChanged();
    void timesChanged();
    void doubleClickIntervalChanged();
    void seeked(double seconds);
    void playingChanged(bool isPlaying);
    void rateChanged(double rate);
    void doubleClicked();
    void interacted();
    // The player's picture is ready: the review window hands keyboard focus to the surface.
    void readyForDisplay();

  private:
    class Listener;

    void followPlayer();
    void setPlaying(bool playing);
    void publishRates();

    DashboardPlayback& playback_;
    std::unique_ptr<Listener> listener_;
    // All main thread.
    std::shared_ptr<VideoPlayer> player_;
    bool isPlaying_ = false;
    double playbackRate_ = 1;
    int doubleClickIntervalMs_ = 400;
    std::optional<Job<void>> pendingSingleClick_;
    ReviewRowListModel* speedRates_;  // child
    DelayedActions delays_;           // last: cancelled before the fields above go
};

}  // namespace kestrum
