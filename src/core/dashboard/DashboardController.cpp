#include "core/dashboard/DashboardController.h"

#include "core/dashboard/DashboardGuide.h"
#include "core/dashboard/DashboardTexts.h"
#include "core/notifications/RecordingNotifications.h"
#include "core/recording/RecordingFolderStore.h"

#include <utility>

namespace kestrum {

struct DashboardController::Owned {
    std::unique_ptr<RecordingDetailLoader> loader;
    std::unique_ptr<RecordingLibraryModel> library;
};

DashboardController::DashboardController(Services services, const std::optional<QString>& folderPath,
                                         QObject* parent)
    : DashboardController(services,
                          std::make_unique<Owned>(
                              Owned{std::make_unique<RecordingDetailLoader>(),
                                    std::make_unique<RecordingLibraryModel>(services.defaults, folderPath)}),
                          nullptr, std::nullopt, folderPath, parent) {}

DashboardController::DashboardController(Services services, RecordingLibraryModel& library,
                                         DashboardRecordingLoads loads,
                                         const std::optional<QString>& folderPath, QObject* parent)
    : DashboardController(services, nullptr, &library, std::move(loads), folderPath, parent) {}

DashboardController::DashboardController(Services services, std::unique_ptr<Owned> owned,
                                         RecordingLibraryModel* library,
                                         std::optional<DashboardRecordingLoads> loads,
                                         const std::optional<QString>& folderPath, QObject* parent)
    : QObject(parent),
      services_(services),
      owned_(std::move(owned)),
      library_(library ? *library : *owned_->library),
      tabKeyMonitor_([this](bool pressed) { setTabScoreboardPressed(pressed); }),
      recordingsFolder_(folderPath) {
    makeParts(loads ? std::move(*loads) : DashboardRecordingLoads::from(*owned_->loader));
    wireReview();
    wireSelection();
    savedObserver_ = services_.notifications.observe(RecordingNotifications::recordingSaved, this,
                                                     [this](const QVariantMap&) { refreshLibrary(); });
}

DashboardController::~DashboardController() {
    savedObserver_.reset();
    for (const Job<void>& job : refreshJobs_) job.cancel();
    // The timeline holds the player without owning it, and outlives the parts that do.
    timeline_->setPlayer(nullptr);
    // The parts hold references to the ones made before them.
    delete sidebar_;
    delete swipes_;
    delete navigation_;
    delete deletions_;
    delete surface_;
    delete selection_;
    delete playback_;
    delete scoreboard_;
    delete timeline_;
}

void DashboardController::makeParts(DashboardRecordingLoads loads) {
    timeline_ = new GameTimelineModel(services_.defaults, services_.clock, this);
    scoreboard_ = new RecordingScoreboardModel(services_.fileActions, services_.clock, this);
    playback_ = new DashboardPlayback(services_.defaults, services_.clock, this);
    selection_ = new DashboardSelection(
        {library_, *playback_, *timeline_, *scoreboard_, services_.defaults, services_.playerFactory},
        std::move(loads), this);
    surface_ = new VideoPlayerSurfaceModel(*playback_, services_.clock, this);
    deletions_ = new DashboardDeletionScheduler(
        services_.clock, services_.fileActions,
        {[this](const std::vector<MatchVideo>& matches) { pauseIfShowing(matches); },
         [this](const QSet<QString>& paths) { forgetTrashed(paths); },
         [this](const QString& message) { setFileActionError(message); }},
        this);
    navigation_ = new DashboardSidebarNavigation(library_, *selection_, *playback_, this);
    swipes_ = new DashboardSwipeRows(
        services_.clock, [](const QString&) { return RecordingRowSwipe::Options{}; },
        [this](const QString& path, SwipeSide side) {
            const int row = sidebar_->cards()->rowOf(path);
            const std::optional<MatchVideo> match = sidebar_->cards()->matchAt(row);
            if (!match) return;  // the card left the list meanwhile
            if (side == SwipeSide::leading) library_.toggleFavorite(*match);
            if (side == SwipeSide::trailing) deletions_->handleDeletionAction(*match);
        },
        this);
    sidebar_ = new DashboardSidebarModel(
        {library_, *navigation_, *deletions_, *swipes_, *playback_, services_.fileActions,
         [this](const QString& path) { return selection_->isDamaged(path); },
         [this] { setGuidePresented(true); }},
        this);
}

void DashboardController::wireReview() {
    connect(playback_, &DashboardPlayback::currentTimeChanged, this, [this] {
        timeline_->setCurrentTime(playback_->currentTime());
        scoreboard_->setCurrentTime(playback_->currentTime());
    });
    // The timeline's seeks and drags set its own time first.
    connect(timeline_, &GameTimelineModel::currentTimeChanged, this,
            [this] { playback_->setCurrentTime(timeline_->currentTime()); });
    connect(timeline_, &GameTimelineModel::playbackToggleRequested, playback_,
            &DashboardPlayback::togglePlayback);
    connect(timeline_, &GameTimelineModel::playbackEnded, this,
            [this] { playback_->setRequestedIsPlaying(false); });
    connect(timeline_, &GameTimelineModel::interacted, this, [this] { setAcceptsPlaybackKeys(true); });
    connect(timeline_, &GameTimelineModel::playbackRateSelected, playback_,
            &DashboardPlayback::setPlaybackRate);
    connect(playback_, &DashboardPlayback::playbackRateChanged, this,
            [this] { timeline_->setPlaybackRate(playback_->playbackRate()); });
    connect(playback_, &DashboardPlayback::playbackRateAnimationRequested, timeline_,
            &GameTimelineModel::showPlaybackRateAnimation);
    connect(playback_, &DashboardPlayback::volumeAnimationRequested, timeline_,
            &GameTimelineModel::showVolumeAnimation);
    // While loading, the play button shows what the user asked for, not the player's state.
    const auto optimism = [this] {
        timeline_->setOptimisticIsPlaying(playback_->isLoadingRecording()
                                              ? std::optional<bool>(playback_->requestedIsPlaying())
                                              : std::nullopt);
    };
    connect(playback_, &DashboardPlayback::isLoadingRecordingChanged, this, optimism);
    connect(playback_, &DashboardPlayback::requestedIsPlayingChanged, this, optimism);
    connect(scoreboard_, &RecordingScoreboardModel::riotIdCopied, this,
            [this] { playback_->showPlaybackFeedback(DashboardTexts::riotIdCopied()); });
    connect(surface_, &VideoPlayerSurfaceModel::playingChanged, playback_,
            &DashboardPlayback::setRequestedIsPlaying);
    connect(surface_, &VideoPlayerSurfaceModel::rateChanged, playback_, &DashboardPlayback::setPlaybackRate);
    connect(surface_, &VideoPlayerSurfaceModel::interacted, this, [this] { setAcceptsPlaybackKeys(true); });
    connect(surface_, &VideoPlayerSurfaceModel::readyForDisplay, this,
            [this] { setAcceptsPlaybackKeys(true); });
}

void DashboardController::wireSelection() {
    connect(selection_, &DashboardSelection::selectionDidChange, this,
            [this] { setScoreboard(false, false); });
    connect(selection_, &DashboardSelection::playbackFocusRequested, this,
            [this] { setAcceptsPlaybackKeys(true); });
    connect(selection_, &DashboardSelection::movieStateChanged, this,
            &DashboardController::movieStateChanged);
    // The picture goes out before the notification: QML re-evaluates its bindings on the notification
    // ahead of any connected slot, and then asks the image provider for the new id at once.
    connect(selection_, &DashboardSelection::thumbnailChanged, this, [this] {
        emit thumbnailPublished(thumbnailID(), recordingThumbnail());
        emit thumbnailChanged();
    });
    connect(selection_, &DashboardSelection::preparedPlayersChanged, this,
            &DashboardController::preparedPlayersChanged);
    connect(selection_, &DashboardSelection::recordingDamaged, this,
            [this](const QString& path) { sidebar_->cards()->refreshCard(path); });
}

QString DashboardController::movieStateName() const {
    switch (movieState()) {
        case DashboardMovieState::none:
            return QStringLiteral("none");
        case DashboardMovieState::loading:
            return QStringLiteral("loading");
        case DashboardMovieState::ready:
            return QStringLiteral("ready");
        case DashboardMovieState::damaged:
            return QStringLiteral("damaged");
    }
    return {};
}

QString DashboardController::noSelectionTitle() const {
    return DashboardTexts::kNoSelectionTitle;
}

QString DashboardController::noSelectionSymbol() const {
    return DashboardTexts::kNoSelectionSymbol;
}

QString DashboardController::noSelectionMessage() const {
    return DashboardTexts::kNoSelectionMessage;
}

QString DashboardController::loadingText() const {
    return DashboardTexts::kLoadingVideo;
}

QString DashboardController::damagedTitle() const {
    return DashboardTexts::kDamagedTitle;
}

QString DashboardController::damagedMessage() const {
    return DashboardTexts::damagedMessage(selection_->hasRecordingDetail());
}

QString DashboardController::damagedSymbol() const {
    return DashboardTexts::kDamagedSymbol;
}

QVariantList DashboardController::preparedPlayerObjects() const {
    QVariantList objects;
    for (const std::shared_ptr<VideoPlayer>& player : selection_->preparedPlayers().players()) {
        if (auto* object = dynamic_cast<QObject*>(player.get())) objects.append(QVariant::fromValue(object));
    }
    return objects;
}

QString DashboardController::guideTitle() const {
    return DashboardGuide::kTitle;
}

QString DashboardController::guideDoneTitle() const {
    return DashboardGuide::kDone;
}

QVariantList DashboardController::guideSections() const {
    return DashboardGuide::sectionsForView();
}

QString DashboardController::thumbnailID() const {
    if (!hasThumbnail()) return {};
    return QStringLiteral("thumbnail/%1").arg(selection_->thumbnailSerial());
}

void DashboardController::setScoreboardPinned(bool pinned) {
    setScoreboard(pinned, isTabScoreboardVisible_);
}

void DashboardController::setAcceptsPlaybackKeys(bool accepts) {
    if (accepts == acceptsPlaybackKeys_) return;
    acceptsPlaybackKeys_ = accepts;
    emit acceptsPlaybackKeysChanged();
}

void DashboardController::setGuidePresented(bool presented) {
    if (presented == isGuidePresented_) return;
    isGuidePresented_ = presented;
    emit guidePresentedChanged();
}

QString DashboardController::fileActionAlertTitle() const {
    return DashboardTexts::kFileActionAlertTitle;
}

QString DashboardController::fileActionAlertMessage() const {
    return fileActionError_.value_or(DashboardTexts::kUnknownError);
}

QString DashboardController::fileActionAlertButton() const {
    return DashboardTexts::kFileActionAlertButton;
}

void DashboardController::appear() {
    if (!hasAppeared_) {
        hasAppeared_ = true;
        refreshLibrary();
    }
    selection_->resume();
    playback_->startPositionUpdates();
}

void DashboardController::disappear() {
    selection_->stop();
    playback_->stop();
    // A pending deletion does not happen when the window closes: the recording stays.
    deletions_->cancelAll();
}

void DashboardController::dismissFileActionAlert() {
    setFileActionError(std::nullopt);
}

void DashboardController::refreshLibrary() {
    if (!recordingsFolder_) return;
    std::erase_if(refreshJobs_, [](const Job<void>& job) { return job.isFinished(); });
    refreshJobs_.push_back(
        Job<void>::start([this, folder = *recordingsFolder_](CancellationToken token) -> QCoro::Task<void> {
            QCoro::Task<void> refreshing = library_.refresh(folder);
            co_await refreshing;
            if (token.isCancelled()) co_return;  // the window's controller went
            if (const std::optional<QString>& error = library_.scanError()) {
                setFileActionError(DashboardTexts::refreshFailure(*error));
            }
        }));
}

void DashboardController::setRecordingsFolder(const QString& folderPath) {
    if (recordingsFolder_ == folderPath) return;
    recordingsFolder_ = folderPath;
    refreshLibrary();
}

void DashboardController::followFolderStore(RecordingFolderStore& store) {
    connect(&store, &RecordingFolderStore::folderURLChanged, this,
            [this](const QUrl& folderURL) { setRecordingsFolder(folderURL.toLocalFile()); });
    setRecordingsFolder(store.folderPath());
}

void DashboardController::setScoreboard(bool pinned, bool tabVisible, bool animates) {
    if (pinned == isScoreboardPinned_ && tabVisible == isTabScoreboardVisible_) return;
    isScoreboardPinned_ = pinned;
    isTabScoreboardVisible_ = tabVisible;
    scoreboardChangeAnimates_ = animates;
    emit scoreboardChanged();
}

void DashboardController::setFileActionError(const std::optional<QString>& error) {
    if (error == fileActionError_) return;
    fileActionError_ = error;
    emit fileActionErrorChanged();
}

void DashboardController::pauseIfShowing(const std::vector<MatchVideo>& matches) {
    const std::optional<MatchVideo>& selected = library_.selectedMatch();
    if (!selected || !playback_->player()) return;
    for (const MatchVideo& match : matches) {
        if (match.url == selected->url) playback_->player()->pause();
    }
}

void DashboardController::forgetTrashed(const QSet<QString>& moviePaths) {
    const std::optional<QString> folder = recordingsFolder_ ? recordingsFolder_ : library_.loadedFolderPath();
    if (folder) library_.removeMatches(moviePaths, *folder);
    refreshLibrary();
}

}  // namespace kestrum
