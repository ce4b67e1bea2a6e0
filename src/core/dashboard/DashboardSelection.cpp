#include "core/dashboard/DashboardSelection.h"

#include "core/dashboard/DashboardAwaitables.h"
#include "core/settings/SettingsReaders.h"

#include <QCoroFuture>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace kestrum {

namespace {

// Well under one frame at any frame rate we record: the player already shows the start's frame.
constexpr double kSameFrameSeconds = 1.0 / 120;

}  // namespace

double recordingStartTime(const RecordingDetail& detail) {
    const auto start = std::find_if(detail.events.begin(), detail.events.end(),
                                    [](const RecordingEvent& event) { return event.name == "GameStart"; });
    if (start == detail.events.end()) return 0;
    return std::max(start->videoTime - 1.0, 0.0);
}

// Follows the picture and the failures of the player on show; the player calls it from the event loop.
class DashboardSelection::PlayerWatch final : public VideoPlayerListener {
  public:
    explicit PlayerWatch(DashboardSelection& selection) : selection_(selection) {}
    ~PlayerWatch() override { watch(nullptr, {}); }
    PlayerWatch(const PlayerWatch&) = delete;
    PlayerWatch& operator=(const PlayerWatch&) = delete;

    void watch(std::shared_ptr<VideoPlayer> player, const QString& moviePath) {
        if (player_) player_->removeListener(*this);
        player_ = std::move(player);
        moviePath_ = moviePath;
        if (player_) player_->addListener(*this);
    }

    void readyForDisplayChanged(bool isReady) override { selection_.setVideoReady(isReady); }
    void playbackFailed(const QString& /*reason*/) override { selection_.markDamaged(moviePath_); }

  private:
    DashboardSelection& selection_;
    std::shared_ptr<VideoPlayer> player_;  // main thread
    QString moviePath_;                    // main thread
};

DashboardSelection::DashboardSelection(Collaborators collaborators, DashboardRecordingLoads loads,
                                       QObject* parent)
    : QObject(parent),
      c_(collaborators),
      loads_(std::move(loads)),
      preparedPlayers_(collaborators.playerFactory),
      watch_(std::make_unique<PlayerWatch>(*this)) {
    connect(&c_.library, &RecordingLibraryModel::selectedMatchChanged, this,
            &DashboardSelection::handleSelectionChange);
    connect(&c_.playback, &DashboardPlayback::isLoadingRecordingChanged, this,
            &DashboardSelection::movieStateChanged);
}

DashboardSelection::~DashboardSelection() {
    cancelJobs();
    for (const Job<void>& job : untrackedJobs_) job.cancel();
    watch_->watch(nullptr, {});
}

DashboardMovieState DashboardSelection::movieState() const {
    if (!c_.library.selectedMatch()) return DashboardMovieState::none;
    if (isMovieDamaged_) return DashboardMovieState::damaged;
    if (c_.playback.isLoadingRecording() || !isVideoReady_) return DashboardMovieState::loading;
    return DashboardMovieState::ready;
}

void DashboardSelection::stop() {
    cancelJobs();
    if (VideoPlayer* player = c_.playback.player()) player->pause();
    preparedPlayers_.clear();
    preparedStartSeconds_.clear();
    emit preparedPlayersChanged();
}

void DashboardSelection::resume() {
    const VideoPlayer* player = c_.playback.player();
    // Stopping emptied every player; the recording on show needs its movie back.
    if (c_.library.selectedMatch() && (!player || !player->currentItemPath())) handleSelectionChange();
}

