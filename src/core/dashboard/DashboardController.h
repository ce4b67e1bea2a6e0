#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "core/dashboard/DashboardDeletionScheduler.h"
#include "core/dashboard/DashboardKeyMap.h"
#include "core/dashboard/DashboardPlayback.h"
#include "core/dashboard/DashboardRecordingLoads.h"
#include "core/dashboard/DashboardSelection.h"
#include "core/dashboard/DashboardSidebarModel.h"
#include "core/dashboard/DashboardSidebarNavigation.h"
#include "core/dashboard/DashboardSwipeRows.h"
#include "core/dashboard/DashboardTabKeyMonitor.h"
#include "core/dashboard/VideoPlayerSurfaceModel.h"
#include "core/library/RecordingLibraryModel.h"
#include "core/library/detail/RecordingDetailLoader.h"
#include "core/notifications/NotificationCenter.h"
#include "core/review/GameTimelineModel.h"
#include "core/review/RecordingScoreboardModel.h"
#include "core/settings/UserDefaults.h"
#include "platform/ports/FileActions.h"
#include "platform/ports/VideoPlayer.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

class RecordingFolderStore;

// The review window's content: every decision of the window, for views that only bind and forward.
// It holds the library (its selection drives everything), the selection's jobs, the playback and its
// keys, the scoreboard's pinned and Tab-held states, the toast, the deletions, the sidebar, and the
// state of the movie area ("No Match Selected", "Loading Video..." over the thumbnail, the player, or the
// message of a movie that cannot be opened).
//
// Life: `appear()` when the window shows (the first time also refreshes the library; every time starts
// the 20 Hz position read), `disappear()` when it hides: the jobs stop, pending deletions are dropped
// (the recordings stay), the player pauses and every prepared player is emptied. The library also
// refreshes on Control-R, on a change of the recordings folder and on each "recordingSaved"
// notification; a failed refresh shows the file action alert.
//
// Keys: the window's key handling forwards each key event to `handleKey` and accepts the event when it
// answers true. Tab goes through an application-wide key filter to `handleTabKey` before any focus
// handling, once the view has attached its window with `attachTabKeyWindow`.
//
// Threads: the main thread. The services given must outlive the controller.
class DashboardController : public QObject {
    Q_OBJECT
    Q_PROPERTY(kestrum::DashboardPlayback* playback READ playback CONSTANT)
    Q_PROPERTY(kestrum::VideoPlayerSurfaceModel* surface READ surface CONSTANT)
    Q_PROPERTY(kestrum::GameTimelineModel* timeline READ timeline CONSTANT)
    Q_PROPERTY(kestrum::RecordingScoreboardModel* scoreboard READ scoreboard CONSTANT)
    Q_PROPERTY(kestrum::DashboardSidebarModel* sidebar READ sidebar CONSTANT)

    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY movieStateChanged)
    Q_PROPERTY(QString movieState READ movieStateName NOTIFY movieStateChanged)
    Q_PROPERTY(bool showsLoadingOverlay READ showsLoadingOverlay NOTIFY movieStateChanged)
    Q_PROPERTY(bool showsDamagedMessage READ showsDamagedMessage NOTIFY movieStateChanged)
    Q_PROPERTY(QString noSelectionTitle READ noSelectionTitle CONSTANT)
    Q_PROPERTY(QString noSelectionSymbol READ noSelectionSymbol CONSTANT)
    Q_PROPERTY(QString noSelectionMessage READ noSelectionMessage CONSTANT)
    Q_PROPERTY(QString loadingText READ loadingText CONSTANT)
    Q_PROPERTY(QString damagedTitle READ damagedTitle CONSTANT)
    Q_PROPERTY(QString damagedMessage READ damagedMessage NOTIFY movieStateChanged)
    Q_PROPERTY(bool showsTimeline READ showsTimeline NOTIFY movieStateChanged)
    Q_PROPERTY(QString damagedSymbol READ damagedSymbol CONSTANT)
    Q_PROPERTY(bool hasThumbnail READ hasThumbnail NOTIFY thumbnailChanged)
    Q_PROPERTY(QImage recordingThumbnail READ recordingThumbnail NOTIFY thumbnailChanged)
    Q_PROPERTY(QString thumbnailID READ thumbnailID NOTIFY thumbnailChanged)
    Q_PROPERTY(QVariantList preparedPlayerObjects READ preparedPlayerObjects NOTIFY preparedPlayersChanged)

    Q_PROPERTY(
        bool isScoreboardPinned READ isScoreboardPinned WRITE setScoreboardPinned NOTIFY scoreboardChanged)
    Q_PROPERTY(bool isTabScoreboardVisible READ isTabScoreboardVisible NOTIFY scoreboardChanged)
    Q_PROPERTY(bool showsScoreboard READ showsScoreboard NOTIFY scoreboardChanged)
    Q_PROPERTY(bool scoreboardChangeAnimates READ scoreboardChangeAnimates NOTIFY scoreboardChanged)
    Q_PROPERTY(int scoreboardAnimationMs READ scoreboardAnimationMs CONSTANT)
    Q_PROPERTY(int loadingFadeMs READ loadingFadeMs CONSTANT)
    Q_PROPERTY(bool acceptsPlaybackKeys READ acceptsPlaybackKeys WRITE setAcceptsPlaybackKeys NOTIFY
                   acceptsPlaybackKeysChanged)
    Q_PROPERTY(
        bool isGuidePresented READ isGuidePresented WRITE setGuidePresented NOTIFY guidePresentedChanged)
    Q_PROPERTY(QString guideTitle READ guideTitle CONSTANT)
    Q_PROPERTY(QString guideDoneTitle READ guideDoneTitle CONSTANT)
    Q_PROPERTY(QVariantList guideSections READ guideSections CONSTANT)

    Q_PROPERTY(bool isFileActionAlertPresented READ isFileActionAlertPresented NOTIFY fileActionErrorChanged)
    Q_PROPERTY(QString fileActionAlertTitle READ fileActionAlertTitle CONSTANT)
    Q_PROPERTY(QString fileActionAlertMessage READ fileActionAlertMessage NOTIFY fileActionErrorChanged)
    Q_PROPERTY(QString fileActionAlertButton READ fileActionAlertButton CONSTANT)

    Q_PROPERTY(double minimumWidth READ minimumWidth CONSTANT)
    Q_PROPERTY(double minimumHeight READ minimumHeight CONSTANT)

  public:
    struct Services {
        UserDefaults& defaults;
        Clock& clock;
        VideoPlayerFactory& playerFactory;
        FileActions& fileActions;
        NotificationCenter& notifications;
    };

    // The window's own library and detail loader, for the recordings in `folderPath`.
    DashboardController(Services services, const std::optional<QString>& folderPath,
                        QObject* parent = nullptr);
    // A library and loads given by the caller (tests), which must outlive the controller.
    DashboardController(Services services, RecordingLibraryModel& library, DashboardRecordingLoads loads,
                        const std::optional<QString>& folderPath, QObject* parent = nullptr);
    ~DashboardController() override;

    RecordingLibraryModel& library() { return library_; }
    DashboardPlayback* playback() const { return playback_; }
    VideoPlayerSurfaceModel* surface() const { return surface_; }
    GameTimelineModel* timeline() const { return timeline_; }
    RecordingScoreboardModel* scoreboard() const { return scoreboard_; }
    DashboardSidebarModel* sidebar() const { return sidebar_; }
    DashboardSelection& selection() { return *selection_; }
    DashboardDeletionScheduler& deletions() { return *deletions_; }
    DashboardSidebarNavigation& navigation() { return *navigation_; }
    // The player on show, for the item that draws it; null with none. Changes with playback's
    // playerChanged.
    VideoPlayer* currentPlayer() const { return playback_->player(); }

    bool hasSelection() const { return library_.selectedMatch().has_value(); }
    DashboardMovieState movieState() const { return selection_->movieState(); }
    QString movieStateName() const;
    bool showsLoadingOverlay() const { return movieState() == DashboardMovieState::loading; }
    bool showsDamagedMessage() const { return movieState() == DashboardMovieState::damaged; }
    // The timeline strip: under a movie being shown, and under a damaged movie's message once the
    // recording's document gave its events.
    bool showsTimeline() const {
        return hasSelection() && (!showsDamagedMessage() || selection_->hasRecordingDetail());
    }
    QString noSelectionTitle() const;
    QString noSelectionSymbol() const;
    QString noSelectionMessage() const;
    QString loadingText() const;
    QString damagedTitle() const;
    QString damagedMessage() const;
    QString damagedSymbol() const;
    bool hasThumbnail() const { return selection_->recordingThumbnail().has_value(); }
    QImage recordingThumbnail() const { return selection_->recordingThumbnail().value_or(QImage()); }
    QString thumbnailID() const;
    // The prepared players as objects, for the item that keeps their pictures decoded (see
    // currentPlayer for the one on show).
    QVariantList preparedPlayerObjects() const;

    bool isScoreboardPinned() const { return isScoreboardPinned_; }
    void setScoreboardPinned(bool pinned);
    bool isTabScoreboardVisible() const { return isTabScoreboardVisible_; }
    bool showsScoreboard() const { return isScoreboardPinned_ || isTabScoreboardVisible_; }
    // Whether the last change of the scoreboard is animated: O eases in and out over
    // scoreboardAnimationMs; Tab shows and hides it at once.
    bool scoreboardChangeAnimates() const { return scoreboardChangeAnimates_; }
    int scoreboardAnimationMs() const { return 150; }
    // The end of a load fades the "Loading Video..." overlay out over this time (ease-out).
    int loadingFadeMs() const { return 140; }
    bool acceptsPlaybackKeys() const { return acceptsPlaybackKeys_; }
    void setAcceptsPlaybackKeys(bool accepts);
    bool isGuidePresented() const { return isGuidePresented_; }
    void setGuidePresented(bool presented);
    QString guideTitle() const;
    QString guideDoneTitle() const;
    // The guide's sections, made from the key map (see DashboardGuide).
    QVariantList guideSections() const;

    bool isFileActionAlertPresented() const { return fileActionError_.has_value(); }
    QString fileActionAlertTitle() const;
    QString fileActionAlertMessage() const;
    QString fileActionAlertButton() const;
    const std::optional<QString>& fileActionError() const { return fileActionError_; }

    double minimumWidth() const { return 1050; }
    double minimumHeight() const { return 520; }

    Q_INVOKABLE void appear();
    Q_INVOKABLE void disappear();
    // Closing the alert clears its message.
    Q_INVOKABLE void dismissFileActionAlert();
    Q_INVOKABLE void refreshLibrary();

    // A key for the window; true when handled (the view then accepts the event). `fromSidebar`: the list
    // of cards has the focus.
    Q_INVOKABLE bool handleKey(int key, int modifiers, const QString& text, bool isAutoRepeat, bool isPress,
                               bool fromSidebar);
    bool handleKey(const DashboardKeyInput& input);
    // The Tab key filter: the window that shows the content, and each key event of any window.
    Q_INVOKABLE void attachTabKeyWindow(QObject* window);
    Q_INVOKABLE void detachTabKeyWindow();
    Q_INVOKABLE bool handleTabKey(QObject* window, int key, int modifiers, bool isPress, bool isAutoRepeat);

    // The recordings folder in use; a change refreshes the library.
    void setRecordingsFolder(const QString& folderPath);
    // Follows the store's folder from now on.
    void followFolderStore(RecordingFolderStore& store);

  signals:
    void movieStateChanged();
    // Just before thumbnailChanged: the new thumbnail under the id QML will ask for (both empty when
    // there is none), for an image provider to hold before any binding reads thumbnailID.
    void thumbnailPublished(const QString& id, const QImage& image);
    void thumbnailChanged();
    void preparedPlayersChanged();
    void scoreboardChanged();
    void acceptsPlaybackKeysChanged();
    void guidePresentedChanged();
    void fileActionErrorChanged();

  private:
    struct Owned;
    // `library` null: the owned one; `loads` absent: through the owned loader.
    DashboardController(Services services, std::unique_ptr<Owned> owned, RecordingLibraryModel* library,
                        std::optional<DashboardRecordingLoads> loads,
                        const std::optional<QString>& folderPath, QObject* parent);

    void makeParts(DashboardRecordingLoads loads);
    void wireReview();
    void wireSelection();
    void perform(DashboardKeyAction action);
    void setTabScoreboardPressed(bool pressed);
    void setScoreboard(bool pinned, bool tabVisible, bool animates = true);
    void setFileActionError(const std::optional<QString>& error);
    void pauseIfShowing(const std::vector<MatchVideo>& matches);
    void forgetTrashed(const QSet<QString>& moviePaths);

    Services services_;
    std::unique_ptr<Owned> owned_;  // the library and loader made for the window, when not given
    RecordingLibraryModel& library_;
    // Children, made in this order and deleted in the reverse order by the destructor.
    GameTimelineModel* timeline_ = nullptr;
    RecordingScoreboardModel* scoreboard_ = nullptr;
    DashboardPlayback* playback_ = nullptr;
    DashboardSelection* selection_ = nullptr;
    VideoPlayerSurfaceModel* surface_ = nullptr;
    DashboardDeletionScheduler* deletions_ = nullptr;
    DashboardSidebarNavigation* navigation_ = nullptr;
    DashboardSwipeRows* swipes_ = nullptr;
    DashboardSidebarModel* sidebar_ = nullptr;
    DashboardTabKeyMonitor tabKeyMonitor_;
    // All main thread.
    std::optional<QString> recordingsFolder_;
    bool hasAppeared_ = false;
    bool isScoreboardPinned_ = false;
    bool isTabScoreboardVisible_ = false;
    bool scoreboardChangeAnimates_ = true;
    bool acceptsPlaybackKeys_ = false;
    bool isGuidePresented_ = false;
    std::optional<QString> fileActionError_;
    std::vector<Job<void>> refreshJobs_;
    NotificationObserverToken savedObserver_;
};

}  // namespace kestrum
