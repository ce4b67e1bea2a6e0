#pragma once

#include "base/async/ManualClock.h"
#include "core/dashboard/DashboardController.h"
#include "core/library/RecordingLibraryModel.h"
#include "core/notifications/NotificationCenter.h"
#include "platform/fake/FakeFileActions.h"
#include "platform/fake/FakeVideoPlayer.h"
#include "support/QtPrinters.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QPromise>
#include <QSet>
#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kestrum::test {

using DetailPointer = std::shared_ptr<const RecordingDetail>;

// Makes fake players of `movieDurationSeconds`; a movie listed in `unopenable` gives a player with no item,
// as a factory does for a file it cannot open. Every path asked for is kept in order.
class FakePlayerFactory final : public VideoPlayerFactory {
  public:
    std::unique_ptr<VideoPlayer> makePlayer(const QString& moviePath) override {
        madeFor.append(moviePath);
        const bool opens = !unopenable.contains(moviePath);
        auto player = std::make_unique<FakeVideoPlayer>(
            opens ? std::optional<QString>(moviePath) : std::nullopt, movieDurationSeconds);
        player->showsPictureByItself = picturesShowByThemselves;
        return player;
    }

    double movieDurationSeconds = 1800;
    // Cleared: the players made wait for their picture to be scripted ready.
    bool picturesShowByThemselves = true;
    QSet<QString> unopenable;
    QStringList madeFor;
};

// Loads that end when the test says so, so that a test decides the order in which a detail arrives
// against a newer selection. Thumbnails end at once with none, unless `thumbnails` has one.
class GatedLoads {
  public:
    struct PendingDetail {
        QString moviePath;
        std::shared_ptr<QPromise<DetailPointer>> promise;
    };

    DashboardRecordingLoads loads() {
        return {[this](const MatchVideo& match) {
                    auto promise = std::make_shared<QPromise<DetailPointer>>();
                    promise->start();
                    details.push_back({match.url, promise});
                    return promise->future();
                },
                [this](const MatchVideo& match) {
                    QPromise<std::optional<QImage>> promise;
                    promise.start();
                    promise.addResult(thumbnails.count(match.url)
                                          ? std::optional<QImage>(thumbnails[match.url])
                                          : std::nullopt);
                    promise.finish();
                    return promise.future();
                }};
    }

    // Ends the `index`th detail asked for (in order of asking) with `detail`, and lets the event loop run
    // what waited for it.
    void finishDetail(std::size_t index, DetailPointer detail) {
        PendingDetail& pending = details.at(index);
        pending.promise->addResult(std::move(detail));
        pending.promise->finish();
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    // Ends the detail asked last for `moviePath` (the selection's, or a neighbour's preparation).
    void finishLatestDetailFor(const QString& moviePath, DetailPointer detail) {
        for (std::size_t index = details.size(); index-- > 0;) {
            if (details[index].moviePath != moviePath) continue;
            finishDetail(index, std::move(detail));
            return;
        }
        ADD_FAILURE() << "no detail was asked for " << moviePath.toStdString();
    }

    // Ends every detail still running with none, so no awaiting job is left behind.
    void finishAll() {
        for (PendingDetail& pending : details) {
            if (pending.promise->future().isFinished()) continue;
            pending.promise->addResult(DetailPointer());
            pending.promise->finish();
        }
    }

    std::vector<PendingDetail> details;
    std::map<QString, QImage> thumbnails;
};

inline MatchVideo recording(const QString& path, qint64 secondsAgo = 0) {
    MatchVideo video;
    video.url = path;
    video.date =
        ReferenceDate::fromDateTime(QDateTime(QDate(2026, 3, 14), QTime(21, 0)).addSecs(-secondsAgo));
    video.gameMode = "CLASSIC";
    return video;
}

inline DetailPointer detailWith(std::vector<RecordingEvent> events, double duration) {
    auto detail = std::make_shared<RecordingDetail>();
    detail->events = std::move(events);
    detail->duration = duration;
    return detail;
}

inline RecordingEvent event(std::int64_t id, std::string name, double videoTime) {
    RecordingEvent made;
    made.id = id;
    made.name = std::move(name);
    made.videoTime = videoTime;
    return made;
}

// The review window's controller on fakes: a library whose scans give what `showLibrary` says, gated
// loads, fake players and file actions, and a manual clock.
class DashboardHarness {
  public:
    explicit DashboardHarness(std::optional<QString> folder = QStringLiteral("/recordings"))
        : folder_(std::move(folder)) {}

    ~DashboardHarness() {
        controller_.reset();
        loads.finishAll();
        for (int turn = 0; turn < 4; ++turn) QCoreApplication::processEvents();
    }

    DashboardController& controller() {
        if (!controller_) {
            controller_ = std::make_unique<DashboardController>(
                DashboardController::Services{defaults, clock, factory, files, notifications}, library,
                loads.loads(), folder_);
        }
        return *controller_;
    }

    // Makes the library's list `matches`, through a refresh of its folder.
    void showLibrary(const std::vector<MatchVideo>& matches) {
        nextScan = matches;
        QCoro::waitFor(library.refresh(folder_.value_or(QStringLiteral("/recordings"))));
        settle();
    }

    // Lets queued work run: the yields of the selection's jobs, the players' notices.
    static void settle() {
        for (int turn = 0; turn < 4; ++turn) QCoreApplication::processEvents();
    }

    FakeVideoPlayer* player() { return static_cast<FakeVideoPlayer*>(controller().currentPlayer()); }

    void select(const MatchVideo& match) {
        library.setSelectedMatches({match});
        library.setSelectedMatch(match);
        settle();
    }

    QTemporaryDir home;
    UserDefaults defaults{home.filePath(QStringLiteral("defaults.json"))};
    ManualClock clock;
    FakePlayerFactory factory;
    FakeFileActions files;
    NotificationCenter notifications;
    GatedLoads loads;
    std::optional<std::vector<MatchVideo>> nextScan;
    // Scans answer at once with `nextScan` (empty when unset); a failure when `scanError` is set.
    std::optional<QString> scanError;
    RecordingLibraryModel library{defaults, std::nullopt, [this](const QString&) {
                                      QPromise<Result<std::vector<MatchVideo>>> promise;
                                      promise.start();
                                      if (scanError) {
                                          promise.addResult(Error::withDescription(*scanError));
                                      } else {
                                          promise.addResult(nextScan.value_or(std::vector<MatchVideo>{}));
                                      }
                                      promise.finish();
                                      return promise.future();
                                  }};

  private:
    std::optional<QString> folder_;
    std::unique_ptr<DashboardController> controller_;
};

}  // namespace kestrum::test