void DashboardSelection::handleSelectionChange() {
    const std::uint64_t generation = ++selectionGeneration_;
    cancelJobs();
    if (VideoPlayer* player = c_.playback.player()) player->pause();
    emit selectionDidChange();
    const std::optional<MatchVideo> selected = c_.library.selectedMatch();
    watch_->watch(nullptr, {});
    isMovieDamaged_ = false;
    setVideoReady(false);
    if (!selected) {
        clearSelection();
        emit movieStateChanged();
        return;
    }
    const bool autoplay = autoplayRequestedMatchID_ == selected->url;
    autoplayRequestedMatchID_.reset();
    c_.playback.setRequestedIsPlaying(autoplay);
    c_.playback.setLoadingRecording(true);
    setThumbnail(std::nullopt);
    emit movieStateChanged();
    startThumbnailJob(generation, *selected);
    // The detail is read on the loader's threads while this thread makes the player and opens its movie.
    playerSetupTask_ = startPlayerJob(generation, *selected, autoplay, loads_.detail(*selected));
    startFocusJob();
}

void DashboardSelection::clearSelection() {
    c_.playback.setRequestedIsPlaying(false);
    c_.playback.setLoadingRecording(false);
    setThumbnail(std::nullopt);
    c_.timeline.setPlayer(nullptr);
    c_.playback.setPlayer(nullptr);
    clearRecordingDetail();
    c_.playback.setPlaybackRate(1.0);
}

void DashboardSelection::clearRecordingDetail() {
    c_.timeline.setRecording(nullptr);
    c_.scoreboard.setRecording(nullptr);
    c_.playback.setRecordingShape(0, DashboardPlayback::kDefaultAspectRatio);
    c_.playback.setCurrentTime(0);
    setHasRecordingDetail(false);
}

bool DashboardSelection::isCurrent(std::uint64_t generation, const CancellationToken& token,
                                   const MatchVideo& match) const {
    if (token.isCancelled() || generation != selectionGeneration_) return false;
    const std::optional<MatchVideo>& selected = c_.library.selectedMatch();
    return selected && selected->url == match.url;
}

void DashboardSelection::startThumbnailJob(std::uint64_t generation, const MatchVideo& match) {
    std::erase_if(untrackedJobs_, [](const Job<void>& job) { return job.isFinished(); });
    untrackedJobs_.push_back(
        Job<void>::start([this, generation, match](CancellationToken token) -> QCoro::Task<void> {
            QFuture<std::optional<QImage>> loading = loads_.thumbnail(match);
            std::optional<QImage> image = co_await loading;
            // Cancelled only when this goes: test the token before anything of this.
            if (token.isCancelled() || !isCurrent(generation, token, match)) co_return;
            if (image) setThumbnail(std::move(image));
        }));
}

void DashboardSelection::startFocusJob() {
    untrackedJobs_.push_back(Job<void>::start([this](CancellationToken token) -> QCoro::Task<void> {
        QCoro::Task<bool> yielding = yieldToEventLoop(token);
        const bool yielded = co_await yielding;
        if (!yielded || token.isCancelled()) co_return;
        emit playbackFocusRequested();
    }));
}

Job<void> DashboardSelection::startPlayerJob(std::uint64_t generation, const MatchVideo& match, bool autoplay,
                                             QFuture<DetailPointer> detail) {
    return Job<void>::start([this, generation, match, autoplay,
                             detail](CancellationToken token) -> QCoro::Task<void> {
        // The view shows the selection before the player is touched.
        QCoro::Task<bool> yielding = yieldToEventLoop(token);
        const bool yielded = co_await yielding;
        if (!yielded || token.isCancelled() || !isCurrent(generation, token, match)) co_return;
        DashboardPreparedPlayers::Prepared prepared = preparedPlayers_.playerFor(match.url);
        if (prepared.isNew) emit preparedPlayersChanged();
        VideoPlayer& player = *prepared.player;
        player.setVolume(readPlaybackVolume(c_.defaults));
        player.setMuted(readPlaybackMuted(c_.defaults));
        // The speed does not carry over from one recording to the next.
        c_.playback.setPlaybackRate(1.0);
        player.setDefaultRate(1.0);
        if (prepared.isNew && damagedMoviePaths_.remove(match.url)) emit recordingDamaged(match.url);
        adoptPlayer(prepared.player, match);
        if (detailLoadingTask_) detailLoadingTask_->cancel();
        clearRecordingDetail();
        detailLoadingTask_ =
            startDetailJob(generation, match, autoplay, detail, std::move(prepared.player), prepared.isNew);
    });
}

