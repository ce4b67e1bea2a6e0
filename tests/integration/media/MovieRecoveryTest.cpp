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

#include <atomic>
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

// Appends frames at 30 a second and sound every 20 ms in real time from a thread of its own, as a
// capture does; the sound may stop early, as a stalled source would.
class RealTimeFeed {
  public:
    RealTimeFeed(MovieWriterInput& video, MovieWriterInput& audio, double audioStopsAfterSeconds)
        : video_(video), audio_(audio), audioStopsAfterNs_(secondsToHostTime(audioStopsAfterSeconds)) {
        thread_ = std::thread([this] { run(); });
    }
    ~RealTimeFeed() { stop(); }
    void stop() {
        running_ = false;
        if (thread_.joinable()) thread_.join();
    }
    HostTimeNs startNs() const { return startNs_; }

  private:
    void run() {
        HostTimeNs nextAudioNs = startNs_;
        for (int index = 0; running_; ++index) {
            const HostTimeNs nowNs = hostTimeNow();
            video_.append(makeFrame(320, 180, index % 30, index % 30 == 0), nowNs);
            for (; nextAudioNs < nowNs && nextAudioNs - startNs_ < audioStopsAfterNs_;
                 nextAudioNs += 20'000'000)
                audio_.append(
                    makeAudio(AudioFormatDescription{}, nextAudioNs, 960, startNs_, beepEverySecond()));
            std::this_thread::sleep_until(std::chrono::steady_clock::now() +
                                          std::chrono::microseconds(33'333));
        }
    }

    MovieWriterInput& video_;
    MovieWriterInput& audio_;
    const HostTimeNs audioStopsAfterNs_;
    const HostTimeNs startNs_ = hostTimeNow();
    std::atomic<bool> running_ = true;
    std::thread thread_;
};

TEST_F(MovieRecoveryTest, ARecordingKilledMidwayLosesAtMostItsLastTwoSeconds) {
    // A copy of the journal and then of the movie, taken while the writer writes, is what a kill leaves.
    const std::vector<std::pair<const char*, double>> cases{
        {"both tracks flowing", 1e9},
        {"the sound stalled after half a second", 0.5},
    };
    for (const auto& [name, audioStopsAfter] : cases) {
        SCOPED_TRACE(name);
        const QString path = folder_.filePath(QStringLiteral("live.mov"));
        auto created = ffmpeg::FfmpegMovieWriterFactory().createWriter(path, MovieFileType::quickTimeMovie);
        ASSERT_TRUE(created.ok());
        std::unique_ptr<MovieWriter> writer = std::move(created).value();
        auto video =
            writer->addInput(videoOutputSettings(OutputResolution::p720, OutputFrameRate::fps30, 320, 180));
        auto audio = writer->addInput(audioOutputSettings());
        ASSERT_TRUE(writer->startWriting());
        RealTimeFeed feed(*video, *audio, audioStopsAfter);
        writer->startSession(feed.startNs());
        std::this_thread::sleep_for(std::chrono::milliseconds(5000));
        const double killedAtSeconds = hostTimeToSeconds(hostTimeNow() - feed.startNs());
        const QByteArray journal = readFileBytes(movieJournalPath(path));
        const QByteArray movie = readFileBytes(path);
        feed.stop();
        writer->cancelWriting();

        const QString killed = placeCopy(folder_.filePath(QStringLiteral("killed.mov")), movie, journal);
        const Result<RecoveredMovie> recovered = recovery_.recover(killed);
        ASSERT_TRUE(recovered.ok()) << recovered.error().description.toStdString();
        EXPECT_GE(recovered.value().heldSeconds, killedAtSeconds - 2.0);
        EXPECT_NEAR(probedDuration(killed), recovered.value().heldSeconds, 0.1);
        EXPECT_GE(decodeVideo(killed).size(), static_cast<std::size_t>((killedAtSeconds - 2.0) * 30 * 0.9));
    }
}

}  // namespace
}  // namespace kestrum::test
