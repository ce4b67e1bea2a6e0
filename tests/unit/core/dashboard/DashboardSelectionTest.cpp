#include "DashboardTestSupport.h"
#include "core/settings/SettingsKeys.h"

#include <QSignalSpy>

#include <functional>

namespace kestrum::test {
namespace {

using Kind = FakeVideoPlayer::Call::Kind;

const MatchVideo kFirst = recording(QStringLiteral("/recordings/first.mov"));
const MatchVideo kSecond = recording(QStringLiteral("/recordings/second.mov"), 600);
const MatchVideo kThird = recording(QStringLiteral("/recordings/third.mov"), 1200);
const MatchVideo kFourth = recording(QStringLiteral("/recordings/fourth.mov"), 1800);

std::vector<Kind> kindsOf(const std::vector<FakeVideoPlayer::Call>& calls) {
    std::vector<Kind> kinds;
    for (const auto& call : calls) kinds.push_back(call.kind);
    return kinds;
}

bool played(const FakeVideoPlayer& player) {
    const auto kinds = kindsOf(player.calls());
    return std::find(kinds.begin(), kinds.end(), Kind::playImmediatelyAtRate) != kinds.end();
}

class DashboardSelectionTest : public testing::Test {
  protected:
    DashboardSelectionTest() {
        h.controller();
        h.showLibrary({kFirst, kSecond, kThird, kFourth});
    }

    DashboardHarness h;
};

TEST_F(DashboardSelectionTest, ASelectionDuringALoadDropsTheOlderJobs) {
    // The library selected the newest on its first list; its detail is still loading.
    ASSERT_EQ(h.loads.details.size(), 1u);
    h.select(kSecond);
    ASSERT_EQ(h.loads.details.size(), 2u);
    h.loads.finishDetail(1, detailWith({event(1, "GameStart", 30)}, 900));
    EXPECT_EQ(h.controller().playback()->videoDuration(), 900);
    EXPECT_EQ(h.controller().playback()->currentTime(), 29);

    // The older load ends last: nothing of it lands on the newer selection.
    h.loads.finishDetail(0, detailWith({event(1, "GameStart", 100)}, 1500));
    EXPECT_EQ(h.controller().playback()->videoDuration(), 900);
    EXPECT_EQ(h.controller().playback()->currentTime(), 29);
    EXPECT_EQ(h.controller().timeline()->duration(), 900);
    EXPECT_EQ(h.player()->currentItemPath(), kSecond.url);
    EXPECT_FALSE(h.controller().playback()->isLoadingRecording());

    // A selection made while the seek to the start runs: the seek's end changes nothing any more.
    h.player()->completesSeeksAtOnce = false;
    h.select(kThird);
    FakeVideoPlayer* third = h.player();
    third->completesSeeksAtOnce = false;
    h.loads.finishLatestDetailFor(kThird.url, detailWith({}, 600));
    ASSERT_TRUE(third->hasPendingSeek());
    h.select(kFourth);
    third->finishPendingSeek(true);
    DashboardHarness::settle();
    EXPECT_EQ(third->forwardPlaybackEndTime(), std::nullopt) << "the outdated job stopped after its await";
    EXPECT_TRUE(h.controller().playback()->isLoadingRecording()) << "the newer selection is still loading";
}

TEST_F(DashboardSelectionTest, TheRecordingOpensOneSecondBeforeTheGameStartsAndEndsAtItsDuration) {
    struct Row {
        const char* name;
        std::vector<RecordingEvent> events;
        double expectedStart;
    };
    const std::vector<Row> rows = {
        {"game start at 42 s", {event(1, "Loading", 3), event(2, "GameStart", 42)}, 41},
        {"game start within the first second", {event(1, "GameStart", 0.5)}, 0},
        {"no game start", {event(1, "ChampionKill", 300)}, 0},
        {"only the first game start counts", {event(1, "GameStart", 20), event(2, "GameStart", 90)}, 19},
    };
    const std::vector<MatchVideo> order = {kSecond, kThird, kFourth, kFirst};
    h.loads.finishDetail(0, detailWith({}, 100));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].name);
        h.select(order[i]);
        h.loads.finishDetail(h.loads.details.size() - 1, detailWith(rows[i].events, 1200));
        FakeVideoPlayer& player = *h.player();
        ASSERT_FALSE(player.seeks().empty());
        EXPECT_EQ(player.seeks().back().value, rows[i].expectedStart);
        EXPECT_TRUE(player.seeks().back().tolerance.isExact());
        EXPECT_EQ(h.controller().playback()->currentTime(), rows[i].expectedStart);
        EXPECT_EQ(player.forwardPlaybackEndTime(), 1200);
        EXPECT_FALSE(h.controller().playback()->isLoadingRecording());
    }
}