Job<void> DashboardSelection::startDetailJob(std::uint64_t generation, const MatchVideo& match, bool autoplay,
                                             QFuture<DetailPointer> detailLoading,
                                             std::shared_ptr<VideoPlayer> player, bool isNewPlayer) {
    return Job<void>::start([this, generation, match, autoplay, detailLoading, player,
                             isNewPlayer](CancellationToken token) -> QCoro::Task<void> {
        QFuture<std::shared_ptr<const RecordingDetail>> loading = detailLoading;
        const std::shared_ptr<const RecordingDetail> detail = co_await loading;
        if (token.isCancelled() || !isCurrent(generation, token, match)) co_return;
        // A detail that could not be loaded leaves the empty fields: the movie still plays from 0.
        if (detail) applyDetail(detail, match);
        const double start = detail ? recordingStartTime(*detail) : 0;
        c_.playback.setCurrentTime(start);
        player->pause();
        // A prepared player paused at the start shows its picture already: an exact seek would only
        // decode it again from the key frame before.
        const bool standsAtStart = !isNewPlayer && takePreparedStart(match.url) == start &&
                                   std::abs(player->currentTime() - start) < kSameFrameSeconds;
        if (!standsAtStart) {
            QCoro::Task<bool> seeking = seekAndWait(*player, start, VideoSeekTolerance::exact(), token);
            co_await seeking;
            if (token.isCancelled() || !isCurrent(generation, token, match)) co_return;
        }
        // A zero end would stop the movie at its start: a movie that could not be measured plays whole.
        if (player->currentItemPath() && detail && detail->duration > 0) {
            player->setForwardPlaybackEndTime(detail->duration);
        }
        if (autoplay && c_.playback.requestedIsPlaying()) {
            player->playImmediatelyAtRate(c_.playback.playbackRate());
        }
        c_.playback.setLoadingRecording(false);
        preparedPlayers_.prune(c_.library.visibleMatches(), c_.library.selectedMatch());
        // A start kept for a player pruned away would vouch for the next player of that movie.
        preparedStartSeconds_.removeIf([this](QHash<QString, double>::iterator entry) {
            return !preparedPlayers_.contains(entry.key());
        });
        emit preparedPlayersChanged();
        prepareNeighboursOncePictured();
    });
}

void DashboardSelection::prepareNeighboursOncePictured() {
    neighboursAwaitPicture_ = !isVideoReady_ && !isMovieDamaged_;
    if (neighboursAwaitPicture_) return;
    prepareNeighbours();
    emit preparedPlayersChanged();
}

void DashboardSelection::prepareNeighbours() {
    std::erase_if(preparationJobs_, [](const Job<void>& job) { return job.isFinished(); });
    const std::optional<MatchVideo>& selected = c_.library.selectedMatch();
    if (!selected) return;
    const std::vector<MatchVideo> displayed = c_.library.visibleMatches();
    const auto position = std::find_if(displayed.begin(), displayed.end(),
                                       [&](const MatchVideo& match) { return match.url == selected->url; });
    if (position == displayed.end()) return;
    const std::ptrdiff_t index = position - displayed.begin();
    const auto count = static_cast<std::ptrdiff_t>(displayed.size());
    for (const std::ptrdiff_t neighbour : {index - 1, index + 1}) {
        if (neighbour < 0 || neighbour >= count) continue;
        const MatchVideo& match = displayed[static_cast<std::size_t>(neighbour)];
        if (damagedMoviePaths_.contains(match.url)) continue;
        // Already paused at its start by an earlier preparation.
        if (preparedStartSeconds_.contains(preparedPlayerKey(match.url))) continue;
        DashboardPreparedPlayers::Prepared prepared = preparedPlayers_.playerFor(match.url);
        // A movie that cannot be opened says so when it is selected.
        if (!prepared.player->currentItemPath()) continue;
        preparationJobs_.push_back(startPreparationJob(match, std::move(prepared.player)));
    }
}

