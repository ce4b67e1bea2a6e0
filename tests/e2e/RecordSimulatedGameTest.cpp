// The road of one game, end to end: the built kestrum and the game simulator under a real X server and
// sound server; the saved movie and document read back by ffprobe, ffmpeg and the clock stripe.
#include "ClockStripe.h"
#include "EndToEndRig.h"
#include "base/common/HostTime.h"
#include "core/telemetry/SessionDocumentCodec.h"
#include "support/MovieDecoding.h"
#include "support/QtPrinters.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <map>

namespace kestrum::test {
namespace {

const QString kScripts = QStringLiteral(KESTRUM_SOURCE_DIR "/tests/e2e/scripts/");
// How far a tone's onset may fall from a whole second of the game's clock: the clock read from frames
// errs low by up to a frame interval and the game's drawing, the tone's own placement by a few
// milliseconds. A track that drifts by a tenth of a percent leaves this within the minute.
constexpr double kToneOnsetToleranceSeconds = 0.08;

QJsonObject readJson(const QString& path) {
    return QJsonDocument::fromJson(readFileBytes(path)).object();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

// The game's clock minus the movie's time, in seconds, read from the clock stripe of a few frames across
// the movie. A frame asked for at t was captured up to one frame interval before t, and shows the clock
// the game drew last before that: the figure is a little low, by a few tens of milliseconds at most.
std::optional<double> gameClockOffsetSeconds(const QString& movie, double durationSeconds) {
    std::vector<double> offsets;
    for (double seconds = 4.0; seconds < durationSeconds - 2.0; seconds += 8.0) {
        const std::optional<QImage> frame = movieFrameAt(movie, seconds);
        const std::optional<qint64> clockMs = frame ? decodeClockStripe(*frame) : std::nullopt;
        if (clockMs && *clockMs > 0) offsets.push_back(static_cast<double>(*clockMs) / 1000.0 - seconds);
    }
    if (offsets.size() < 3) return std::nullopt;
    return median(offsets);
}

// The simulator sounds a tone at the start of every game second. Each tone's onset in the system-sound
// track, moved onto the game's clock, must fall on a whole second, and no second of the game may go
// without one: a silent track, or one that drifts from the picture, fails.
void expectTonesOnTheClockSeconds(const QString& movie, double durationSeconds, double gameDurationSeconds) {
    const std::optional<DecodedAudio> audio = decodeAudio(movie, 0);
    ASSERT_TRUE(audio) << "no system-sound track";
    const std::optional<double> offset = gameClockOffsetSeconds(movie, durationSeconds);
    ASSERT_TRUE(offset) << "no clock stripe in the movie's frames";
    std::vector<double> errors;
    std::vector<double> onsetGameSeconds;
    for (const double onset : soundOnsets(*audio, 0.1, 0.5)) {
        const double gameSeconds = onset + *offset;
        onsetGameSeconds.push_back(gameSeconds);
        errors.push_back(gameSeconds - std::round(gameSeconds));
    }
    // The whole game seconds the movie spans while the game runs, but the last, whose tone the stop may
    // cut.
    const int firstSecond = std::max(0, static_cast<int>(std::ceil(*offset)));
    const int lastSecond = std::min(static_cast<int>(std::floor(durationSeconds + *offset)) - 1,
                                    static_cast<int>(std::ceil(gameDurationSeconds)) - 1);
    std::string listed;
    for (const double seconds : onsetGameSeconds) listed += std::to_string(seconds) + " ";
    EXPECT_GE(static_cast<int>(onsetGameSeconds.size()), lastSecond - firstSecond + 1) << listed;
    for (std::size_t index = 0; index < errors.size(); ++index) {
        EXPECT_LT(std::abs(errors[index]), kToneOnsetToleranceSeconds)
            << "onset at game time " << onsetGameSeconds[index];
    }
    std::vector<double> magnitudes;
    for (const double error : errors) magnitudes.push_back(std::abs(error));
    std::printf("figure tone_onset_error_median %.3f s\nfigure tone_onset_error_max %.3f s\n",
                median(magnitudes),
                magnitudes.empty() ? 0.0 : *std::max_element(magnitudes.begin(), magnitudes.end()));
}

class RecordSimulatedGame : public testing::Test {
  public:
    void SetUp() override {
        if (!rig_.start()) FAIL() << rig_.failure().toStdString();
    }
    void TearDown() override {
        rig_.stopKestrum();
        if (!HasFailure()) return;
        std::printf("--- kestrum:\n%s\n--- simulator:\n%s\n--- capture log:\n%s\n",
                    qPrintable(rig_.kestrumOutput().join('\n')), qPrintable(rig_.gameOutput()),
                    qPrintable(rig_.captureLogMessages().join('\n')));
    }

    EndToEndRig rig_;
};

TEST_F(RecordSimulatedGame, recordsASixtySecondGameWithItsDocument) {
    ASSERT_TRUE(rig_.startGame(kScripts + QStringLiteral("sixty-seconds.json")));
    ASSERT_TRUE(rig_.waitForKestrumLine(QStringLiteral("Kestrum status: Recording"), 30000));
    const std::optional<qint64> gameEndNs = rig_.waitForGameEnd(120000);
    ASSERT_TRUE(gameEndNs);
    const std::optional<QString> movie = rig_.waitForSavedRecording(60000);
    ASSERT_TRUE(movie) << rig_.kestrumOutput().join('\n').toStdString();

    EXPECT_TRUE(QRegularExpression(
                    QStringLiteral("^\\d{4}-\\d{2}-\\d{2}_\\d{2}-\\d{2}-\\d{2}_CLASSIC_AHRI_MIDDLE\\.mov$"))
                    .match(QFileInfo(*movie).fileName())
                    .hasMatch())
        << QFileInfo(*movie).fileName().toStdString();

    const std::optional<QJsonObject> probed = probeMovie(*movie);
    ASSERT_TRUE(probed);
    const QJsonArray streams = (*probed)[QStringLiteral("streams")].toArray();
    ASSERT_EQ(streams.size(), 2);  // the picture and the system sound; no microphone was asked for
    EXPECT_EQ(streams[0][QStringLiteral("codec_name")].toString(), QStringLiteral("hevc"));
    EXPECT_EQ(streams[0][QStringLiteral("width")].toInt(), 1280);
    EXPECT_EQ(streams[0][QStringLiteral("height")].toInt(), 720);
    EXPECT_EQ(streams[1][QStringLiteral("codec_type")].toString(), QStringLiteral("audio"));
    const double duration =
        (*probed)[QStringLiteral("format")][QStringLiteral("duration")].toString().toDouble();
    const std::optional<double> timelineStart = timelineStartSeconds(rig_.kestrumOutput());
    ASSERT_TRUE(timelineStart);
    EXPECT_NEAR(duration, hostTimeToSeconds(*gameEndNs) - *timelineStart, 1.0);
    expectTonesOnTheClockSeconds(
        *movie, duration,
        readJson(kScripts + QStringLiteral("sixty-seconds.json"))[QStringLiteral("durationSeconds")]
            .toDouble());

    const Result<RecordingSessionData> document =
        decodeSessionData(readFileBytes(movie->chopped(3) + QStringLiteral("json")).toStdString());
    ASSERT_TRUE(document.ok()) << document.error().description.toStdString();

    // Every row is one of the script's events, named as the script names it, at the game clock that
    // the movie's own frame shows at the row's movie time.
    std::map<std::int64_t, QJsonObject> scriptEvents;
    int nextID = 0;
    for (const QJsonValue value :
         readJson(kScripts + QStringLiteral("sixty-seconds.json"))[QStringLiteral("events")].toArray()) {
        scriptEvents[nextID++] = value.toObject();
    }
    std::vector<double> placementErrors;
    ASSERT_GE(document.value().events.size(), 8u);
    for (const RecordingEvent& event : document.value().events) {
        ASSERT_TRUE(scriptEvents.count(event.id)) << event.id;
        const QJsonObject& scripted = scriptEvents[event.id];
        const QString scriptedName = scripted[QStringLiteral("EventName")].toString();
        EXPECT_TRUE(QString::fromStdString(event.name) == scriptedName ||
                    (event.name == "FirstBlood" && scriptedName == QStringLiteral("ChampionKill")))
            << event.name;
        const std::optional<QImage> frame = movieFrameAt(*movie, event.videoTime);
        ASSERT_TRUE(frame) << "no frame at " << event.videoTime;
        const std::optional<qint64> clockMs = decodeClockStripe(*frame);
        ASSERT_TRUE(clockMs) << "no clock in the frame at " << event.videoTime;
        placementErrors.push_back(std::abs(static_cast<double>(*clockMs) / 1000.0 -
                                           scripted[QStringLiteral("EventTime")].toDouble()));
    }
    const double largest = *std::max_element(placementErrors.begin(), placementErrors.end());
    std::printf("figure event_placement_error_median %.3f s\nfigure event_placement_error_max %.3f s\n",
                median(placementErrors), largest);
    EXPECT_LE(largest, 0.35);

    const QStringList log = rig_.captureLogMessages();
    const QStringList expectedOrder = {
        QStringLiteral("Selected League capture window: "),
        QStringLiteral("Capturing League window at 1280x720, 30 FPS, 720p."),
        QStringLiteral("Audio capture started (system: true, microphone: false)."),
        QStringLiteral("Recording container finalized successfully."),
        QStringLiteral("Match recording saved to ")};
    qsizetype at = 0;
    for (const QString& expected : expectedOrder) {
        const auto found = std::find_if(log.begin() + at, log.end(),
                                        [&](const QString& line) { return line.startsWith(expected); });
        ASSERT_NE(found, log.end()) << "missing in order: " << expected.toStdString() << "\n"
                                    << log.join('\n').toStdString();
        at = found - log.begin() + 1;
    }
    // One line per track at the stop (the log's lines may land in the file out of their order). The game's
    // tone was the one playback stream recorded, and the server lost nothing of it.
    const auto lineStarting = [&log](const QString& start) {
        return std::find_if(log.begin(), log.end(),
                            [&](const QString& line) { return line.startsWith(start); });
    };
    EXPECT_NE(lineStarting(QStringLiteral("video: ")), log.end());
    const auto systemAudio = lineStarting(QStringLiteral("system audio: "));
    ASSERT_NE(systemAudio, log.end());
    EXPECT_TRUE(systemAudio->contains(QStringLiteral(", playback streams 1"))) << systemAudio->toStdString();
    EXPECT_TRUE(systemAudio->contains(QStringLiteral("overruns 0, lost 0 ms"))) << systemAudio->toStdString();
}

TEST_F(RecordSimulatedGame, aReplayIsNotRecorded) {
    // The tests of this program share one home, so earlier tests' movies may stand in the folder.
    const QStringList moviesBefore =
        QDir(rig_.recordingsFolder()).entryList({QStringLiteral("*.mov")}, QDir::Files);
    ASSERT_TRUE(rig_.startGame(kScripts + QStringLiteral("replay.json")));
    ASSERT_TRUE(waitUntil(
        [&] {
            return rig_.captureLogMessages().contains(
                QStringLiteral("Replay Game Client detected. Recording suppressed."));
        },
        30000));
    rig_.waitForGameEnd(60000);
    processEventsFor(2000);
    EXPECT_FALSE(rig_.waitForKestrumLine(QStringLiteral("Kestrum status: Recording"), 100));
    EXPECT_EQ(QDir(rig_.recordingsFolder()).entryList({QStringLiteral("*.mov")}, QDir::Files), moviesBefore);
}

TEST_F(RecordSimulatedGame, framesShowThePrivacyScreenWhileAnotherWindowIsActive) {
    ASSERT_TRUE(rig_.startGame(kScripts + QStringLiteral("short.json")));
    ASSERT_TRUE(rig_.waitForKestrumLine(QStringLiteral("timeline starting at relative"), 30000));
    const double timelineStart = *timelineStartSeconds(rig_.kestrumOutput());
    processEventsFor(3000);
    const double awaySeconds = hostTimeToSeconds(hostTimeNow()) - timelineStart;
    ASSERT_TRUE(rig_.activateOtherWindow());
    processEventsFor(5000);
    const double backSeconds = hostTimeToSeconds(hostTimeNow()) - timelineStart;
    ASSERT_TRUE(rig_.activateGameWindow());
    rig_.waitForGameEnd(60000);
    const std::optional<QString> movie = rig_.waitForSavedRecording(60000);
    ASSERT_TRUE(movie);
    // Inside the span the game's picture, and so its clock stripe, is veiled; outside it shows.
    for (double seconds = awaySeconds + 0.6; seconds < backSeconds - 0.6; seconds += 1.0) {
        const std::optional<QImage> frame = movieFrameAt(*movie, seconds);
        ASSERT_TRUE(frame);
        EXPECT_FALSE(decodeClockStripe(*frame)) << "game picture at " << seconds;
    }
    for (const double seconds : {awaySeconds - 1.0, backSeconds + 1.5}) {
        const std::optional<QImage> frame = movieFrameAt(*movie, seconds);
        ASSERT_TRUE(frame);
        EXPECT_TRUE(decodeClockStripe(*frame)) << "privacy screen at " << seconds;
    }
}

TEST_F(RecordSimulatedGame, aGameKilledMidwayIsSavedWithItsDocument) {
    ASSERT_TRUE(rig_.startGame(kScripts + QStringLiteral("short.json")));
    ASSERT_TRUE(rig_.waitForKestrumLine(QStringLiteral("timeline starting at relative"), 30000));
    processEventsFor(6000);
    rig_.killGame();
    const std::optional<QString> movie = rig_.waitForSavedRecording(60000);
    ASSERT_TRUE(movie);
    const std::optional<QJsonObject> probed = probeMovie(*movie);
    ASSERT_TRUE(probed);
    EXPECT_GT((*probed)[QStringLiteral("format")][QStringLiteral("duration")].toString().toDouble(), 4.0);
    const Result<RecordingSessionData> document =
        decodeSessionData(readFileBytes(movie->chopped(3) + QStringLiteral("json")).toStdString());
    EXPECT_TRUE(document.ok());
}

}  // namespace
}  // namespace kestrum::test
