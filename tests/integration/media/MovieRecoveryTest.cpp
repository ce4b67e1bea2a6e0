// Movies the writer never finished, rebuilt from their journals: cut before the index, cut anywhere in
// the media data, killed while recording, stopped by a full disk; and what is left alone.
#include "MediaTestSupport.h"
#include "media/MovieJournal.h"
#include "media/ffmpeg/FfmpegMovieRecovery.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <mutex>
#include <optional>
#include <thread>

namespace kestrum::test {
namespace {

constexpr HostTimeNs kStartNs = 1'000'000'000'000;

struct Atom {
    QByteArray type;
    qint64 offset = 0;
    qint64 size = 0;
};

// The top-level atoms of a finished movie.
std::vector<Atom> atomsOf(const QByteArray& bytes) {
    std::vector<Atom> atoms;
    for (qint64 at = 0; at + 8 <= bytes.size();) {
        qint64 size = 0;
        for (int index = 0; index < 4; ++index)
            size = (size << 8) | static_cast<unsigned char>(bytes[at + index]);
        if (size == 1) {
            size = 0;
            for (int index = 8; index < 16; ++index)
                size = (size << 8) | static_cast<unsigned char>(bytes[at + index]);
        }
        if (size < 8) break;
        atoms.push_back({bytes.mid(at + 4, 4), at, size});
        at += size;
    }
    return atoms;
}

const Atom* find(const std::vector<Atom>& atoms, const char* type) {
    for (const Atom& atom : atoms) {
        if (atom.type == type) return &atom;
    }
    return nullptr;
}

// The movie as the writer left it just before its index: the media data's size not yet patched in.
QByteArray beforeIndex(const QByteArray& finished) {
    const std::vector<Atom> atoms = atomsOf(finished);
    const Atom* mdat = find(atoms, "mdat");
    const Atom* moov = find(atoms, "moov");
    if (mdat == nullptr || moov == nullptr) return {};
    QByteArray cut = finished.left(moov->offset);
    cut.replace(mdat->offset, 4, QByteArray(4, '\0'));
    return cut;
}

QString finishedMovie(const QString& folder, const VideoOutputSettings& video, double seconds) {
    const QString path = folder + QStringLiteral("/finished.mov");
    MovieScript script;
    script.video = video;
    script.audioTracks = 1;
    script.frameSeconds = evenFrameTimes(0, seconds, video.expectedFrameRate);
    script.isFlash = [](double at) { return at - std::floor(at) < 0.1; };
    script.audioToSeconds = seconds;
    script.signal = beepEverySecond();
    return writeMovie(path, script).status == MovieWriterStatus::completed ? path : QString();
}

// A copy of `bytes` at `path` with a copy of `journal` as its journal (none when empty).
QString placeCopy(const QString& path, const QByteArray& bytes, const QByteArray& journal) {
    if (!writeFileBytes(path, bytes)) return {};
    if (!journal.isEmpty() && !writeFileBytes(movieJournalPath(path), journal)) return {};
    return path;
}

double probedDuration(const QString& path) {
    const auto probe = probeJson(path);
    return probe ? (*probe)[QStringLiteral("format")][QStringLiteral("duration")].toString().toDouble() : -1;
}

class MovieRecoveryTest : public testing::Test {
  public:
    void SetUp() override {
        KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx265"), "libx265");
        KESTRUM_REQUIRE_MEDIA(encoderAvailable("libx264"), "libx264");
        KESTRUM_REQUIRE_MEDIA(programAvailable(QStringLiteral("ffprobe")), "ffprobe");
    }
    QTemporaryDir folder_;
    ffmpeg::FfmpegMovieRecovery recovery_;
};

TEST_F(MovieRecoveryTest, AMovieCutBeforeItsIndexComesBackByteForByte) {
    // Same packets, same timestamps, same muxer: the rebuilt index is the one the writer wrote.
    const std::vector<std::pair<const char*, VideoOutputSettings>> cases{
        {"HEVC", videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 320, 180)},
        {"H.264", videoOutputSettings(OutputResolution::native, OutputFrameRate::fps60, 322, 182)},
    };
    for (const auto& [name, video] : cases) {
        SCOPED_TRACE(name);
        const QString finished = finishedMovie(folder_.path(), video, 3.0);
        ASSERT_FALSE(finished.isEmpty());
        const QByteArray original = readFileBytes(finished);
        const QString cut = placeCopy(folder_.filePath(QStringLiteral("cut.mov")), beforeIndex(original),
                                      readFileBytes(movieJournalPath(finished)));
        ASSERT_FALSE(cut.isEmpty());
        const Result<RecoveredMovie> recovered = recovery_.recover(cut);
        ASSERT_TRUE(recovered.ok()) << recovered.error().description.toStdString();
        EXPECT_FALSE(recovered.value().wasFinished);
        EXPECT_EQ(recovered.value().packetsLeftOut, 0);
        EXPECT_NEAR(recovered.value().heldSeconds, 3.0, 0.05);
        EXPECT_TRUE(readFileBytes(cut) == original) << "the rebuilt movie differs from the finished one";
    }
}

TEST_F(MovieRecoveryTest, RebuildsWhatBothTheFileAndTheJournalHold) {
    const QString finished = finishedMovie(
        folder_.path(), videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 320, 180), 4.0);
    ASSERT_FALSE(finished.isEmpty());
    const QByteArray whole = beforeIndex(readFileBytes(finished));
    // A writer in real time commits a record every half second; an offline one may commit all at once.
    // The journal is laid out again as a long recording's would be, in records of 15 packets.
    const Result<MovieJournal> written =
        decodeMovieJournal(readFileBytes(movieJournalPath(finished)).toStdString());
    ASSERT_TRUE(written.ok());
    QByteArray journal = QByteArray::fromStdString(encodeMovieJournalStart());
    for (const MovieJournalTrack& track : written.value().tracks)
        journal += QByteArray::fromStdString(encodeMovieJournalTrack(track).value());
    for (std::size_t from = 0; from < written.value().packets.size(); from += 15) {
        const std::size_t count = std::min<std::size_t>(15, written.value().packets.size() - from);
        journal += QByteArray::fromStdString(
            encodeMovieJournalPackets(std::span(written.value().packets.data() + from, count)));
    }
    struct Case {
        const char* name;
        double movieKept;    // share of the media data left in the file
        double journalKept;  // share of the journal left
        double heldAtLeast;
        double heldAtMost;
    };
    const std::vector<Case> cases{
        {"the file cut in the middle of its media data", 0.5, 1.0, 1.3, 2.4},
        {"the journal cut in the middle of a record", 1.0, 0.5, 0.8, 3.2},
        {"both cut", 0.75, 0.6, 1.0, 3.2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const qint64 headerBytes = find(atomsOf(readFileBytes(finished)), "mdat")->offset + 8;
        const qint64 movieBytes =
            headerBytes + static_cast<qint64>((whole.size() - headerBytes) * c.movieKept);
        const QString cut = placeCopy(folder_.filePath(QStringLiteral("cut.mov")), whole.left(movieBytes),
                                      journal.left(static_cast<qsizetype>(journal.size() * c.journalKept)));
        const Result<RecoveredMovie> recovered = recovery_.recover(cut);
        ASSERT_TRUE(recovered.ok()) << recovered.error().description.toStdString();
        EXPECT_GE(recovered.value().heldSeconds, c.heldAtLeast);
        EXPECT_LE(recovered.value().heldSeconds, c.heldAtMost);
        EXPECT_LE(QFileInfo(cut).size(), movieBytes + 64 * 1024) << "the media data is not copied";
        EXPECT_NEAR(probedDuration(cut), recovered.value().heldSeconds, 0.1);
        const std::vector<DecodedFrame> frames = decodeVideo(cut);
        ASSERT_FALSE(frames.empty());
        EXPECT_NEAR(frames.back().seconds, recovered.value().heldSeconds - 1.0 / 30, 0.05);
        // The picture is the writer's own: the flash of every second the movie holds is there.
        int flashes = 0;
        for (std::size_t index = 0; index < frames.size(); ++index) {
            const bool bright = frames[index].meanLuma > 200;
            if (bright && (index == 0 || frames[index - 1].meanLuma <= 200)) ++flashes;
        }
        EXPECT_EQ(flashes, static_cast<int>(std::ceil(recovered.value().heldSeconds - 0.1)));
    }
}

TEST_F(MovieRecoveryTest, LeavesAMovieItCannotRebuildAsItWas) {
    const QString finished = finishedMovie(
        folder_.path(), videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 320, 180), 2.0);
    ASSERT_TRUE(QDir().mkpath(folder_.filePath(QStringLiteral("other"))));
    const QString otherMovie =
        finishedMovie(folder_.filePath(QStringLiteral("other")),
                      videoOutputSettings(OutputResolution::native, OutputFrameRate::fps30, 256, 144), 2.0);
    ASSERT_FALSE(finished.isEmpty());
    ASSERT_FALSE(otherMovie.isEmpty());
    const QByteArray cutBytes = beforeIndex(readFileBytes(finished));
    const QByteArray journal = readFileBytes(movieJournalPath(finished));
    const Result<MovieJournal> decoded = decodeMovieJournal(journal.toStdString());
    ASSERT_TRUE(decoded.ok());
    QByteArray tracksOnly = QByteArray::fromStdString(encodeMovieJournalStart());
    for (const MovieJournalTrack& track : decoded.value().tracks)
        tracksOnly += QByteArray::fromStdString(encodeMovieJournalTrack(track).value());
    const std::vector<std::pair<const char*, QByteArray>> cases{
        {"no journal", QByteArray()},
        {"the journal of another movie", readFileBytes(movieJournalPath(otherMovie))},
        {"a journal of tracks and no packets", tracksOnly},
        {"a journal that is not one", QByteArray("certainly not a journal")},
    };
    for (const auto& [name, journalBytes] : cases) {
        SCOPED_TRACE(name);
        const QString cut = folder_.filePath(QStringLiteral("cut.mov"));
        QFile::remove(movieJournalPath(cut));
        ASSERT_FALSE(placeCopy(cut, cutBytes, journalBytes).isEmpty());
        const Result<RecoveredMovie> recovered = recovery_.recover(cut);
        ASSERT_FALSE(recovered.ok());
        EXPECT_FALSE(recovered.error().description.isEmpty());
        EXPECT_TRUE(readFileBytes(cut) == cutBytes) << "the movie was changed";
    }
}

