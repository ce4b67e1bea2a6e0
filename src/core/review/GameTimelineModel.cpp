#include "core/review/GameTimelineModel.h"

#include "core/review/PlaybackControlTexts.h"
#include "core/review/ReviewTimeText.h"
#include "core/review/TimelineMarkerLayout.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrum {

namespace {

// The filter pop-up's rows: the event classes, then the actors.
constexpr int kFilterRowCount = static_cast<int>(kTimelineEventFilters.size() + kTimelineActorFilters.size());

QString fromView(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

// Follows the player's status and end of play; the player calls it from the event loop.
class GameTimelineModel::PlayerListener final : public VideoPlayerListener {
  public:
    explicit PlayerListener(GameTimelineModel& model) : model_(model) {}
    void timeControlStatusChanged(VideoPlayerTimeControlStatus status) override {
        model_.setPlayerStatus(status);
    }
    void didPlayToEndTime() override { model_.handlePlayedToEnd(); }

  private:
    GameTimelineModel& model_;
};

GameTimelineModel::GameTimelineModel(UserDefaults& defaults, Clock& clock, QObject* parent)
    : QObject(parent),
      playerListener_(std::make_unique<PlayerListener>(*this)),
      filters_(new ReviewRowListModel({"group", "label", "rawWord", "isChecked"}, this)),
      playbackRates_(new ReviewRowListModel({"rate", "label", "isSelected"}, this)),
      volume_(new PlaybackVolumeModel(defaults, this)),
      hoverCard_(new TimelineHoverCard(this)),
      seeker_(clock, {[this] { emit interacted(); }, [this](double time) { setCurrentTime(time); },
                      [this](double time) { emit seeked(time); }}),
      delays_(clock) {
    publishFilters();
    publishPlaybackRates();
}

GameTimelineModel::~GameTimelineModel() {
    if (player_) player_->removeListener(*playerListener_);
}

void GameTimelineModel::setRecording(std::shared_ptr<const RecordingDetail> recording) {
    track_.setRecording(std::move(recording));
    seeker_.setDurationSeconds(track_.durationSeconds());
    emit recordingChanged();
    emit currentTimeChanged();  // the progress depends on the duration
    emit markersChanged();
    publishHover();
}

void GameTimelineModel::setPlayer(VideoPlayer* player) {
    if (player == player_) return;
    if (player_) player_->removeListener(*playerListener_);
    player_ = player;
    seeker_.setPlayer(player);
    volume_->setPlayer(player);
    if (player_) player_->addListener(*playerListener_);
    setPlayerStatus(player_ ? player_->timeControlStatus() : VideoPlayerTimeControlStatus::paused);
}

void GameTimelineModel::setOptimisticIsPlaying(std::optional<bool> isPlaying) {
    const bool before = this->isPlaying();
    optimisticIsPlaying_ = isPlaying;
    if (this->isPlaying() != before) emit isPlayingChanged();
}

void GameTimelineModel::showPlaybackRateAnimation(const PlaybackControlAnimationRequest& request) {
    animate(playbackRateAnimation_, request, kPlaybackRateAnimationDuration);
}

void GameTimelineModel::showVolumeAnimation(const PlaybackControlAnimationRequest& request) {
    const bool shown = showsVolumePopUp();
    animate(volumeAnimation_, request, kVolumeAnimationDuration);
    if (showsVolumePopUp() != shown) emit volumePopUpChanged();
}

void GameTimelineModel::setVolumePresented(bool presented) {
    if (presented == isVolumePresented_) return;
    isVolumePresented_ = presented;
    emit volumePopUpChanged();
}

void GameTimelineModel::setCurrentTime(double seconds) {
    if (seconds == currentTime_ || std::isnan(seconds)) return;
    currentTime_ = seconds;
    emit currentTimeChanged();
}

double GameTimelineModel::progress() const {
    const double duration = track_.durationSeconds();
    if (!(duration > 0)) return 0;
    return std::clamp(currentTime_ / duration, 0.0, 1.0);
}

QString GameTimelineModel::currentTimeText() const {
    return playheadTimeText(currentTime_, track_.durationSeconds());
}

QString GameTimelineModel::durationText() const {
    return formatTime(track_.durationSeconds());
}

bool GameTimelineModel::isPlaying() const {
    return optimisticIsPlaying_.value_or(playerStatus_ == VideoPlayerTimeControlStatus::playing);
}

QString GameTimelineModel::playButtonToolTip() const {
    return kestrum::playButtonToolTip(isPlaying());
}

QString GameTimelineModel::playButtonSymbolName() const {
    return kestrum::playButtonSymbolName(isPlaying());
}

void GameTimelineModel::setPlaybackRate(double rate) {
    if (rate == playbackRate_ || !(rate > 0)) return;
    playbackRate_ = rate;
    publishPlaybackRates();
    emit playbackRateChanged();
}

QString GameTimelineModel::playbackRateText() const {
    return playbackRateLabel(playbackRate_);
}

QString GameTimelineModel::playbackRateToolTip() const {
    return kPlaybackRateToolTip;
}

double GameTimelineModel::playbackRateRowHeight() const {
    return kPlaybackRateRowHeight;
}

void GameTimelineModel::setPlaybackRatePresented(bool presented) {
    if (presented == isPlaybackRatePresented_) return;
    isPlaybackRatePresented_ = presented;
    emit presentationChanged();
}

QString GameTimelineModel::animatedPlaybackRateText() const {
    return playbackRateLabel(playbackRateAnimation_ ? playbackRateAnimation_->newValue : playbackRate_);
}

void GameTimelineModel::setTimelineFilterPresented(bool presented) {
    if (presented == isTimelineFilterPresented_) return;
    isTimelineFilterPresented_ = presented;
    emit presentationChanged();
}

double GameTimelineModel::laneCenter() const {
    return timelineLayout::laneCenter;
}

double GameTimelineModel::timelineControlHeight() const {
    return timelineLayout::timelineControlHeight;
}

double GameTimelineModel::timestampGutterCenter() const {
    return timelineLayout::timestampGutterCenter;
}

void GameTimelineModel::hover(double x, double y, double width) {
    if (track_.hover(x, y, width)) publishHover();
}

void GameTimelineModel::leave() {
    if (track_.leave()) publishHover();
}

void GameTimelineModel::clickTrack(double x, double y, double width) {
    const std::vector<TimelineMarker>& laidOut = track_.markers(width);
    if (const std::optional<std::size_t> hit = hitTimelineMarker(laidOut, x, y)) {
        clickMarker(laidOut[*hit].eventID);
        return;
    }
    seek(timeAtTrackPosition(x, width));
}

void GameTimelineModel::clickMarker(qint64 eventID) {
    const std::optional<std::size_t> index = track_.eventIndex(eventID);
    if (!index) return;
    seek(track_.events()[*index].videoTime - timelineLayout::eventPreRollSeconds);
}

void GameTimelineModel::seek(double time) {
    seeker_.seek(time);
}

void GameTimelineModel::scrub(double time) {
    seeker_.scrub(time);
}

void GameTimelineModel::finishScrub(double time) {
    seeker_.finishScrub(time);
}

void GameTimelineModel::scrubAtTrackPosition(double x, double width) {
    scrub(timeAtTrackPosition(x, width));
}

void GameTimelineModel::finishScrubAtTrackPosition(double x, double width) {
    finishScrub(timeAtTrackPosition(x, width));
}

double GameTimelineModel::timeAtTrackPosition(double x, double width) const {
    return kestrum::timeAtTrackPosition(x, width, track_.durationSeconds());
}

void GameTimelineModel::pressTrack(double x, double y, double /*width*/) {
    trackGesture_.press(x, y);
}

void GameTimelineModel::moveTrack(double x, double y, double width) {
    perform(trackGesture_.move(x, y), width);
}

void GameTimelineModel::releaseTrack(double x, double y, double width) {
    perform(trackGesture_.release(x, y), width);
}

void GameTimelineModel::cancelTrackGesture(double width) {
    perform(trackGesture_.cancel(), width);
}

void GameTimelineModel::perform(const TimelineTrackGesture::Action& action, double width) {
    using Kind = TimelineTrackGesture::Action::Kind;
    switch (action.kind) {
        case Kind::none:
            return;
        case Kind::click:
            clickTrack(action.x, action.y, width);
            return;
        case Kind::scrub:
            scrubAtTrackPosition(action.x, width);
            return;
        case Kind::finishScrub:
            finishScrubAtTrackPosition(action.x, width);
            return;
    }
}

void GameTimelineModel::toggleFilter(int row) {
    if (row < 0 || row >= kFilterRowCount) return;
    TimelineFilterSet filters = track_.filters();
    const auto eventRows = static_cast<int>(kTimelineEventFilters.size());
    if (row < eventRows) {
        filters.toggle(kTimelineEventFilters[static_cast<std::size_t>(row)]);
    } else {
        filters.toggle(kTimelineActorFilters[static_cast<std::size_t>(row - eventRows)]);
    }
    setFilterSet(filters);
}

void GameTimelineModel::resetFilters() {
    setFilterSet(TimelineFilterSet());
}

void GameTimelineModel::selectPlaybackRate(double rate) {
    if (!(rate > 0)) return;
    setPlaybackRate(rate);
    if (player_) {
        player_->setDefaultRate(rate);
        if (player_->timeControlStatus() == VideoPlayerTimeControlStatus::playing) player_->setRate(rate);
    }
    setPlaybackRatePresented(false);
    emit playbackRateSelected(rate);
}

void GameTimelineModel::togglePlayback() {
    emit playbackToggleRequested();
}

void GameTimelineModel::setFilterSet(const TimelineFilterSet& filters) {
    if (filters == track_.filters()) return;
    const bool hadHover = track_.hoveredEventID().has_value();
    track_.setFilters(filters);
    publishFilters();
    emit filtersChanged();
    emit markersChanged();
    if (hadHover != track_.hoveredEventID().has_value()) publishHover();
}

void GameTimelineModel::publishFilters() {
    const TimelineFilterSet& filters = track_.filters();
    std::vector<ReviewRowListModel::Row> rows;
    for (const TimelineEventFilter filter : kTimelineEventFilters) {
        rows.push_back(
            {eventsGroupTitle(), filterLabel(filter), fromView(rawWord(filter)), filters.contains(filter)});
    }
    for (const TimelineActorFilter actor : kTimelineActorFilters) {
        rows.push_back(
            {playersGroupTitle(), filterLabel(actor), fromView(rawWord(actor)), filters.contains(actor)});
    }
    filters_->setRows(std::move(rows));
}

void GameTimelineModel::publishPlaybackRates() {
    playbackRates_->setRows(playbackRateRows(playbackRate_));
}

void GameTimelineModel::publishHover() {
    const std::optional<TimelineMarker> marker = track_.hoveredMarker();
    hoverCard_->show(track_.hoveredCard(), marker ? marker->x : 0);
    emit hoverChanged();
}

void GameTimelineModel::setPlayerStatus(VideoPlayerTimeControlStatus status) {
    const bool before = isPlaying();
    playerStatus_ = status;
    if (isPlaying() != before) emit isPlayingChanged();
}

void GameTimelineModel::handlePlayedToEnd() {
    setPlayerStatus(VideoPlayerTimeControlStatus::paused);
    if (track_.durationSeconds() > 0) setCurrentTime(track_.durationSeconds());
    emit playbackEnded();
}

void GameTimelineModel::animate(std::optional<PlaybackControlAnimationRequest>& slot,
                                const PlaybackControlAnimationRequest& request, Clock::Duration duration) {
    slot = request;
    emit animationChanged();
    delays_.after(duration, [this, &slot, id = request.id] {
        if (!slot || slot->id != id) return;  // a newer request has its own time on show
        const bool shown = showsVolumePopUp();
        slot.reset();
        emit animationChanged();
        if (showsVolumePopUp() != shown) emit volumePopUpChanged();
    });
}

}  // namespace kestrum