TEST_F(DashboardSelectionTest, ADetailThatCannotBeLoadedLeavesTheMovieToPlayFromZero) {
    h.loads.finishDetail(0, DetailPointer());
    EXPECT_FALSE(h.controller().playback()->isLoadingRecording());
    EXPECT_EQ(h.controller().playback()->videoDuration(), 0);
    EXPECT_EQ(h.player()->forwardPlaybackEndTime(), std::nullopt) << "no end of zero that would stop it";
    h.controller().playback()->skip(5);  // no duration: inert
    EXPECT_FALSE(h.controller().playback()->hasToast());
    h.controller().playback()->togglePlayback();
    EXPECT_EQ(h.player()->timeControlStatus(), VideoPlayerTimeControlStatus::playing);
}

// P while loading asks for playing; the player starts when the detail job ends, and only when the
// selection came from a click that asked to play.
TEST_F(DashboardSelectionTest, PlayDuringLoadingWaitsForTheDetailAndForAnAutoplaySelection) {
    struct Row {
        const char* name;
        bool byClick;
        bool pressesP;
        bool expectPlaying;
    };
    const std::vector<Row> rows = {
        {"click, then P: P takes the wish back", true, true, false},
        {"click alone plays", true, false, true},
        {"keyboard selection, then P: no autoplay was asked", false, true, false},
        {"keyboard selection alone", false, false, false},
    };
    const std::vector<MatchVideo> order = {kSecond, kThird, kFourth, kSecond};
    h.loads.finishDetail(0, detailWith({}, 100));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].name);
        if (rows[i].byClick) {
            h.controller().sidebar()->clickCard(h.controller().sidebar()->cards()->rowOf(order[i].url));
            DashboardHarness::settle();
        } else {
            h.select(order[i]);
        }
        FakeVideoPlayer& player = *h.player();
        player.clearCalls();
        if (rows[i].pressesP) {
            const bool wasRequested = h.controller().playback()->requestedIsPlaying();
            EXPECT_TRUE(h.controller().handleKey(Qt::Key_P, 0, QStringLiteral("p"), false, true, false));
            EXPECT_EQ(h.controller().playback()->requestedIsPlaying(), !wasRequested);
            EXPECT_EQ(h.controller().playback()->toastTitle(),
                      QString::fromLatin1(wasRequested ? "Paused" : "Playing"));
            EXPECT_FALSE(played(player)) << "not while loading";
        }
        h.loads.finishDetail(h.loads.details.size() - 1, detailWith({}, 600));
        EXPECT_EQ(played(player), rows[i].expectPlaying);
        EXPECT_EQ(player.timeControlStatus() == VideoPlayerTimeControlStatus::playing, rows[i].expectPlaying);
        player.pause();
    }
}

