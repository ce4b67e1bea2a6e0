#pragma once

#include "StripeMovies.h"
#include "media/mpv/MpvVideoPlayerItem.h"
#include "platform/ports/VideoPlayer.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QQuickWindow>
#include <QSize>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrum::test {

// Why the player's tests cannot run here (no Xvfb, no PulseAudio, no test movies), or empty when they
// can. Set once by the tests' main.
QString playerStageMissing();
void setPlayerStageMissing(const QString& reason);
const PlayerTestMovies& playerTestMovies();

// Skips the current test, saying why, when the stage is missing; in CI (KESTRUM_REQUIRE_MEDIA=1) the
// main fails instead, before any test runs.
#define KESTRUM_REQUIRE_PLAYER_STAGE()                                                                   \
    do {                                                                                                 \
        if (!::kestrum::test::playerStageMissing().isEmpty()) {                                          \
            GTEST_SKIP() << "cannot play here: " << ::kestrum::test::playerStageMissing().toStdString(); \
        }                                                                                                \
    } while (false)

// A window on the test's X server filled by one MpvVideoPlayerItem, and its pictures as a person sees
// them. Main thread.
class PlayerStage {
  public:
    explicit PlayerStage(QSize size = {960, 540});
    ~PlayerStage();
    PlayerStage(const PlayerStage&) = delete;
    PlayerStage& operator=(const PlayerStage&) = delete;

    QQuickWindow& window() { return *window_; }
    MpvVideoPlayerItem& item() { return *item_; }
    bool exposed() const { return exposed_; }

    // The window drawn afresh.
    QImage grab();
    // The clock stripe on screen, in milliseconds; absent when none reads back.
    std::optional<qint64> shownStripeMs();
    // Waits until the item has drawn more than `picturesBefore` pictures.
    bool waitForPictureAfter(std::uint64_t picturesBefore, int timeoutMs = 10000);

  private:
    std::unique_ptr<QQuickWindow> window_;
    MpvVideoPlayerItem* item_ = nullptr;  // owned by the window's content item
    bool exposed_ = false;
};

// Runs the event loop (sleeping while there is nothing to do: a loop that spins would starve the player's
// threads and the software OpenGL on a small machine) for `milliseconds`, or until `predicate` holds,
// checked every 5 ms; returns the predicate's last value.
void runEventLoopFor(int milliseconds);
bool waitFor(const std::function<bool()>& predicate, int timeoutMs = 10000);

// Seeks and waits for the completion: its value, or absent when none came within the time.
std::optional<bool> seekAndWait(VideoPlayer& player, double timeSeconds, VideoSeekTolerance tolerance,
                                int timeoutMs = 15000);

// Waits until the player is loaded and positioned (its first seek done, ready when shown) or has failed.
bool waitUntilSettled(VideoPlayer& player, int timeoutMs = 15000);

// Writes every notice as a word, in order.
class PlayerNotices final : public VideoPlayerListener {
  public:
    void timeControlStatusChanged(VideoPlayerTimeControlStatus status) override {
        words.push_back("status " + std::to_string(static_cast<int>(status)));
    }
    void didPlayToEndTime() override { words.push_back("end"); }
    void readyForDisplayChanged(bool ready) override { words.push_back(ready ? "ready" : "not ready"); }
    void playbackFailed(const QString& /*reason*/) override { words.push_back("failed"); }

    long count(const std::string& word) const { return std::count(words.begin(), words.end(), word); }

    std::vector<std::string> words;
};

}  // namespace kestrum::test
