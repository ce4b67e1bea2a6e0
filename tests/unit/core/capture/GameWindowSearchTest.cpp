#include "base/async/ManualClock.h"
#include "core/capture/GameWindowSearch.h"
#include "core/recording/RecordingBundleIdentifiers.h"
#include "platform/fake/FakeShareableContent.h"
#include "platform/fake/FakeWorkspace.h"

#include <gtest/gtest.h>

#include <QCoroTask>

#include <chrono>

namespace kestrum::test {
namespace {

using namespace std::chrono_literals;

constexpr qint32 kGamePid = 4242;
const ShareableApplication kGame{kGamePid, QString(), QStringLiteral("League of Legends.exe")};
const ShareableApplication kOther{17, QStringLiteral("org.example.Editor"), QStringLiteral("Editor")};

ShareableWindow window(std::uint32_t id, std::optional<QString> title, double width, double height,
                       std::optional<ShareableApplication> owner = kGame) {
    return ShareableWindow{id, std::move(title), QRectF(0, 0, width, height), true, std::move(owner)};
}

struct ChoiceRow {
    const char* name;
    std::vector<ShareableWindow> windows;
    std::optional<std::uint32_t> titled;
    std::optional<std::uint32_t> largest;
};

class WindowChoice : public testing::TestWithParam<ChoiceRow> {};

TEST_P(WindowChoice, picksTheLargestTitledThenTheLargestCandidate) {
    const ChoiceRow& row = GetParam();
    const GameWindowAttempt attempt = evaluateGameWindowAttempt({row.windows, {}, {}}, {kGamePid});
    EXPECT_EQ(attempt.titled ? std::optional(attempt.titled->windowID) : std::nullopt, row.titled);
    EXPECT_EQ(attempt.largest ? std::optional(attempt.largest->windowID) : std::nullopt, row.largest);
}

const ShareableApplication kGameByIdentifier{
    9, QStringLiteral("com.riotgames.LeagueofLegends.GameClient"), {}};

INSTANTIATE_TEST_SUITE_P(
    Rows, WindowChoice,
    testing::Values(ChoiceRow{"titleMatchIsCaseInsensitiveWithWordsAround",
                              {window(1, QStringLiteral("THE LEAGUE OF LEGENDS CLIENT (beta)"), 800, 600)},
                              1,
                              1},
                    ChoiceRow{"largerUntitledNeverBeatsTitled",
                              {window(1, QStringLiteral("League of Legends"), 800, 600),
                               window(2, QString(), 1920, 1080)},
                              1,
                              2},
                    ChoiceRow{"equalAreasKeepTheFirstListed",
                              {window(3, std::nullopt, 600, 800), window(4, std::nullopt, 800, 600)},
                              std::nullopt,
                              3},
                    ChoiceRow{"onePointWideIsNoCandidate",
                              {window(5, QStringLiteral("League of Legends"), 1, 600)},
                              std::nullopt,
                              std::nullopt},
                    ChoiceRow{"otherOwnersAndOwnerlessAreIgnored",
                              {window(6, QStringLiteral("League of Legends"), 800, 600, kOther),
                               window(7, QStringLiteral("League of Legends"), 800, 600, std::nullopt)},
                              std::nullopt,
                              std::nullopt},
                    ChoiceRow{"ownerFoundByBundleIdentifier",
                              {window(8, QStringLiteral("League of Legends"), 640, 480, kGameByIdentifier)},
                              8,
                              8}),
    [](const auto& info) { return std::string(info.param.name); });

using SearchResult = Result<std::optional<ShareableWindow>>;

// Parameters, not lambda captures: a coroutine outlives the lambda object that would hold them.
QCoro::Task<void> storeResult(QCoro::Task<SearchResult> task, std::optional<SearchResult>* out) {
    *out = co_await std::move(task);
}

// The search over a scripted desktop and a manual clock.
class WindowSearch : public testing::Test {
  public:
    void SetUp() override {
        workspace_.setRunningApplications({{QString(RecordingBundleIdentifiers::gameClient), kGamePid,
                                            QStringLiteral("League of Legends.exe")}});
    }
    void TearDown() override { clock_.advance(1h); }

    // Runs the search, advancing the clock half a second at a time; gives the result and the seconds taken.
    std::pair<Result<std::optional<ShareableWindow>>, double> search(int attempts,
                                                                     CancellationToken token = {}) {
        const auto started = clock_.now();
        auto task = waitForGameWindow({content_, workspace_, clock_}, attempts, 500ms, token);
        std::optional<SearchResult> result;
        auto finished = storeResult(std::move(task), &result);
        while (!result) {
            QCoreApplication::processEvents();
            if (!result) clock_.advance(500ms);
        }
        return {std::move(*result), std::chrono::duration<double>(clock_.now() - started).count()};
    }

    ManualClock clock_;
    FakeWorkspace workspace_;
    FakeShareableContent content_;
};

TEST_F(WindowSearch, takesATitledWindowAtOnce) {
    content_.setContent({{window(1, QStringLiteral("League of Legends (TM) Client"), 1280, 720)}, {}, {}});
    auto [result, seconds] = search(120);
    ASSERT_TRUE(result.ok() && result.value());
    EXPECT_EQ(result.value()->windowID, 1u);
    EXPECT_EQ(seconds, 0.0);
    EXPECT_TRUE(content_.lastExcludedDesktopWindows() && content_.lastOnScreenWindowsOnly());
}

TEST_F(WindowSearch, acceptsAnUntitledWindowFromTheTwentiethAttempt) {
    content_.setContent({{window(2, std::nullopt, 1280, 720)}, {}, {}});
    auto [result, seconds] = search(120);
    ASSERT_TRUE(result.ok() && result.value());
    EXPECT_EQ(content_.callCount(), 21);
    EXPECT_DOUBLE_EQ(seconds, 10.0);
}

TEST_F(WindowSearch, keepsTheLastBestWhenTheWindowVanishesAndGivesItAtTheLastAttempt) {
    content_.queueContent(ShareableContentSnapshot{{window(3, std::nullopt, 640, 480)}, {}, {}});
    auto [result, seconds] = search(3);
    ASSERT_TRUE(result.ok() && result.value());
    EXPECT_EQ(result.value()->windowID, 3u);
    EXPECT_EQ(content_.callCount(), 3);
}

TEST_F(WindowSearch, endsAbsentWithNoWindowZeroAttemptsOrCancellation) {
    EXPECT_FALSE(search(4).first.value());
    EXPECT_EQ(content_.callCount(), 4);
    EXPECT_FALSE(search(0).first.value());
    CancellationToken cancelled;
    cancelled.cancel();
    EXPECT_FALSE(search(120, cancelled).first.value());
    EXPECT_EQ(content_.callCount(), 4);
}

TEST_F(WindowSearch, contentErrorEndsTheSearchAtOnce) {
    content_.setError(Error::withDescription(QStringLiteral("no display")));
    auto [result, seconds] = search(120);
    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().description, QStringLiteral("no display"));
    EXPECT_EQ(content_.callCount(), 1);
}

}  // namespace
}  // namespace kestrum::test