TEST_F(DashboardSelectionTest, ANewPlayerTakesTheStoredVolumeAndMuteAndTheSpeedStartsAgain) {
    h.loads.finishDetail(0, detailWith({}, 100));
    h.defaults.setDouble(0.35, SettingsKeys::playbackVolume);
    h.defaults.setBool(true, SettingsKeys::playbackMuted);
    h.controller().playback()->stepSpeed(1);
    ASSERT_EQ(h.controller().playback()->playbackRate(), 1.25);
    h.select(kSecond);
    EXPECT_EQ(h.player()->volume(), 0.35);
    EXPECT_TRUE(h.player()->isMuted());
    EXPECT_EQ(h.player()->defaultRate(), 1);
    EXPECT_EQ(h.controller().playback()->playbackRate(), 1);
    EXPECT_EQ(h.controller().timeline()->playbackRate(), 1);
}

TEST_F(DashboardSelectionTest, PreparedPlayersAreReusedAndPrunedToTheSelectionAndItsNeighbours) {
    h.loads.finishDetail(0, detailWith({}, 100));
    for (const MatchVideo& match : {kSecond, kThird, kFourth}) {
        h.select(match);
        h.loads.finishDetail(h.loads.details.size() - 1, detailWith({}, 100));
    }
    DashboardPreparedPlayers& prepared = h.controller().selection().preparedPlayers();
    // Fourth selected: only third and fourth stay (the list ends there).
    EXPECT_EQ(prepared.count(), 2u);
    EXPECT_TRUE(prepared.contains(preparedPlayerKey(kThird.url)));
    EXPECT_TRUE(prepared.contains(preparedPlayerKey(kFourth.url)));
    h.select(kThird);  // a neighbour: its player is taken again, no new one is made
    EXPECT_EQ(h.factory.madeFor.count(kThird.url), 1);
    EXPECT_EQ(h.player()->currentItemPath(), kThird.url);
}

TEST(DashboardPreparedPlayers, TheSameRecordingChangedOnDiskGetsANewPlayer) {
    QTemporaryDir folder;
    const QString movie = folder.filePath(QStringLiteral("game.mov"));
    ASSERT_TRUE(writeFileBytes(movie, "first take"));
    FakePlayerFactory factory;
    DashboardPreparedPlayers players(factory);
    const auto first = players.playerFor(movie);
    const auto again = players.playerFor(movie);
    EXPECT_TRUE(first.isNew);
    EXPECT_FALSE(again.isNew);
    EXPECT_EQ(first.player, again.player);
    EXPECT_EQ(preparedPlayerKey(movie).split(QLatin1Char('|')).size(), 3);

    ASSERT_TRUE(writeFileBytes(movie, "a longer second take"));
    const auto changed = players.playerFor(movie);
    EXPECT_TRUE(changed.isNew);
    EXPECT_NE(changed.player, first.player);

    // A file out of reach is keyed by its path alone.
    EXPECT_EQ(preparedPlayerKey(folder.filePath(QStringLiteral("gone.mov"))),
              folder.filePath(QStringLiteral("gone.mov")));
    players.clear();
    EXPECT_EQ(first.player->currentItemPath(), std::nullopt) << "cleared players are emptied";
}

TEST(DashboardSelectionOnDisk, SelectingARecordingAgainAfterItsFileChangedMakesANewPlayer) {
    QTemporaryDir folder;
    const MatchVideo a = recording(folder.filePath(QStringLiteral("a.mov")));
    const MatchVideo b = recording(folder.filePath(QStringLiteral("b.mov")), 600);
    ASSERT_TRUE(writeFileBytes(a.url, "first take") && writeFileBytes(b.url, "other game"));
    DashboardHarness h(folder.path());
    h.controller();
    h.showLibrary({a, b});
    h.select(b);
    h.select(a);
    EXPECT_EQ(h.factory.madeFor.count(a.url), 1) << "unchanged: the prepared player is taken again";
    h.select(b);
    ASSERT_TRUE(writeFileBytes(a.url, "a longer second take"));
    h.select(a);
    EXPECT_EQ(h.factory.madeFor.count(a.url), 2);
    EXPECT_EQ(h.player()->currentItemPath(), a.url);
}