TEST_F(MovieRecoveryTest, AFinishedMovieIsLeftAlone) {
    const QString finished = finishedMovie(
        folder_.path(), videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 320, 180), 2.0);
    ASSERT_FALSE(finished.isEmpty());
    const QByteArray before = readFileBytes(finished);
    const Result<RecoveredMovie> recovered = recovery_.recover(finished);
    ASSERT_TRUE(recovered.ok());
    EXPECT_TRUE(recovered.value().wasFinished);
    EXPECT_NEAR(recovered.value().heldSeconds, 2.0, 0.05);
    EXPECT_TRUE(readFileBytes(finished) == before);
}

TEST_F(MovieRecoveryTest, OnAFullDiskTheIndexTakesThePlaceOfTheLastPackets) {
    const QString finished = finishedMovie(
        folder_.path(), videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 320, 180), 3.0);
    ASSERT_FALSE(finished.isEmpty());
    const QByteArray cutBytes = beforeIndex(readFileBytes(finished));
    const QString cut = placeCopy(folder_.filePath(QStringLiteral("cut.mov")), cutBytes,
                                  readFileBytes(movieJournalPath(finished)));
    Result<RecoveredMovie> recovered = Error::withDescription(QStringLiteral("not run"));
    {
        // No file may grow past the movie's present size: the index has to fit inside it.
        const FileSizeLimit limit(static_cast<rlim_t>(cutBytes.size()));
        recovered = recovery_.recover(cut);
    }
    ASSERT_TRUE(recovered.ok()) << recovered.error().description.toStdString();
    EXPECT_GT(recovered.value().packetsLeftOut, 0);
    EXPECT_GT(recovered.value().heldSeconds, 2.0);
    EXPECT_LE(QFileInfo(cut).size(), cutBytes.size());
    EXPECT_NEAR(probedDuration(cut), recovered.value().heldSeconds, 0.1);
    EXPECT_FALSE(decodeVideo(cut).empty());
}

