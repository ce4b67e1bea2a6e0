#pragma once

#include "base/async/Job.h"
#include "core/dashboard/DashboardPlayback.h"
#include "core/dashboard/DashboardPreparedPlayers.h"
#include "core/dashboard/DashboardRecordingLoads.h"
#include "core/library/RecordingLibraryModel.h"
#include "core/review/GameTimelineModel.h"
#include "core/review/RecordingScoreboardModel.h"
#include "core/settings/UserDefaults.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kestrum {

// What the movie area shows.
enum class DashboardMovieState : std::uint8_t {
    none,     // no selection: "No Match Selected"
    loading,  // "Loading Video..." over the thumbnail, until the recording is loaded and its picture ready
    ready,    // the player
    damaged,  // the movie cannot be opened: a message in place of the player
};

// The selection of the review window and the jobs it starts. Every change of the library's selected
// recording raises `selectionGeneration`, asks for the new recording's detail at once (read on the
// loader's threads while the player opens its movie), and starts: a thumbnail job, a player job
// (which yields once so the selection shows first, then takes a prepared player or makes one, applies the
// stored volume and mute, resets the speed, and starts the detail job), and a focus job. The detail job
// awaits the recording's detail, hands it to the timeline and the scoreboard, seeks exactly to one second
// before "GameStart" (0 without one), starts playing if the selection asked for it and the user still
// wants it, ends the loading, and prunes the prepared players to the selection and its neighbours.
// Once the selection's picture is on screen (or its movie is found damaged), it prepares the neighbours
// that have no player yet: a player made, the neighbour's detail loaded,
// and the player paused exactly at the neighbour's start time, so that selecting it shows that picture
// at once (the view keeps a prepared player's picture decoded). Selected, a player whose preparation
// finished and that still stands at the start time is not sought again.
//
// The race rule: a job may touch state only if it is not cancelled, the generation it captured is still
// `selectionGeneration`, and the library still has its recording selected (by movie path). The test is
// made after every await; a job that fails it ends silently. A newer selection cancels the older player
// and detail jobs outright.
//
// A player whose movie cannot be opened (the factory's player has no item, or the player reports a
// failure) puts the movie area in the damaged state instead of loading forever, and marks the recording
// so its card can say so.
//
// Threads: the main thread; every job runs there. The library, playback, timeline, scoreboard and store
// must outlive this; destroying it cancels its jobs.
class DashboardSelection : public QObject {
    Q_OBJECT

  public:
    struct Collaborators {
        RecordingLibraryModel& library;
        DashboardPlayback& playback;
        GameTimelineModel& timeline;
        RecordingScoreboardModel& scoreboard;
        UserDefaults& defaults;
        VideoPlayerFactory& playerFactory;
    };

    DashboardSelection(Collaborators collaborators, DashboardRecordingLoads loads, QObject* parent = nullptr);
    ~DashboardSelection() override;

    std::uint64_t selectionGeneration() const { return selectionGeneration_; }
    // Set by a click that should start playing, before it selects; used once by the next change.
    void requestAutoplay(const QString& moviePath) { autoplayRequestedMatchID_ = moviePath; }
    void clearAutoplayRequest() { autoplayRequestedMatchID_.reset(); }
    const std::optional<QString>& autoplayRequestedMatchID() const { return autoplayRequestedMatchID_; }

    const std::optional<QImage>& recordingThumbnail() const { return recordingThumbnail_; }
    // Changes with every new thumbnail, so a view that shows images by name reloads.
    quint64 thumbnailSerial() const { return thumbnailSerial_; }
    DashboardMovieState movieState() const;
    bool isVideoReady() const { return isVideoReady_; }
    // Recordings whose movie could not be opened in this window.
    bool isDamaged(const QString& moviePath) const { return damagedMoviePaths_.contains(moviePath); }
    // Whether the selection's document was read and handed to the timeline and the scoreboard; changes
    // with movieStateChanged.
    bool hasRecordingDetail() const { return hasRecordingDetail_; }

