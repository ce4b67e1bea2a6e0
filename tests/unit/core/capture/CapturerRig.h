#pragma once

#include "ScriptedMovieWriter.h"
#include "base/async/Job.h"
#include "core/capture/GameCapturer.h"
#include "core/recording/RecordingBundleIdentifiers.h"
#include "core/recording/RecordingFolderStore.h"
#include "platform/fake/FakeAudioStream.h"
#include "platform/fake/FakeFolderPicker.h"
#include "platform/fake/FakeMicrophoneAccess.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeShareableContent.h"
#include "platform/fake/FakeWindowStream.h"
#include "platform/fake/FakeWorkspace.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QTemporaryDir>

#include <optional>

namespace kestrum::test {

// A GameCapturer on fake ports: a desktop with the game's 640x360 window on one display, a recordings
// folder and an in-progress folder in a private directory. The movie writer and the clock are the
// test's choice.
class CapturerRig {
  public:
    static constexpr qint32 kGamePid = 4242;

    // `recovery` rebuilds the movies of failed writers; the rig's scripted one when null.
    CapturerRig(MovieWriterFactory& writers, Clock& clock, const MovieRecovery* recovery = nullptr) {
        QDir().mkpath(recordingsFolder());
        folderStore.takeFolder(recordingsFolder());
        workspace.setRunningApplications({game});
        setGameWindowSize(640, 360);
        capturer.emplace(GameCapturerEnvironment{workspace, content, windowStreams, audioStreams,
                                                 screenAccess, microphoneAccess, writers,
                                                 recovery != nullptr ? *recovery : scriptedRecovery, savePath,
                                                 defaults, clock, inProgressFolder()});
    }

    void setGameWindowSize(int width, int height) {
        const ShareableApplication owner{kGamePid, QString(RecordingBundleIdentifiers::gameClient),
                                         QStringLiteral("League of Legends.exe")};
        content.setContent({{ShareableWindow{77, QStringLiteral("League of Legends (TM) Client"),
                                             QRectF(100, 100, width, height), true, owner}},
                            {ShareableDisplay{1, QRectF(0, 0, 1920, 1080)}},
                            {owner}});
    }
    QString recordingsFolder() const { return directory.path() + QStringLiteral("/Recordings"); }
    QString inProgressFolder() const { return directory.path() + QStringLiteral("/InProgress"); }
    QStringList inProgressFiles() const { return QDir(inProgressFolder()).entryList(QDir::Files); }
    QStringList savedMovies() const {
        return QDir(recordingsFolder()).entryList({QStringLiteral("*.mov")}, QDir::Files);
    }

    // Starts the capture and returns at its first suspension.
    Job<std::optional<ReferenceDate>> startWithoutWaiting() {
        return Job<std::optional<ReferenceDate>>::start(
            [this](CancellationToken) { return capturer->startCapture(); });
    }
    // Starts the capture and returns once its window stream runs (or the start ended).
    Job<std::optional<ReferenceDate>> start() {
        auto job = startWithoutWaiting();
        waitUntil([&] { return job.isFinished() || (stream() && stream()->core.isStarted()); }, 10000);
        return job;
    }
    std::optional<ReferenceDate> awaitStart(Job<std::optional<ReferenceDate>>& job) {
        waitUntil([&] { return job.isFinished(); }, 10000);
        return job.isFinished() ? *job.result() : std::nullopt;
    }
    void finish() {
        auto job = Job<void>::start([this](CancellationToken) -> QCoro::Task<void> {
            return capturer->finishCapture(std::nullopt, {}, {});
        });
        waitUntil([&] { return job.isFinished(); }, 30000);
    }
    void focusGame() { workspace.activate(game); }
    void focusElsewhere() { workspace.activate(other); }
    FakeWindowStream* stream() const { return windowStreams.lastStream(); }
    FakeAudioStream* audio() const { return audioStreams.lastStream(); }
    // Waits until writeQueue ran everything queued so far.
    void drainWriteQueue() {
        capturer->writeQueue().sync([] {});
    }

    const RunningApplication game{QString(RecordingBundleIdentifiers::gameClient), kGamePid,
                                  QStringLiteral("League of Legends.exe")};
    const RunningApplication other{QStringLiteral("org.example.Editor"), 17, QStringLiteral("Editor")};

    QTemporaryDir directory;
    UserDefaults defaults{directory.path() + QStringLiteral("/defaults.json")};
    FakeFolderPicker picker;
    RecordingFolderStore folderStore{defaults, picker};
    NotificationCenter notifications;
    RecordingSavePath savePath{folderStore, notifications};
    FakeWorkspace workspace;
    FakeShareableContent content;
    FakeWindowStreamFactory windowStreams;
    FakeAudioStreamFactory audioStreams;
    FakeScreenCaptureAccess screenAccess;
    FakeMicrophoneAccess microphoneAccess;
    ScriptedMovieRecovery scriptedRecovery;
    std::optional<GameCapturer> capturer;
};

}  // namespace kestrum::test