TEST_F(DashboardSelectionTest, AMovieThatCannotBeOpenedShowsAMessageInsteadOfLoadingForever) {
    h.factory.unopenable.insert(kSecond.url);
    h.loads.finishDetail(0, detailWith({}, 100));
    DashboardHarness::settle();
    EXPECT_EQ(h.controller().movieStateName(), QStringLiteral("ready"));
    h.select(kSecond);
    EXPECT_EQ(h.controller().movieStateName(), QStringLiteral("damaged"));
    EXPECT_TRUE(h.controller().showsDamagedMessage());
    EXPECT_FALSE(h.controller().showsLoadingOverlay());
    MatchCardListModel& cards = *h.controller().sidebar()->cards();
    EXPECT_TRUE(cards.value(cards.rowOf(kSecond.url), QStringLiteral("isDamaged")).toBool());
    EXPECT_EQ(cards.value(cards.rowOf(kSecond.url), QStringLiteral("damagedText")).toString(),
              QStringLiteral("Movie can’t be opened"));
    EXPECT_FALSE(cards.value(cards.rowOf(kFirst.url), QStringLiteral("isDamaged")).toBool());

    // A failure found later by the player itself.
    h.select(kThird);
    h.loads.finishDetail(h.loads.details.size() - 1, detailWith({}, 100));
    h.player()->failCurrentItem(QStringLiteral("moov atom not found"));
    DashboardHarness::settle();
    EXPECT_EQ(h.controller().movieStateName(), QStringLiteral("damaged"));
    EXPECT_TRUE(cards.value(cards.rowOf(kThird.url), QStringLiteral("isDamaged")).toBool());
}

struct DamagedDocumentCase {
    const char* name;
    bool finishesDetail;
    bool detailRead;  // with finishesDetail: the document was read (else the load gave none)
    bool showsTimeline;
    const char* message;
};

// The message under a damaged movie promises the events and the scoreboard only when they are shown.
TEST_F(DashboardSelectionTest, ADamagedMovieShowsItsDocumentOnlyWhenReadAndSaysOnlyThat) {
    const QString cannotOpen =
        QStringLiteral("The movie file could not be opened. It may be damaged or incomplete.");
    const DamagedDocumentCase cases[] = {
        {"document read", true, true, true,
         "The movie file could not be opened. It may be damaged or incomplete. Its events are on the "
         "timeline below; hold Tab or press O for the scoreboard."},
        {"document unreadable", true, false, false,
         "The movie file could not be opened. It may be damaged or incomplete."},
        {"document still loading", false, false, false,
         "The movie file could not be opened. It may be damaged or incomplete."},
    };
    h.factory.unopenable.insert(kSecond.url);
    for (const DamagedDocumentCase& row : cases) {
        SCOPED_TRACE(row.name);
        h.select(kFirst);
        h.select(kSecond);
        if (row.finishesDetail) {
            h.loads.finishDetail(h.loads.details.size() - 1,
                                 row.detailRead ? detailWith({event(1, "GameStart", 4)}, 90) : nullptr);
        }
        ASSERT_TRUE(h.controller().showsDamagedMessage());
        EXPECT_EQ(h.controller().showsTimeline(), row.showsTimeline);
        EXPECT_EQ(h.controller().damagedMessage(), QString::fromUtf8(row.message));
        EXPECT_EQ(h.controller().timeline()->duration() > 0, row.showsTimeline);
        EXPECT_TRUE(h.controller().handleKey({Qt::Key_O, Qt::NoModifier, QStringLiteral("o"), false, true,
                                              DashboardKeyFocus::playbackSurface}));
        EXPECT_TRUE(h.controller().isScoreboardPinned()) << "O pins the scoreboard of a damaged movie";
        h.controller().setScoreboardPinned(false);
    }
    h.select(kThird);
    EXPECT_TRUE(h.controller().showsTimeline()) << "a movie that opens keeps its strip while it loads";
    EXPECT_TRUE(h.controller().damagedMessage().startsWith(cannotOpen));
}