TEST_F(MovieRecoveryTest, AWriterStoppedByAFullDiskLeavesWhatItWroteRecoverable) {
    const QString path = folder_.filePath(QStringLiteral("full.mov"));
    auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
    ASSERT_TRUE(created.ok());
    std::unique_ptr<MovieWriter> writer = std::move(created).value();
    auto video =
        writer->addInput(videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 640, 360));
    ASSERT_TRUE(writer->startWriting());
    writer->startSession(kStartNs);
    {
        const FileSizeLimit limit(256 * 1024);
        for (int index = 0; index < 600 && writer->status() == MovieWriterStatus::writing; ++index)
            appendWhenReady(*video, makeFrame(640, 360, index), kStartNs + index * 33'333'333LL,
                            writer.get());
        if (writer->status() == MovieWriterStatus::writing) {
            ASSERT_TRUE(finishAndWait(*writer));
        }
    }
    ASSERT_EQ(writer->status(), MovieWriterStatus::failed);
    writer.reset();
    const Result<RecoveredMovie> recovered = recovery_.recover(path);
    ASSERT_TRUE(recovered.ok()) << recovered.error().description.toStdString();
    EXPECT_GT(recovered.value().heldSeconds, 0.5);
    EXPECT_NEAR(probedDuration(path), recovered.value().heldSeconds, 0.1);
}

