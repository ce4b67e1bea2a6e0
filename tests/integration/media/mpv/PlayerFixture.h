#pragma once

#include "PlayerStage.h"
#include "media/mpv/MpvVideoPlayer.h"
#include "media/mpv/MpvVideoPlayerFactory.h"

#include <gtest/gtest.h>

#include <memory>

namespace kestrum::test {

// A stage and players made by the real factory; each player made here is shown or prepared, with
// `notices` listening. Players go before the stage.
class PlayerFixture : public testing::Test {
  protected:
    void SetUp() override {
        KESTRUM_REQUIRE_PLAYER_STAGE();
        stage = std::make_unique<PlayerStage>();
        ASSERT_TRUE(stage->exposed());
    }
    void TearDown() override {
        for (auto& player : players) player->removeListener(notices);
        players.clear();
        stage.reset();
    }

    // A player of `path`, listened to, not shown.
    MpvVideoPlayer& prepare(const QString& path) {
        players.push_back(factory.makeMpvPlayer(path));
        players.back()->addListener(notices);
        return *players.back();
    }
    // A player of `path` shown by the stage's item, loaded, positioned at 0 and ready for display.
    MpvVideoPlayer& show(const QString& path) {
        MpvVideoPlayer& player = prepare(path);
        stage->item().setPlayer(&player);
        EXPECT_TRUE(waitUntilSettled(player));
        EXPECT_TRUE(waitFor([&] { return player.isReadyForDisplay(); }, 15000)) << "never ready for display";
        return player;
    }
    // Seeks exactly and waits for the completion and a picture drawn after it; the stripe then on screen.
    std::optional<qint64> seekAndLook(MpvVideoPlayer& player, double timeSeconds,
                                      VideoSeekTolerance tolerance) {
        const std::uint64_t pictures = stage->item().picturesShown();
        const std::optional<bool> finished = seekAndWait(player, timeSeconds, tolerance);
        EXPECT_EQ(finished, true) << "seek to " << timeSeconds;
        EXPECT_TRUE(stage->waitForPictureAfter(pictures)) << "no picture after the seek to " << timeSeconds;
        runEventLoopFor(150);
        return stage->shownStripeMs();
    }

    const PlayerTestMovies& movies = playerTestMovies();
    MpvVideoPlayerFactory factory;
    std::unique_ptr<PlayerStage> stage;
    PlayerNotices notices;
    std::vector<std::unique_ptr<MpvVideoPlayer>> players;
};

}  // namespace kestrum::test
