#include "core/review/ScoreboardTimers.h"

#include "core/review/ObjectiveEvents.h"
#include "core/review/ReviewTimeText.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"

#include <algorithm>

namespace kestrum {

namespace {

namespace names = liveEventName;

// Game seconds at which the objectives first spawn, and their respawn intervals.
constexpr double kFirstDragonSeconds = 300;
constexpr double kDragonRespawnSeconds = 300;
constexpr double kElderRespawnSeconds = 360;
constexpr double kFirstGrubsSeconds = 480;
constexpr double kGrubsEndSeconds = 900;
constexpr int kGrubsPerGame = 3;
constexpr double kHeraldSeconds = 900;
constexpr double kHeraldEndSeconds = 1200;
constexpr double kFirstBaronSeconds = 1200;
constexpr double kBaronRespawnSeconds = 360;

const RecordingEvent* lastNamed(const std::vector<const RecordingEvent*>& elapsed, std::string_view name) {
    const auto found = std::find_if(elapsed.rbegin(), elapsed.rend(),
                                    [name](const RecordingEvent* event) { return event->name == name; });
    return found == elapsed.rend() ? nullptr : *found;
}

ObjectiveTimer makeTimer(QString name, QString artName, double secondsFromNow, bool gameOver) {
    ObjectiveTimer timer{std::move(name), std::move(artName), secondsFromNow, {}, {}};
    if (gameOver) {
        timer.text = QStringLiteral("DONE");
        return timer;
    }
    timer.text = timerText(secondsFromNow);
    timer.helpText = timerHelpText(timer.name, secondsFromNow);
    return timer;
}

}  // namespace

std::vector<const RecordingEvent*> elapsedEvents(const std::vector<RecordingEvent>& events,
                                                 double currentTime) {
    std::vector<const RecordingEvent*> elapsed;
    elapsed.reserve(events.size());
    for (const RecordingEvent& event : events) {
        if (event.videoTime <= currentTime) elapsed.push_back(&event);
    }
    return elapsed;
}

bool isGameOver(const std::vector<const RecordingEvent*>& elapsed) {
    return std::any_of(elapsed.begin(), elapsed.end(), [](const RecordingEvent* event) {
        return event->name == names::gameEnd || event->name == names::nexusKill ||
               event->name == names::nexusKilled || event->name == names::nexusDestroyed;
    });
}

QString timerHelpText(const QString& name, double secondsFromNow) {
    if (!(secondsFromNow > 0)) return name + QStringLiteral(" is available");
    return name + QStringLiteral(" is available in ") + timerText(secondsFromNow);
}

bool isElderDragonNext(const std::vector<const RecordingEvent*>& elapsed) {
    const RecordingEvent* last = lastNamed(elapsed, names::dragonKill);
    if (!last) return false;
    return isElderDragonKill(*last) ||
           elementalDragonCount(elapsed, RecordingTeam::blue) >= kDragonsForSoul ||
           elementalDragonCount(elapsed, RecordingTeam::red) >= kDragonsForSoul;
}

double nextDragonSeconds(const std::vector<const RecordingEvent*>& elapsed, double currentTime,
                         double gameTime) {
    const RecordingEvent* last = lastNamed(elapsed, names::dragonKill);
    if (!last) return kFirstDragonSeconds - gameTime;
    const double interval = isElderDragonNext(elapsed) ? kElderRespawnSeconds : kDragonRespawnSeconds;
    return last->videoTime + interval - currentTime;
}

ObjectiveTimer nextDragonTimer(const std::vector<const RecordingEvent*>& elapsed, double currentTime,
                               double gameTime) {
    const bool elder = isElderDragonNext(elapsed);
    return makeTimer(elder ? QStringLiteral("Elder Dragon") : QStringLiteral("Dragon"),
                     elder ? QStringLiteral("dragon_elder") : QStringLiteral("dragon_generic"),
                     nextDragonSeconds(elapsed, currentTime, gameTime), isGameOver(elapsed));
}

ObjectiveTimer nextBigObjectiveTimer(const std::vector<const RecordingEvent*>& elapsed, double currentTime,
                                     double gameTime) {
    const bool gameOver = isGameOver(elapsed);
    const auto grubs = std::count_if(elapsed.begin(), elapsed.end(),
                                     [](const RecordingEvent* event) { return isVoidGrubKill(*event); });
    if (grubs < kGrubsPerGame && gameTime < kGrubsEndSeconds) {
        return makeTimer(QStringLiteral("Void Grubs"), QStringLiteral("void_grub"),
                         kFirstGrubsSeconds - gameTime, gameOver);
    }
    if (!lastNamed(elapsed, names::heraldKill) && gameTime < kHeraldEndSeconds) {
        return makeTimer(QStringLiteral("Rift Herald"), QStringLiteral("rift_herald"),
                         kHeraldSeconds - gameTime, gameOver);
    }
    const RecordingEvent* baron = lastNamed(elapsed, names::baronKill);
    const double seconds =
        baron ? baron->videoTime + kBaronRespawnSeconds - currentTime : kFirstBaronSeconds - gameTime;
    return makeTimer(QStringLiteral("Baron"), QStringLiteral("baron"), seconds, gameOver);
}

}  // namespace kestrum
