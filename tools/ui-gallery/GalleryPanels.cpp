#include "GalleryPanels.h"

#include "core/settings/SettingsReaders.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "ui/style/SharedWithQml.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace kestrum::gallery {

namespace {

GalleryPanels* shownPanels = nullptr;  // main thread

// The player's own clock moves the playhead at this interval.
constexpr std::chrono::milliseconds kTickInterval{50};
// The review window opens a recording this long before its game starts.
constexpr double kLeadInSeconds = 1;

// The item of that name in the visual tree under `root`: a Loader's page is no QObject child of the window.
const QQuickItem* itemNamed(const QQuickItem* root, const QString& name) {
    if (root->objectName() == name) return root;
    for (const QQuickItem* child : root->childItems()) {
        if (const QQuickItem* found = itemNamed(child, name)) return found;
    }
    return nullptr;
}

}  // namespace

GalleryPanels::GalleryPanels(const GalleryOptions& options, std::shared_ptr<const RecordingDetail> recording,
                             const ScoreboardLocalPlayer& localPlayer, UserDefaults& defaults,
                             QObject* parent)
    : QObject(parent),
      options_(options),
      recording_(std::move(recording)),
      player_(QStringLiteral("/gallery/recording.mov"), recording_->duration),
      timeline_(defaults, Clock::system()),
      scoreboard_(fileActions_, Clock::system()) {
    timeline_.setRecording(recording_);
    timeline_.setPlayer(&player_);
    scoreboard_.setRecording(recording_);
    scoreboard_.setLocalPlayer(localPlayer);
    // The volume model leaves a new player alone: whoever sets the player up applies the stored level.
    player_.setVolume(readPlaybackVolume(defaults));
    player_.setMuted(readPlaybackMuted(defaults));
    connect(&timeline_, &GameTimelineModel::seeked, &scoreboard_, &RecordingScoreboardModel::setCurrentTime);
    connect(&timeline_, &GameTimelineModel::playbackToggleRequested, this, &GalleryPanels::togglePlayback);
    poll_.setInterval(kPositionPollMs);
    connect(&poll_, &QTimer::timeout, this, &GalleryPanels::followPlayhead);
}

GalleryPanels::~GalleryPanels() {
    player_.stopTicking();
    timeline_.setPlayer(nullptr);
}

void GalleryPanels::setShown(GalleryPanels& panels) {
    shownPanels = &panels;
}

GalleryPanels* GalleryPanels::create(QQmlEngine*, QJSEngine*) {
    Q_ASSERT(shownPanels);
    return ui::sharedWithQml(*shownPanels);
}

void GalleryPanels::start() {
    const double start = startSeconds();
    player_.seek(start, VideoSeekTolerance::exact());
    timeline_.setCurrentTime(start);
    scoreboard_.setCurrentTime(start);
    player_.playImmediatelyAtRate(timeline_.playbackRate());
    player_.startTicking(Clock::system(), kTickInterval);
    poll_.start();
}

double GalleryPanels::startSeconds() const {
    if (options_.atSeconds) return std::min(*options_.atSeconds, recording_->duration);
    const auto gameStart =
        std::find_if(recording_->events.begin(), recording_->events.end(),
                     [](const RecordingEvent& event) { return event.name == liveEventName::gameStart; });
    if (gameStart == recording_->events.end()) return 0;
    return std::max(0.0, gameStart->videoTime - kLeadInSeconds);
}

void GalleryPanels::followPlayhead() {
    const double time = player_.currentTime();
    if (!std::isfinite(time)) return;
    timeline_.setCurrentTime(time);
    scoreboard_.setCurrentTime(time);
}

void GalleryPanels::togglePlayback() {
    if (player_.rate() > 0) {
        player_.pause();
        return;
    }
    if (player_.currentTime() >= recording_->duration) player_.seek(0, VideoSeekTolerance::exact());
    player_.playImmediatelyAtRate(timeline_.playbackRate());
}

void GalleryPanels::present(QQuickWindow& window) {
    if (framesSincePresent_ >= 0) return;
    framesSincePresent_ = 0;
    if (options_.hoverSeconds && showsTimeline()) hoverNearest(window, *options_.hoverSeconds);
    if (!options_.openPopUp || !showsTimeline()) return;
    switch (*options_.openPopUp) {
        case GalleryOptions::PopUp::filters:
            timeline_.setTimelineFilterPresented(true);
            return;
        case GalleryOptions::PopUp::speed:
            timeline_.setPlaybackRatePresented(true);
            return;
        case GalleryOptions::PopUp::volume:
            timeline_.setVolumePresented(true);
            return;
    }
}

void GalleryPanels::frameShown() {
    if (framesSincePresent_ >= 0) ++framesSincePresent_;
}

void GalleryPanels::hoverNearest(QQuickWindow& window, double seconds) {
    const QQuickItem* track = itemNamed(window.contentItem(), QStringLiteral("timelineTrack"));
    if (!track || track->width() <= 0) return;
    const std::vector<TimelineMarker>& markers = timeline_.markers(track->width());
    const TimelineMarker* nearest = nullptr;
    double nearestGap = 0;
    for (const TimelineMarker& marker : markers) {
        if (!marker.isHoverable) continue;
        const double gap = std::abs(recording_->events[marker.eventIndex].videoTime - seconds);
        if (!nearest || gap < nearestGap) {
            nearest = &marker;
            nearestGap = gap;
        }
    }
    if (nearest) timeline_.hover(nearest->x, nearest->y, track->width());
}

}  // namespace kestrum::gallery
