#pragma once

#include "base/async/Clock.h"
#include "base/common/ReferenceDate.h"
#include "base/common/Result.h"
#include "core/recording/RecordingLiveClient.h"
#include "core/telemetry/LiveGamePayloads.h"
#include "core/telemetry/RecordingScoreboardPlayer.h"
#include "core/telemetry/live/LiveFailureLogThrottle.h"
#include "core/telemetry/live/LiveServiceTransport.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// The client of the game's local service (https://127.0.0.1:2999): is this game a replay, what is being
// played, what happened. Every fetch gives absent on any failure (transport error, a status other than
// exactly 200, a body that does not decode strictly) and never throws; some log the failure, throttled
// to one line per endpoint word per 30 seconds. The client keeps no game state between calls.
//
// Thread: all operations run on the main thread and suspend at their requests and sleeps; the failure
// throttle is the only state shared with other threads.
class LeagueLiveClient final : public RecordingLiveClient {
  public:
    // The wall clock's present date: time 0 of a movie is a date, and the collector measures against it.
    using WallClock = std::function<ReferenceDate()>;

    static constexpr int kReplayProbeAttempts = 10;
    static constexpr std::chrono::milliseconds kReplayProbeDelay{250};

    // The default transport is HTTPS to port 2999 of the loopback address.
    explicit LeagueLiveClient(std::shared_ptr<LiveServiceTransport> transport = nullptr,
                              Clock& clock = Clock::system(), WallClock wallClock = &ReferenceDate::now);

    // /liveclientdata/gamestats; logs failures under "gamestats".
    QCoro::Task<std::optional<GameStats>> fetchGameStats();
    // /liveclientdata/activeplayername; logs failures under "activeplayername", then falls back, silently,
    // to activePlayer.summonerName of /liveclientdata/allgamedata.
    QCoro::Task<std::optional<std::string>> fetchActivePlayerName();
    // /liveclientdata/playerlist; failures are not logged.
    QCoro::Task<std::optional<std::vector<RecordingScoreboardPlayer>>> fetchPlayerList();
    // /liveclientdata/eventdata, the whole feed since the game's start; failures are not logged.
    QCoro::Task<std::optional<std::vector<LiveEvent>>> fetchEventData();
    // /liveclientdata/allgamedata reduced to the recording's metadata; logs failures under "allgamedata".
    QCoro::Task<std::optional<RecordingMetadata>> fetchLiveGameData();

    QCoro::Task<bool> classifyGameProcess() override;
    QCoro::Task<std::optional<RecordingMetadata>> fetchRecordingMetadata(int attempts, Clock::Duration delay,
                                                                         CancellationToken token) override;
    QCoro::Task<RecordingTelemetry> collectTelemetry(ReferenceDate startDate,
                                                     std::shared_ptr<RecordingTelemetryJournal> journal,
                                                     CancellationToken token) override;

  private:
    // The body of a 200 answer of `path`, or the failure's reason text.
    QCoro::Task<Result<QByteArray>> requestBody(QString path);

    std::shared_ptr<LiveServiceTransport> transport_;
    Clock& clock_;
    WallClock wallClock_;
    std::shared_ptr<LiveFailureLogThrottle> failureLog_;
};

}  // namespace kestrum
