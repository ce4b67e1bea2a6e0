#pragma once

#include "base/async/Clock.h"
#include "core/library/detail/RecordingDetail.h"
#include "core/review/DelayedActions.h"
#include "core/review/PlaybackControlAnimationRequest.h"
#include "core/review/PlaybackVolumeModel.h"
#include "core/review/ReviewRowListModel.h"
#include "core/review/TimelineHoverCard.h"
#include "core/review/TimelineSeeker.h"
#include "core/review/TimelineTrack.h"
#include "core/review/TimelineTrackGesture.h"
#include "core/settings/UserDefaults.h"
#include "platform/ports/VideoPlayer.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// Everything the timeline strip under the movie shows and does, for a view that only binds and forwards:
// the play button, the time texts, the track's markers and hover card, the seeks of clicks and drags, the
// filter and speed pop-ups and the volume control. The track's markers are a plain list for one painted
// item (`markers(width)`); the rest are properties.
//
// Inputs: the recording (setRecording), the player (setPlayer), and the two-way `currentTime` and
// `playbackRate` that the review window also writes (its 20 Hz poll of the player, its keys). Outputs to
// the review window, as signals: `seeked(time)` for every seek sent to the player, `interacted()` before
// every seek, `playbackToggleRequested()` from the play button, `playbackEnded()` when the player played
// to its end, and `playbackRateSelected(rate)` from the speed pop-up.
//
// List roles: `filters`: "group" ("Events" or "Players"), "label", "rawWord", "isChecked";
// `playbackRates`: "rate", "label", "isSelected".
//
// Threads: the main thread; the held-back seeks of a drag and the brief displays of the speed and volume
// run on the Clock. The store, the clock and the player (while set) must outlive the model.
class GameTimelineModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(double currentTime READ currentTime WRITE setCurrentTime NOTIFY currentTimeChanged)
    Q_PROPERTY(double duration READ duration NOTIFY recordingChanged)
    Q_PROPERTY(double progress READ progress NOTIFY currentTimeChanged)
    Q_PROPERTY(QString currentTimeText READ currentTimeText NOTIFY currentTimeChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY recordingChanged)

    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(QString playButtonToolTip READ playButtonToolTip NOTIFY isPlayingChanged)
    Q_PROPERTY(QString playButtonSymbolName READ playButtonSymbolName NOTIFY isPlayingChanged)

    Q_PROPERTY(double playbackRate READ playbackRate WRITE setPlaybackRate NOTIFY playbackRateChanged)
    Q_PROPERTY(QString playbackRateText READ playbackRateText NOTIFY playbackRateChanged)
    Q_PROPERTY(QString playbackRateToolTip READ playbackRateToolTip CONSTANT)
    Q_PROPERTY(double playbackRateRowHeight READ playbackRateRowHeight CONSTANT)
    Q_PROPERTY(kestrum::ReviewRowListModel* playbackRates READ playbackRates CONSTANT)
    Q_PROPERTY(bool isPlaybackRatePresented READ isPlaybackRatePresented WRITE setPlaybackRatePresented NOTIFY
                   presentationChanged)
    Q_PROPERTY(bool isPlaybackRateAnimating READ isPlaybackRateAnimating NOTIFY animationChanged)
    Q_PROPERTY(QString animatedPlaybackRateText READ animatedPlaybackRateText NOTIFY animationChanged)

    Q_PROPERTY(kestrum::PlaybackVolumeModel* volume READ volume CONSTANT)
    Q_PROPERTY(bool isVolumeAnimating READ isVolumeAnimating NOTIFY animationChanged)
    Q_PROPERTY(
        bool isVolumePresented READ isVolumePresented WRITE setVolumePresented NOTIFY volumePopUpChanged)
    Q_PROPERTY(bool showsVolumePopUp READ showsVolumePopUp NOTIFY volumePopUpChanged)

    Q_PROPERTY(kestrum::ReviewRowListModel* filters READ filters CONSTANT)
    Q_PROPERTY(QString filterTitle READ filterTitle CONSTANT)
    Q_PROPERTY(QString eventsGroupTitle READ eventsGroupTitle CONSTANT)
    Q_PROPERTY(QString playersGroupTitle READ playersGroupTitle CONSTANT)
    Q_PROPERTY(QString resetFiltersTitle READ resetFiltersTitle CONSTANT)
    Q_PROPERTY(bool canResetFilters READ canResetFilters NOTIFY filtersChanged)
    Q_PROPERTY(bool isTimelineFilterPresented READ isTimelineFilterPresented WRITE setTimelineFilterPresented
                   NOTIFY presentationChanged)

    Q_PROPERTY(int markerCount READ markerCount NOTIFY markersChanged)
    Q_PROPERTY(bool hasHoveredEvent READ hasHoveredEvent NOTIFY hoverChanged)
    Q_PROPERTY(qint64 hoveredEventID READ hoveredEventID NOTIFY hoverChanged)
    Q_PROPERTY(kestrum::TimelineHoverCard* hoverCard READ hoverCard CONSTANT)

    Q_PROPERTY(double laneCenter READ laneCenter CONSTANT)
    Q_PROPERTY(double timelineControlHeight READ timelineControlHeight CONSTANT)
    Q_PROPERTY(double timestampGutterCenter READ timestampGutterCenter CONSTANT)

  public:
    // How long a keyboard change of the speed or the volume keeps its control on show.
    static constexpr std::chrono::milliseconds kPlaybackRateAnimationDuration{900};
    static constexpr std::chrono::milliseconds kVolumeAnimationDuration{1200};

    GameTimelineModel(UserDefaults& defaults, Clock& clock, QObject* parent = nullptr);
    ~GameTimelineModel() override;

    // A new recording (null for none): its events, scoreboard and duration. The filters stay.
    void setRecording(std::shared_ptr<const RecordingDetail> recording);
    // The player that seeks, speed and volume go to, and whose status and end the strip follows; null for
    // none.
    void setPlayer(VideoPlayer* player);
    // What the review window wants while the player catches up; absent: the player's own status.
    void setOptimisticIsPlaying(std::optional<bool> isPlaying);
    // A keyboard change of the speed or the volume: shows the control briefly.
    void showPlaybackRateAnimation(const PlaybackControlAnimationRequest& request);
    void showVolumeAnimation(const PlaybackControlAnimationRequest& request);

    // The markers to draw at track width `width` (cached per width; valid until markersChanged).
    const std::vector<TimelineMarker>& markers(double width) { return track_.markers(width); }
    const TimelineTrack& track() const { return track_; }

    double currentTime() const { return currentTime_; }
    void setCurrentTime(double seconds);
    double duration() const { return track_.durationSeconds(); }
    double progress() const;
    QString currentTimeText() const;
    QString durationText() const;

    bool isPlaying() const;
    QString playButtonToolTip() const;
    QString playButtonSymbolName() const;

    double playbackRate() const { return playbackRate_; }
    void setPlaybackRate(double rate);
    QString playbackRateText() const;
    QString playbackRateToolTip() const;
    double playbackRateRowHeight() const;
    ReviewRowListModel* playbackRates() const { return playbackRates_; }
    bool isPlaybackRatePresented() const { return isPlaybackRatePresented_; }
    void setPlaybackRatePresented(bool presented);
    bool isPlaybackRateAnimating() const { return playbackRateAnimation_.has_value(); }
    QString animatedPlaybackRateText() const;

    PlaybackVolumeModel* volume() const { return volume_; }
    bool isVolumeAnimating() const { return volumeAnimation_.has_value(); }
    // The vertical volume pop-up: presented by the user (or a tool), and shown while presented or while a
    // keyboard change of the volume is on show.
    bool isVolumePresented() const { return isVolumePresented_; }
    void setVolumePresented(bool presented);
    bool showsVolumePopUp() const { return isVolumePresented_ || isVolumeAnimating(); }

    ReviewRowListModel* filters() const { return filters_; }
    QString filterTitle() const { return QStringLiteral("Timeline filters"); }
    QString eventsGroupTitle() const { return QStringLiteral("Events"); }
    QString playersGroupTitle() const { return QStringLiteral("Players"); }
    QString resetFiltersTitle() const { return QStringLiteral("Reset Filters"); }
    bool canResetFilters() const { return !track_.filters().isAtDefaults(); }
    bool isTimelineFilterPresented() const { return isTimelineFilterPresented_; }
    void setTimelineFilterPresented(bool presented);

    int markerCount() const { return static_cast<int>(track_.visibleIndices().size()); }
    bool hasHoveredEvent() const { return track_.hoveredEventID().has_value(); }
    qint64 hoveredEventID() const { return track_.hoveredEventID().value_or(-1); }
    TimelineHoverCard* hoverCard() const { return hoverCard_; }

    double laneCenter() const;
    double timelineControlHeight() const;
    double timestampGutterCenter() const;

    // The pointer over the track at (x, y), the track being `width` wide; and the pointer leaving it.
    Q_INVOKABLE void hover(double x, double y, double width);
    Q_INVOKABLE void leave();
    // A click on the track: on a marker, that marker's click; elsewhere, an exact seek to the time there.
    Q_INVOKABLE void clickTrack(double x, double y, double width);
    // A click on a marker: an exact seek 5 seconds before its event.
    Q_INVOKABLE void clickMarker(qint64 eventID);
    Q_INVOKABLE void seek(double time);
    Q_INVOKABLE void scrub(double time);
    Q_INVOKABLE void finishScrub(double time);
    // A drag on the track at x, and its end, the track being `width` wide.
    Q_INVOKABLE void scrubAtTrackPosition(double x, double width);
    Q_INVOKABLE void finishScrubAtTrackPosition(double x, double width);
    Q_INVOKABLE double timeAtTrackPosition(double x, double width) const;
    // The raw pointer on the track, `width` wide: a press, a move with the button held, the release, and
    // the pointer taken away. A press released in place is `clickTrack`; one that moved is a drag that
    // scrubs and ends with the exact seek of its last position (TimelineTrackGesture).
    Q_INVOKABLE void pressTrack(double x, double y, double width);
    Q_INVOKABLE void moveTrack(double x, double y, double width);
    Q_INVOKABLE void releaseTrack(double x, double y, double width);
    Q_INVOKABLE void cancelTrackGesture(double width);

    // Toggles the filter of a row of `filters`; resets both sets to their defaults.
    Q_INVOKABLE void toggleFilter(int row);
    Q_INVOKABLE void resetFilters();
    // A speed from the pop-up: the rate, the player's default rate, and its rate if it is playing.
    Q_INVOKABLE void selectPlaybackRate(double rate);
    Q_INVOKABLE void togglePlayback();

  signals:
    void currentTimeChanged();
    void recordingChanged();
    void isPlayingChanged();
    void playbackRateChanged();
    void presentationChanged();
    void animationChanged();
    void filtersChanged();
    void markersChanged();
    void hoverChanged();
    void volumePopUpChanged();
    void seeked(double time);
    void interacted();
    void playbackToggleRequested();
    void playbackEnded();
    void playbackRateSelected(double rate);

  private:
    class PlayerListener;

    void setFilterSet(const TimelineFilterSet& filters);
    void publishFilters();
    void publishPlaybackRates();
    void publishHover();
    void setPlayerStatus(VideoPlayerTimeControlStatus status);
    void handlePlayedToEnd();
    void perform(const TimelineTrackGesture::Action& action, double width);
    // Shows `request` in `slot` until `duration` has passed or a newer request replaces it.
    void animate(std::optional<PlaybackControlAnimationRequest>& slot,
                 const PlaybackControlAnimationRequest& request, Clock::Duration duration);

    // All main thread.
    TimelineTrack track_;
    double currentTime_ = 0;
    double playbackRate_ = 1;
    VideoPlayer* player_ = nullptr;  // not owned
    VideoPlayerTimeControlStatus playerStatus_ = VideoPlayerTimeControlStatus::paused;
    std::optional<bool> optimisticIsPlaying_;
    bool isPlaybackRatePresented_ = false;
    bool isTimelineFilterPresented_ = false;
    bool isVolumePresented_ = false;
    TimelineTrackGesture trackGesture_;
    std::optional<PlaybackControlAnimationRequest> playbackRateAnimation_;
    std::optional<PlaybackControlAnimationRequest> volumeAnimation_;
    std::unique_ptr<PlayerListener> playerListener_;
    ReviewRowListModel* filters_;        // child
    ReviewRowListModel* playbackRates_;  // child
    PlaybackVolumeModel* volume_;        // child
    TimelineHoverCard* hoverCard_;       // child
    TimelineSeeker seeker_;
    DelayedActions delays_;  // last: cancelled before the fields above go
};

}  // namespace kestrum
