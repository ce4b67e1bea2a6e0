#pragma once

#include "core/dashboard/DashboardRecordingLoads.h"
#include "core/library/MatchVideo.h"
#include "core/library/detail/RecordingDetail.h"
#include "platform/fake/FakeVideoPlayer.h"
#include "platform/ports/VideoPlayer.h"

#include <QDateTime>
#include <QFuture>
#include <QImage>
#include <QPromise>

#include <array>
#include <memory>
#include <vector>

namespace kestrum::bench {

// A future that already holds its value: the benchmarks measure the window, not the disk.
template <typename T>
QFuture<T> readyFuture(T value) {
    QPromise<T> promise;
    promise.start();
    promise.addResult(std::move(value));
    promise.finish();
    return promise.future();
}

// The review window's loads answered at once: a detail of `durationSeconds` and no thumbnail.
inline DashboardRecordingLoads instantRecordingLoads(double durationSeconds) {
    return {[durationSeconds](const MatchVideo&) {
                auto detail = std::make_shared<RecordingDetail>();
                detail->duration = durationSeconds;
                return readyFuture(std::shared_ptr<const RecordingDetail>(std::move(detail)));
            },
            [](const MatchVideo&) { return readyFuture(std::optional<QImage>()); }};
}

// Fake players of a 30-minute movie, for the review window's benchmarks that measure everything but the
// movie.
class FakePlayerFactory final : public VideoPlayerFactory {
  public:
    std::unique_ptr<VideoPlayer> makePlayer(const QString& moviePath) override {
        return std::make_unique<FakeVideoPlayer>(moviePath, 1800);
    }
};

// A library as a player builds it over months: four games an evening, varied modes, lanes and champions.
inline std::vector<MatchVideo> madeUpLibrary(int count) {
    const std::array<const char*, 4> modes{"CLASSIC", "ARAM", "CHERRY", "CLASSIC"};
    const std::array<const char*, 5> lanes{"TOP", "JUNGLE", "MIDDLE", "BOTTOM", "UTILITY"};
    const std::array<const char*, 7> champions{"Ahri", "Lux", "Garen", "Jinx", "Thresh", "LeeSin", "Kaisa"};
    const QDateTime newest(QDate(2026, 3, 14), QTime(23, 0));
    std::vector<MatchVideo> matches;
    for (int i = 0; i < count; ++i) {
        MatchVideo match;
        match.url = QStringLiteral("/recordings/game-%1.mov").arg(i);
        match.date = ReferenceDate::fromDateTime(newest.addSecs(-(i / 4) * 86'400 - (i % 4) * 2'400));
        match.gameMode = modes[i % modes.size()];
        match.role = lanes[i % lanes.size()];
        match.champion = champions[i % champions.size()];
        match.mapID = i % 4 == 1 ? 12 : 11;
        match.finalKills = i % 13;
        match.finalDeaths = i % 7;
        match.finalAssists = i % 17;
        match.didWin = i % 2 == 0;
        matches.push_back(match);
    }
    return matches;
}

}  // namespace kestrum::bench