Job<void> DashboardSelection::startPreparationJob(const MatchVideo& match,
                                                  std::shared_ptr<VideoPlayer> player) {
    return Job<void>::start([this, match, player](CancellationToken token) -> QCoro::Task<void> {
        QFuture<std::shared_ptr<const RecordingDetail>> loading = loads_.detail(match);
        const std::shared_ptr<const RecordingDetail> detail = co_await loading;
        if (token.isCancelled()) co_return;
        player->pause();
        const double start = detail ? recordingStartTime(*detail) : 0;
        QCoro::Task<bool> seeking = seekAndWait(*player, start, VideoSeekTolerance::exact(), token);
        const bool landed = co_await seeking;
        if (landed && !token.isCancelled()) preparedStartSeconds_.insert(preparedPlayerKey(match.url), start);
    });
}

std::optional<double> DashboardSelection::takePreparedStart(const QString& moviePath) {
    const auto found = preparedStartSeconds_.constFind(preparedPlayerKey(moviePath));
    if (found == preparedStartSeconds_.constEnd()) return std::nullopt;
    const double start = found.value();
    preparedStartSeconds_.erase(found);
    return start;
}

void DashboardSelection::adoptPlayer(const std::shared_ptr<VideoPlayer>& player, const MatchVideo& match) {
    watch_->watch(player, match.url);
    c_.timeline.setPlayer(player.get());
    c_.playback.setPlayer(player);
    setVideoReady(player->isReadyForDisplay());
    if (!player->currentItemPath() || damagedMoviePaths_.contains(match.url)) markDamaged(match.url);
}

void DashboardSelection::applyDetail(const std::shared_ptr<const RecordingDetail>& detail,
                                     const MatchVideo& match) {
    c_.playback.setRecordingShape(detail->duration, detail->aspectRatio);
    c_.timeline.setRecording(detail);
    c_.scoreboard.setRecording(detail);
    setHasRecordingDetail(true);
    c_.scoreboard.setLocalPlayer(
        {match.championAssetName ? match.championAssetName : match.champion, match.role});
}

void DashboardSelection::setThumbnail(std::optional<QImage> image) {
    // A picture that failed to decode is no thumbnail: the overlay then shows the text alone.
    if (image && image->isNull()) image.reset();
    if (!image && !recordingThumbnail_) return;
    recordingThumbnail_ = std::move(image);
    ++thumbnailSerial_;
    emit thumbnailChanged();
}

void DashboardSelection::setHasRecordingDetail(bool has) {
    if (has == hasRecordingDetail_) return;
    hasRecordingDetail_ = has;
    emit movieStateChanged();
}

void DashboardSelection::setVideoReady(bool ready) {
    if (ready == isVideoReady_) return;
    isVideoReady_ = ready;
    emit movieStateChanged();
    if (ready && neighboursAwaitPicture_) prepareNeighboursOncePictured();
}

void DashboardSelection::markDamaged(const QString& moviePath) {
    const bool isNewMark = !damagedMoviePaths_.contains(moviePath);
    damagedMoviePaths_.insert(moviePath);
    if (isNewMark) emit recordingDamaged(moviePath);
    const std::optional<MatchVideo>& selected = c_.library.selectedMatch();
    if (!selected || selected->url != moviePath || isMovieDamaged_) return;
    isMovieDamaged_ = true;
    emit movieStateChanged();
    if (neighboursAwaitPicture_) prepareNeighboursOncePictured();
}

void DashboardSelection::cancelJobs() {
    neighboursAwaitPicture_ = false;
    if (playerSetupTask_) playerSetupTask_->cancel();
    if (detailLoadingTask_) detailLoadingTask_->cancel();
    playerSetupTask_.reset();
    detailLoadingTask_.reset();
    for (const Job<void>& job : preparationJobs_) job.cancel();
    preparationJobs_.clear();
}

}  // namespace kestrum