// When the sound source delivers nothing: from `fromSeconds` after the start for `seconds`, or never
// again when `seconds` is infinite.
struct SoundStall {
    double fromSeconds = 0;
    double seconds = 0;
};

// Appends frames at 30 a second and sound every 20 ms in real time from a thread of its own, as a
// capture does; the sound may stall, as a source that delivers nothing would, and then go on from the
// time it is at. Keeps the time of the last frame given.
class RealTimeFeed {
  public:
    RealTimeFeed(MovieWriterInput& video, MovieWriterInput& audio, SoundStall stall)
        : video_(video),
          audio_(audio),
          stallFromNs_(secondsToHostTime(stall.fromSeconds)),
          stallToNs_(std::isinf(stall.seconds) ? std::numeric_limits<HostTimeNs>::max()
                                               : secondsToHostTime(stall.fromSeconds + stall.seconds)) {
        thread_ = std::thread([this] { run(); });
    }
    ~RealTimeFeed() { stop(); }
    void stop() {
        running_ = false;
        if (thread_.joinable()) thread_.join();
    }
    HostTimeNs startNs() const { return startNs_; }
    double lastFrameSeconds() const { return hostTimeToSeconds(lastFrameNs_.load() - startNs_); }
    // The frames the writer took that were given up to `seconds` after the start.
    std::size_t framesTakenBefore(double seconds) const {
        std::lock_guard lock(mutex_);
        return static_cast<std::size_t>(std::count_if(takenNs_.begin(), takenNs_.end(), [&](HostTimeNs at) {
            return at - startNs_ <= secondsToHostTime(seconds);
        }));
    }

