#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "base/async/SerialQueue.h"
#include "core/share/LeagueShareFrameFanout.h"
#include "core/share/LeagueShareOverlay.h"
#include "core/share/LeagueShareSettings.h"
#include "core/share/LeagueShareSourceChoice.h"
#include "core/share/LeagueShareStatus.h"
#include "core/share/LeagueShareStreamOutput.h"
#include "core/share/LeagueShareStreamPlan.h"
#include "platform/ports/LeagueShareAudioRoute.h"
#include "platform/ports/ScreenCaptureAccess.h"
#include "platform/ports/ShareableContent.h"
#include "platform/ports/WindowStream.h"
#include "platform/ports/Workspace.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <optional>

namespace kestrum {

// What the coordinator reaches the world through. All must outlive the coordinator.
struct LeagueShareEnvironment {
    const ScreenCaptureAccess& screenCaptureAccess;
    ShareableContent& shareableContent;
    WindowStreamFactory& windowStreams;
    Workspace& workspace;
    LeagueShareAudioRoute& audioRoute;
    LeagueShareSettings settings;
    Clock& clock;
};

// League Share: finds the game's window (else the League client's), streams it on a window stream of
// its own at the share's resolution and frame rate, and hands every frame to all display surfaces. It
// follows the source once a second as it appears, moves from client to game, changes size or goes.
// While the sound setting is on, the audio route carries the source process's sound for as long as
// the stream runs.
//
// Threads. Everything but the sample path belongs to the main thread. `outputQueue`
// ("com.kestrum.league-share.video") receives the stream's pictures and hands them to the surfaces
// through the fanout; it reaches the published values only by posting to the main thread.
class LeagueShareCoordinator final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int statusKind READ statusKind NOTIFY statusChanged)
    Q_PROPERTY(QString statusTitle READ statusTitle NOTIFY statusChanged)
    Q_PROPERTY(QString statusSymbol READ statusSymbol NOTIFY statusChanged)
    Q_PROPERTY(bool isSourceFocused READ isSourceFocused NOTIFY isSourceFocusedChanged)
    Q_PROPERTY(bool isSourceUpdating READ isSourceUpdating NOTIFY isSourceUpdatingChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)
    Q_PROPERTY(double sourceAspectRatio READ sourceAspectRatio NOTIFY sourceAspectRatioChanged)

  public:
    static constexpr double kDefaultAspectRatio = 16.0 / 9.0;
    static constexpr Clock::Duration kMonitoringPeriod = std::chrono::seconds(1);

    explicit LeagueShareCoordinator(LeagueShareEnvironment environment, QObject* parent = nullptr);
    ~LeagueShareCoordinator() override;
    LeagueShareCoordinator(const LeagueShareCoordinator&) = delete;
    LeagueShareCoordinator& operator=(const LeagueShareCoordinator&) = delete;

    const LeagueShareStatus& status() const { return status_; }
    int statusKind() const { return static_cast<int>(status_.kind()); }
    QString statusTitle() const { return status_.title(); }
    QString statusSymbol() const { return status_.symbol(); }
    bool isSourceFocused() const { return isSourceFocused_; }
    bool isSourceUpdating() const { return isSourceUpdating_; }
    bool isRunning() const { return isRunning_; }
    double sourceAspectRatio() const { return sourceAspectRatio_; }
    // What the share window lays over its picture now.
    LeagueShareOverlay overlay() const {
        return leagueShareOverlay(status_, isSourceFocused_, isSourceUpdating_);
    }

    // Main thread. Does nothing while the monitoring runs. With screen capture access: running, the
    // focus observer, and the monitoring loop, whose first refresh runs at once. Without it:
    // `permissionRequired`, not running.
    Q_INVOKABLE void start();
    // Main thread. Ends the monitoring and the stream; the surfaces go black. The status is `stopped`
    // at once; the stream's end completes later (`stopSharing` awaits it).
    Q_INVOKABLE void stop();
    // The stop, awaitable: completes once the stream and the audio route have stopped.
    QCoro::Task<void> stopSharing();

    // Main thread. See LeagueShareFrameFanout: a surface that joins gets the newest frame at once, and
    // is never called again once removed. Removing the last surface leaves the stream running.
    void addDisplaySurface(LeagueShareDisplaySurface& surface);
    void removeDisplaySurface(LeagueShareDisplaySurface& surface);

    // For tests: the queue of the sample path, to wait for what it already holds.
    SerialQueue& outputQueue() { return outputQueue_; }

  signals:
    void statusChanged();
    void isSourceFocusedChanged();
    void isSourceUpdatingChanged();
    void isRunningChanged();
    void sourceAspectRatioChanged();

  private:
    enum class StopKind { real, restart };

    void startMonitoring(std::optional<Job<void>> pendingStop);
    // One look at the desktop and the settings; acts on the stream accordingly.
    QCoro::Task<void> refresh(CancellationToken token);
    void loseAccess();
    LeagueShareStreamPlan planFor(const LeagueShareSource& source) const;
    QCoro::Task<void> startStream(LeagueShareSource source, LeagueShareStreamPlan plan,
                                  CancellationToken token);
    QCoro::Task<void> reconfigureStream(LeagueShareSource::Kind kind, LeagueShareStreamPlan plan);
    // The stream numbered `streamNumber` ended by itself: when it is still the current one, it is
    // taken down as by a real stop and the share waits; the next refresh finds the source again.
    void handleStreamEnd(std::uint64_t streamNumber, const Error& reason);
    QCoro::Task<void> startAudioRoute(qint32 processID);
    QCoro::Task<void> stopStream(StopKind kind);

    void setStatus(LeagueShareStatus status);
    void setRunning(bool running);
    void setSourceFocused(bool focused);
    void setSourceUpdating(bool updating);
    void updateSourceFocus();
    void updateAspectRatio(QSizeF sourceSize);

    LeagueShareEnvironment environment_;

    // Main thread.
    LeagueShareStatus status_;
    bool isSourceFocused_ = true;
    bool isSourceUpdating_ = false;
    bool isRunning_ = false;
    double sourceAspectRatio_ = kDefaultAspectRatio;
    std::optional<Job<void>> monitoringTask_;
    std::optional<Job<void>> stopTask_;       // the stop under way, which a new start waits for
    std::optional<Job<void>> streamEndTask_;  // the take-down of a stream that ended by itself
    WorkspaceSubscription focusObserver_;
    std::unique_ptr<WindowStream> stream_;
    std::unique_ptr<LeagueShareStreamOutput> streamOutput_;
    std::optional<LeagueShareStreamPlan> applied_;     // what the running stream was made from
    std::optional<LeagueShareStreamPlan> failedPlan_;  // the plan whose start failed last; not retried
    bool isAudioRouted_ = false;

    // Main thread and the output queue, under the fanout's own lock.
    LeagueShareFrameFanout fanout_{outputQueue_};

    // Last member, so it is destroyed first: its destruction runs what it still holds while the fanout
    // and the stream outputs are alive.
    SerialQueue outputQueue_{QStringLiteral("com.kestrum.league-share.video")};
};

}  // namespace kestrum