FakeVideoPlayer* preparedPlayerOf(DashboardHarness& h, const MatchVideo& match) {
    for (const std::shared_ptr<VideoPlayer>& player :
         h.controller().selection().preparedPlayers().players()) {
        if (player->currentItemPath() == match.url) return static_cast<FakeVideoPlayer*>(player.get());
    }
    return nullptr;
}

// Once a recording has loaded, its neighbours are prepared: a player each, paused exactly at their own
// start; selecting one then takes that player as it stands, with no second seek.
TEST_F(DashboardSelectionTest, TheNeighboursArePreparedAtTheirStartAndShownWithoutASecondSeek) {
    QSignalSpy preparedChanges(&h.controller(), &DashboardController::preparedPlayersChanged);
    h.select(kSecond);
    h.loads.finishDetail(h.loads.details.size() - 1, detailWith({event(1, "GameStart", 30)}, 100));
    DashboardHarness::settle();
    EXPECT_EQ(h.factory.madeFor.count(kFirst.url), 1) << "the neighbour before";
    EXPECT_EQ(h.factory.madeFor.count(kThird.url), 1) << "the neighbour after";
    EXPECT_EQ(h.factory.madeFor.count(kFourth.url), 0) << "no further than the neighbours";
    EXPECT_GT(preparedChanges.count(), 0);
    EXPECT_EQ(h.controller().selection().preparedPlayers().count(), 3u)
        << "the selection and its two neighbours";

    struct Neighbour {
        MatchVideo match;
        std::vector<RecordingEvent> events;
        double start;
    };
    const Neighbour neighbours[] = {
        {kThird, {event(1, "GameStart", 10.5)}, 9.5},
        {kFirst, {}, 0},
    };
    for (const Neighbour& neighbour : neighbours) {
        SCOPED_TRACE(neighbour.match.url.toStdString());
        // The neighbour's own detail gives its start.
        h.loads.finishLatestDetailFor(neighbour.match.url, detailWith(neighbour.events, 100));
        DashboardHarness::settle();
        FakeVideoPlayer* player = preparedPlayerOf(h, neighbour.match);
        ASSERT_NE(player, nullptr);
        ASSERT_EQ(player->seeks().size(), 1u);
        EXPECT_EQ(player->seeks().front().value, neighbour.start);
        EXPECT_TRUE(player->seeks().front().tolerance.isExact());
        EXPECT_FALSE(played(*player));
    }

    FakeVideoPlayer* third = preparedPlayerOf(h, kThird);
    ASSERT_NE(third, nullptr);
    third->clearCalls();
    h.select(kThird);
    h.loads.finishDetail(h.loads.details.size() - 1, detailWith({event(1, "GameStart", 10.5)}, 100));
    DashboardHarness::settle();
    EXPECT_EQ(h.factory.madeFor.count(kThird.url), 1) << "the prepared player is taken";
    EXPECT_EQ(h.player(), third);
    EXPECT_TRUE(third->seeks().empty()) << "it stands at its start already";
    EXPECT_FALSE(h.controller().playback()->isLoadingRecording());
    EXPECT_EQ(h.factory.madeFor.count(kFourth.url), 1) << "the new neighbour after is prepared";

    // Moved away from its start, the same player is sought back when selected again.
    h.select(kSecond);
    h.loads.finishDetail(h.loads.details.size() - 1, detailWith({event(1, "GameStart", 30)}, 100));
    DashboardHarness::settle();
    third->seek(50, VideoSeekTolerance::exact());
    DashboardHarness::settle();
    third->clearCalls();
    h.select(kThird);
    h.loads.finishDetail(h.loads.details.size() - 1, detailWith({event(1, "GameStart", 10.5)}, 100));
    DashboardHarness::settle();
    ASSERT_EQ(third->seeks().size(), 1u);
    EXPECT_EQ(third->seeks().front().value, 9.5);
}

