#include "core/telemetry/live/LeagueLiveClient.h"

#include "core/telemetry/live/LiveGameMetadata.h"
#include "core/telemetry/live/NetworkLiveServiceTransport.h"
#include "core/telemetry/live/TelemetryCollector.h"
#include "core/telemetry/vocabulary/LiveGamePayloadCodec.h"

#include <string_view>

namespace kestrum {

namespace {

std::string_view viewOf(const QByteArray& bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace

LeagueLiveClient::LeagueLiveClient(std::shared_ptr<LiveServiceTransport> transport, Clock& clock,
                                   WallClock wallClock)
    : transport_(std::move(transport)),
      clock_(clock),
      wallClock_(std::move(wallClock)),
      failureLog_(std::make_shared<LiveFailureLogThrottle>(clock)) {
    if (!transport_) transport_ = std::make_shared<NetworkLiveServiceTransport>();
}

QCoro::Task<Result<QByteArray>> LeagueLiveClient::requestBody(QString path) {
    auto response = co_await transport_->get(std::move(path));
    if (!response.ok()) co_return response.error();
    const auto& status = response.value().statusCode;
    if (!status) co_return Error::withDescription(QStringLiteral("unexpected response non-HTTP"));
    if (*status != 200)
        co_return Error::withDescription(QStringLiteral("unexpected response %1").arg(*status));
    co_return std::move(response).value().body;
}

QCoro::Task<std::optional<GameStats>> LeagueLiveClient::fetchGameStats() {
    const auto body = co_await requestBody(QStringLiteral("/liveclientdata/gamestats"));
    auto stats = body.ok() ? decodeGameStats(viewOf(body.value())) : Result<GameStats>(body.error());
    if (!stats.ok()) failureLog_->logFailure(QStringLiteral("gamestats"), stats.error().description);
    co_return std::move(stats).toOptional();
}

QCoro::Task<std::optional<std::string>> LeagueLiveClient::fetchActivePlayerName() {
    const auto body = co_await requestBody(QStringLiteral("/liveclientdata/activeplayername"));
    auto name = body.ok() ? decodeActivePlayerName(viewOf(body.value())) : Result<std::string>(body.error());
    if (name.ok()) co_return std::move(name).value();
    failureLog_->logFailure(QStringLiteral("activeplayername"), name.error().description);

    const auto fallback = co_await requestBody(QStringLiteral("/liveclientdata/allgamedata"));
    if (!fallback.ok()) co_return std::nullopt;
    auto data = decodeLiveGameData(viewOf(fallback.value()));
    if (!data.ok()) co_return std::nullopt;
    co_return std::move(data).value().activePlayer.summonerName;
}

QCoro::Task<std::optional<std::vector<RecordingScoreboardPlayer>>> LeagueLiveClient::fetchPlayerList() {
    const auto body = co_await requestBody(QStringLiteral("/liveclientdata/playerlist"));
    if (!body.ok()) co_return std::nullopt;
    co_return decodePlayerList(viewOf(body.value())).toOptional();
}

QCoro::Task<std::optional<std::vector<LiveEvent>>> LeagueLiveClient::fetchEventData() {
    const auto body = co_await requestBody(QStringLiteral("/liveclientdata/eventdata"));
    if (!body.ok()) co_return std::nullopt;
    co_return decodeEventData(viewOf(body.value())).toOptional();
}

QCoro::Task<std::optional<RecordingMetadata>> LeagueLiveClient::fetchLiveGameData() {
    const auto body = co_await requestBody(QStringLiteral("/liveclientdata/allgamedata"));
    auto data = body.ok() ? decodeLiveGameData(viewOf(body.value())) : Result<LiveGameData>(body.error());
    if (!data.ok()) {
        failureLog_->logFailure(QStringLiteral("allgamedata"), data.error().description);
        co_return std::nullopt;
    }
    co_return recordingMetadataFrom(data.value());
}

QCoro::Task<std::optional<RecordingMetadata>> LeagueLiveClient::fetchRecordingMetadata(
    int attempts, Clock::Duration delay, CancellationToken token) {
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        if (token.isCancelled()) co_return std::nullopt;
        if (auto metadata = co_await fetchLiveGameData()) co_return metadata;
        if (attempt == attempts) break;
        if (!co_await clock_.sleep(delay, token)) co_return std::nullopt;
    }
    co_return std::nullopt;
}

QCoro::Task<bool> LeagueLiveClient::classifyGameProcess() {
    // The coordinator's interface gives this probe no token: it is short and always runs out by itself.
    const CancellationToken neverCancelled;
    for (int attempt = 1; attempt <= kReplayProbeAttempts; ++attempt) {
        const auto response = co_await transport_->get(QStringLiteral("/replay/game"));
        if (response.ok() && response.value().statusCode == 200) co_return true;
        if (attempt == kReplayProbeAttempts) break;
        if (!co_await clock_.sleep(kReplayProbeDelay, neverCancelled)) co_return false;
    }
    co_return false;
}

QCoro::Task<RecordingTelemetry> LeagueLiveClient::collectTelemetry(
    ReferenceDate startDate, std::shared_ptr<RecordingTelemetryJournal> journal, CancellationToken token) {
    TelemetryCollector collector(*this, clock_, wallClock_, std::move(journal));
    co_return co_await collector.run(startDate, std::move(token));
}

}  // namespace kestrum