  private:
    void run() {
        HostTimeNs nextAudioNs = startNs_;
        for (int index = 0; running_; ++index) {
            const HostTimeNs nowNs = hostTimeNow();
            if (video_.append(makeFrame(320, 180, index % 30, index % 30 == 0), nowNs)) {
                lastFrameNs_ = nowNs;
                std::lock_guard lock(mutex_);
                takenNs_.push_back(nowNs);
            }
            for (; nextAudioNs < nowNs; nextAudioNs += 20'000'000) {
                const HostTimeNs sinceStartNs = nextAudioNs - startNs_;
                if (sinceStartNs >= stallFromNs_ && sinceStartNs < stallToNs_) continue;
                audio_.append(
                    makeAudio(AudioFormatDescription{}, nextAudioNs, 960, startNs_, beepEverySecond()));
            }
            std::this_thread::sleep_until(std::chrono::steady_clock::now() +
                                          std::chrono::microseconds(33'333));
        }
    }

    MovieWriterInput& video_;
    MovieWriterInput& audio_;
    const HostTimeNs stallFromNs_;
    const HostTimeNs stallToNs_;
    const HostTimeNs startNs_ = hostTimeNow();
    std::atomic<HostTimeNs> lastFrameNs_ = startNs_;
    mutable std::mutex mutex_;
    std::vector<HostTimeNs> takenNs_;  // guarded by mutex_
    std::atomic<bool> running_ = true;
    std::thread thread_;
};

// A writer of a small video track and a sound track, writing.
struct LiveWriter {
    std::unique_ptr<MovieWriter> writer;
    std::shared_ptr<MovieWriterInput> video;
    std::shared_ptr<MovieWriterInput> audio;
};

std::optional<LiveWriter> startLiveWriter(const QString& path) {
    auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
    if (!created.ok()) return std::nullopt;
    LiveWriter live{std::move(created).value(), nullptr, nullptr};
    live.video =
        live.writer->addInput(videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 320, 180));
    live.audio = live.writer->addInput(audioOutputSettings());
    if (!live.video || !live.audio || !live.writer->startWriting()) return std::nullopt;
    return live;
}

// The end of the last video packet the journal holds, in seconds of the movie; absent before the first.
std::optional<double> journaledVideoSeconds(const QString& moviePath) {
    const QByteArray bytes = readFileBytes(movieJournalPath(moviePath));
    const Result<MovieJournal> journal =
        decodeMovieJournal(std::string_view(bytes.constData(), bytes.size()));
    if (!journal.ok() || journal.value().tracks.empty()) return std::nullopt;
    std::int64_t num = 0;
    std::int64_t den = 0;
    for (const auto& [name, value] : journal.value().tracks[0].parameters) {
        if (name == "timeBaseNum") num = value;
        if (name == "timeBaseDen") den = value;
    }
    std::optional<double> endSeconds;
    for (const MovieJournalPacket& packet : journal.value().packets) {
        if (packet.track != 0 || den == 0) continue;
        const double end =
            static_cast<double>((packet.pts + packet.duration) * num) / static_cast<double>(den);
        if (!endSeconds || end > *endSeconds) endSeconds = end;
    }
    return endSeconds;
}

TEST_F(MovieRecoveryTest, AStalledSoundTrackHoldsTheVideoBackByAtMostTwoSeconds) {
    const QString path = folder_.filePath(QStringLiteral("stalled.mov"));
    std::optional<LiveWriter> live = startLiveWriter(path);
    ASSERT_TRUE(live);
    RealTimeFeed feed(*live->video, *live->audio, SoundStall{1.0, 6.0});
    live->writer->startSession(feed.startNs());
    // What a kill would leave of the video, against what was given, through the stall and after it.
    double worstLagSeconds = 0;
    int looks = 0;
    for (const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(9);
         std::chrono::steady_clock::now() < until; ++looks) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const double givenSeconds = feed.lastFrameSeconds();
        if (givenSeconds < 2.5) continue;  // the first journal commit and the encoder's start
        const std::optional<double> journaled = journaledVideoSeconds(path);
        worstLagSeconds = std::max(worstLagSeconds, givenSeconds - journaled.value_or(0));
    }
    feed.stop();
    EXPECT_GT(looks, 40);
    EXPECT_LE(worstLagSeconds, 2.0);
    ASSERT_TRUE(finishAndWait(*live->writer));
    EXPECT_EQ(live->writer->status(), MovieWriterStatus::completed);
}

TEST_F(MovieRecoveryTest, ARecordingKilledMidwayLosesAtMostItsLastTwoSeconds) {
    // A copy of the journal and then of the movie, taken while the writer writes, is what a kill leaves.
    const std::vector<std::pair<const char*, SoundStall>> cases{
        {"both tracks flowing", SoundStall{}},
        {"killed four seconds into a six-second stall of the sound", SoundStall{1.0, 6.0}},
        {"the sound stalled for good after half a second", SoundStall{0.5, INFINITY}},
    };
    for (const auto& [name, stall] : cases) {
        SCOPED_TRACE(name);
        const QString path = folder_.filePath(QStringLiteral("live.mov"));
        std::optional<LiveWriter> live = startLiveWriter(path);
        ASSERT_TRUE(live);
        RealTimeFeed feed(*live->video, *live->audio, stall);
        live->writer->startSession(feed.startNs());
        std::this_thread::sleep_for(std::chrono::milliseconds(5000));
        const double killedAtSeconds = hostTimeToSeconds(hostTimeNow() - feed.startNs());
        const QByteArray journal = readFileBytes(movieJournalPath(path));
        const QByteArray movie = readFileBytes(path);
        feed.stop();
        live->writer->cancelWriting();

        const QString killed = placeCopy(folder_.filePath(QStringLiteral("killed.mov")), movie, journal);
        const Result<RecoveredMovie> recovered = recovery_.recover(killed);
        ASSERT_TRUE(recovered.ok()) << recovered.error().description.toStdString();
        EXPECT_GE(recovered.value().heldSeconds, killedAtSeconds - 2.0);
        EXPECT_NEAR(probedDuration(killed), recovered.value().heldSeconds, 0.1);
        // Every frame the writer took up to 2 s before the kill plays (a loaded machine takes fewer
        // than 30 a second).
        EXPECT_GE(decodeVideo(killed).size(), feed.framesTakenBefore(killedAtSeconds - 2.0));
    }
}

}  // namespace
}  // namespace kestrum::test