// Preparing a neighbour makes a player, opens its movie and decodes: it waits until the selection's own
// picture is on screen, or until its movie turns out damaged and no picture will come.
TEST(DashboardSelectionNeighbours, WaitForTheSelectionsPictureOrItsFailure) {
    struct Row {
        const char* name;
        std::function<void(FakeVideoPlayer&)> ends;
    };
    const Row rows[] = {
        {"the picture shows", [](FakeVideoPlayer& player) { player.setReadyForDisplay(true); }},
        {"the movie is damaged",
         [](FakeVideoPlayer& player) { player.failCurrentItem(QStringLiteral("bad")); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        DashboardHarness h;
        h.factory.picturesShowByThemselves = false;
        h.controller();
        h.showLibrary({kFirst, kSecond, kThird, kFourth});
        h.select(kSecond);
        h.loads.finishDetail(h.loads.details.size() - 1, detailWith({event(1, "GameStart", 30)}, 100));
        DashboardHarness::settle();
        EXPECT_FALSE(h.controller().playback()->isLoadingRecording());
        // The first recording's player stays from the library's first selection; the third has none.
        EXPECT_FALSE(h.factory.madeFor.contains(kThird.url)) << "no neighbour before the picture";
        EXPECT_EQ(h.controller().selection().preparedPlayers().count(), 2u);

        row.ends(*h.player());
        DashboardHarness::settle();
        EXPECT_EQ(h.factory.madeFor.count(kThird.url), 1);
        EXPECT_EQ(h.controller().selection().preparedPlayers().count(), 3u);

        // A newer selection drops the wait of the older one: its picture coming late prepares nothing.
        h.select(kFourth);
        FakeVideoPlayer* fourth = h.player();
        h.select(kFirst);
        h.loads.finishLatestDetailFor(kFirst.url, detailWith({}, 100));
        DashboardHarness::settle();
        const qsizetype madeBefore = h.factory.madeFor.size();
        fourth->setReadyForDisplay(true);
        DashboardHarness::settle();
        EXPECT_EQ(h.factory.madeFor.size(), madeBefore) << "the outdated picture prepares nothing";
    }
}

// The detail is asked for as the selection changes, before the player is made, so that reading it and
// opening the movie overlap.
TEST_F(DashboardSelectionTest, TheDetailIsAskedForBeforeThePlayerIsMade) {
    const std::size_t detailsBefore = h.loads.details.size();
    const qsizetype playersBefore = h.factory.madeFor.size();
    h.library.setSelectedMatches({kThird});
    h.library.setSelectedMatch(kThird);
    ASSERT_EQ(h.loads.details.size(), detailsBefore + 1) << "asked for at once";
    EXPECT_EQ(h.loads.details.back().moviePath, kThird.url);
    EXPECT_EQ(h.factory.madeFor.size(), playersBefore) << "the player comes after a turn of the event loop";
    h.loads.finishDetail(h.loads.details.size() - 1, detailWith({event(1, "GameStart", 12)}, 100));
    DashboardHarness::settle();
    EXPECT_EQ(h.player()->currentItemPath(), kThird.url);
    ASSERT_FALSE(h.player()->seeks().empty());
    EXPECT_EQ(h.player()->seeks().back().value, 11);
    const auto asked = std::count_if(h.loads.details.begin(), h.loads.details.end(),
                                     [](const auto& pending) { return pending.moviePath == kThird.url; });
    EXPECT_EQ(asked, 1) << "one detail for the selection, not two";
}

TEST_F(DashboardSelectionTest, AnEntryTheLibraryFoundDamagedSaysSoBeforeItIsOpened) {
    MatchVideo cutOff = recording(QStringLiteral("/recordings/cut-off.mov"), 1800);
    cutOff.damageReason = "The movie was cut off before it was finished: it has no index.";
    h.showLibrary({kFirst, cutOff});
    MatchCardListModel& cards = *h.controller().sidebar()->cards();
    EXPECT_TRUE(cards.value(cards.rowOf(cutOff.url), QStringLiteral("isDamaged")).toBool());
    EXPECT_EQ(cards.value(cards.rowOf(cutOff.url), QStringLiteral("damagedText")).toString(),
              QStringLiteral("Movie can’t be opened"));
    EXPECT_FALSE(cards.value(cards.rowOf(kFirst.url), QStringLiteral("isDamaged")).toBool());
}

TEST_F(DashboardSelectionTest, NoSelectionClearsEverything) {
    h.loads.finishDetail(0, detailWith({event(1, "GameStart", 10)}, 100));
    h.controller().setScoreboardPinned(true);
    h.library.setSelectedMatch(std::nullopt);
    DashboardHarness::settle();
    DashboardPlayback& playback = *h.controller().playback();
    EXPECT_FALSE(playback.hasPlayer());
    EXPECT_EQ(playback.videoDuration(), 0);
    EXPECT_EQ(playback.videoAspectRatio(), 16.0 / 9.0);
    EXPECT_EQ(playback.currentTime(), 0);
    EXPECT_FALSE(h.controller().isScoreboardPinned());
    EXPECT_EQ(h.controller().movieStateName(), QStringLiteral("none"));
    EXPECT_EQ(h.controller().timeline()->duration(), 0);
}

TEST_F(DashboardSelectionTest, TheThumbnailShowsWhileTheSelectionLoads) {
    QImage picture(32, 18, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    h.loads.thumbnails[kSecond.url] = picture;
    QSignalSpy thumbnails(&h.controller(), &DashboardController::thumbnailChanged);
    h.select(kSecond);
    EXPECT_TRUE(h.controller().hasThumbnail());
    EXPECT_EQ(h.controller().recordingThumbnail(), picture);
    EXPECT_TRUE(h.controller().showsLoadingOverlay());
    EXPECT_FALSE(h.controller().thumbnailID().isEmpty());
    h.select(kThird);
    EXPECT_FALSE(h.controller().hasThumbnail()) << "a new selection clears the old picture";
    EXPECT_GE(thumbnails.count(), 2);
}

TEST_F(DashboardSelectionTest, ThePositionIsReadTwentyTimesASecondWhileTheWindowShows) {
    h.loads.finishDetail(0, detailWith({}, 1800));
    h.controller().appear();
    FakeVideoPlayer& player = *h.player();
    player.play();
    QSignalSpy times(h.controller().playback(), &DashboardPlayback::currentTimeChanged);
    for (int tick = 0; tick < 20; ++tick) {
        player.advancePlayhead(0.05);
        h.clock.advance(std::chrono::milliseconds(50));
    }
    EXPECT_EQ(times.count(), 20);
    EXPECT_NEAR(h.controller().playback()->currentTime(), 1.0, 1e-9);
    EXPECT_NEAR(h.controller().scoreboard()->currentTime(), 1.0, 1e-9);
    h.controller().disappear();
    player.advancePlayhead(1);
    h.clock.advance(std::chrono::seconds(1));
    EXPECT_NEAR(h.controller().playback()->currentTime(), 1.0, 1e-9) << "no reads once the window went";
}

TEST_F(DashboardSelectionTest, TheWindowGoingStopsTheJobsAndEmptiesThePlayersAndComingBackReloads) {
    h.loads.finishDetail(0, detailWith({}, 100));
    h.controller().appear();
    FakeVideoPlayer* shown = h.player();
    shown->play();
    h.select(kSecond);  // its detail still loads when the window goes
    h.controller().disappear();
    EXPECT_EQ(h.controller().selection().preparedPlayers().count(), 0u);
    EXPECT_EQ(h.player()->currentItemPath(), std::nullopt);
    h.loads.finishDetail(1, detailWith({}, 700));
    EXPECT_EQ(h.controller().playback()->videoDuration(), 0) << "the cancelled detail job wrote nothing";

    h.controller().appear();
    DashboardHarness::settle();
    EXPECT_EQ(h.player()->currentItemPath(), kSecond.url) << "the selection gets its movie back";
}

}  // namespace
}  // namespace kestrum::test
