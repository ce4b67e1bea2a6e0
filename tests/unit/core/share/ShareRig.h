#pragma once

#include "base/async/ManualClock.h"
#include "core/share/LeagueShareCoordinator.h"
#include "platform/fake/FakeLeagueShareAudioRoute.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeShareableContent.h"
#include "platform/fake/FakeWindowStream.h"
#include "platform/fake/FakeWorkspace.h"

#include <QTemporaryDir>

#include <memory>
#include <mutex>
#include <vector>

namespace kestrum::test {

// A display surface that records what it receives; frames arrive on the output queue, flushes on the
// main thread.
class RecordingSurface final : public LeagueShareDisplaySurface {
  public:
    void enqueueFrame(std::shared_ptr<const PixelBuffer> frame) override {
        std::lock_guard lock(mutex_);
        frames_.push_back(std::move(frame));
    }
    void flush(bool removeDisplayedImage) override { flushes.push_back(removeDisplayedImage); }

    std::vector<std::shared_ptr<const PixelBuffer>> frames() const {
        std::lock_guard lock(mutex_);
        return frames_;
    }
    std::vector<bool> flushes;  // main thread

  private:
    mutable std::mutex mutex_;
    std::vector<std::shared_ptr<const PixelBuffer>> frames_;
};

inline constexpr qint32 kClientProcess = 410;
inline constexpr qint32 kGameProcess = 520;
inline constexpr std::uint32_t kClientWindow = 11;
inline constexpr std::uint32_t kGameWindow = 22;

ShareableWindow leagueWindow(std::uint32_t windowID, qint32 processID, const QString& bundleIdentifier,
                             QSizeF size);
ShareableWindow clientWindow(QSizeF size = {1280, 720});
ShareableWindow gameWindow(QSizeF size = {1920, 1080});
ShareableContentSnapshot snapshotOf(std::vector<ShareableWindow> windows);

// The coordinator on fakes and a manual clock, with a private settings store.
class ShareRig {
  public:
    ShareRig();
    ~ShareRig();

    // Moves the clock by one monitoring period, which runs the next refresh.
    void tick();
    // Waits until the output queue has run what it holds and the main thread has taken what it posted.
    void drain();
    void showWindows(std::vector<ShareableWindow> windows);
    // The stop, awaited.
    void stopAndWait();

    ManualClock clock;
    FakeScreenCaptureAccess access{true};
    FakeShareableContent content;
    FakeWindowStreamFactory streams;
    FakeWorkspace workspace;
    FakeLeagueShareAudioRoute audioRoute;
    QTemporaryDir folder;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<LeagueShareSettings> settings;
    std::unique_ptr<LeagueShareCoordinator> coordinator;
};

}  // namespace kestrum::test