    DashboardPreparedPlayers& preparedPlayers() { return preparedPlayers_; }

    // The window goes: the jobs stop, the player pauses, every prepared player is emptied.
    void stop();
    // The window shows again: a recording still selected gets its movie back.
    void resume();

  signals:
    void thumbnailChanged();
    void movieStateChanged();
    // The selection changed: the scoreboard closes.
    void selectionDidChange();
    // Keyboard focus belongs to the playback surface now.
    void playbackFocusRequested();
    void recordingDamaged(const QString& moviePath);
    // A player was made, pruned or cleared among the prepared ones.
    void preparedPlayersChanged();

  private:
    class PlayerWatch;

    void handleSelectionChange();
    void clearSelection();
    void clearRecordingDetail();
    bool isCurrent(std::uint64_t generation, const CancellationToken& token, const MatchVideo& match) const;
    void startThumbnailJob(std::uint64_t generation, const MatchVideo& match);
    void startFocusJob();
    using DetailPointer = std::shared_ptr<const RecordingDetail>;
    // `detail`: the selection's detail, asked for when the selection changed.
    Job<void> startPlayerJob(std::uint64_t generation, const MatchVideo& match, bool autoplay,
                             QFuture<DetailPointer> detail);
    Job<void> startDetailJob(std::uint64_t generation, const MatchVideo& match, bool autoplay,
                             QFuture<DetailPointer> detail, std::shared_ptr<VideoPlayer> player,
                             bool isNewPlayer);
    // Once the selection's picture is on screen (or its movie found damaged): preparing the neighbours
    // makes players, opens movies and decodes, which would otherwise compete with that first picture.
    void prepareNeighboursOncePictured();
    void prepareNeighbours();
    Job<void> startPreparationJob(const MatchVideo& match, std::shared_ptr<VideoPlayer> player);
    // The start a finished preparation left the movie's player paused at, forgotten once asked.
    std::optional<double> takePreparedStart(const QString& moviePath);
    void adoptPlayer(const std::shared_ptr<VideoPlayer>& player, const MatchVideo& match);
    void applyDetail(const std::shared_ptr<const RecordingDetail>& detail, const MatchVideo& match);
    void setThumbnail(std::optional<QImage> image);
    void setVideoReady(bool ready);
    void setHasRecordingDetail(bool has);
    void markDamaged(const QString& moviePath);
    void cancelJobs();

    Collaborators c_;
    DashboardRecordingLoads loads_;
    DashboardPreparedPlayers preparedPlayers_;
    std::unique_ptr<PlayerWatch> watch_;
    // All main thread.
    std::uint64_t selectionGeneration_ = 0;
    std::optional<QString> autoplayRequestedMatchID_;
    std::optional<QImage> recordingThumbnail_;
    quint64 thumbnailSerial_ = 0;
    bool isVideoReady_ = false;
    bool isMovieDamaged_ = false;
    bool hasRecordingDetail_ = false;
    // The selection's detail job has ended and its neighbours wait for its picture to be prepared.
    bool neighboursAwaitPicture_ = false;
    QSet<QString> damagedMoviePaths_;
    std::optional<Job<void>> playerSetupTask_;
    std::optional<Job<void>> detailLoadingTask_;
    // The neighbours' preparations; cancelled with the selection's jobs.
    std::vector<Job<void>> preparationJobs_;
    // The start each finished preparation sought its player to, by prepared player key.
    QHash<QString, double> preparedStartSeconds_;
    // The thumbnail and focus jobs: kept only to be cancelled when this goes.
    std::vector<Job<void>> untrackedJobs_;
};

// The time a recording opens at: one second before its first "GameStart" event, not below 0; 0 without
// such an event, so a recording opens just before the game begins, not at the loading screen.
double recordingStartTime(const RecordingDetail& detail);

}  // namespace kestrum
