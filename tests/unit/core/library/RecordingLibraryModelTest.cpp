#include "LibraryTestSupport.h"
#include "core/library/RecordingGameSessions.h"
#include "core/library/RecordingLibraryModel.h"
#include "core/settings/SettingsKeys.h"

#include <QCoroTask>
#include <QPromise>
#include <QTemporaryDir>

#include <memory>

namespace kestrum {
namespace {

using std::nullopt;
using Matches = std::vector<MatchVideo>;
using Promise = QPromise<Result<Matches>>;

const QDateTime kEvening(QDate(2026, 1, 2), QTime(21, 0));
const QString kFolder = QStringLiteral("/v");

QStringList pathsOf(const Matches& matches) {
    QStringList paths;
    for (const auto& match : matches) paths << match.url;
    return paths;
}

class RecordingLibraryModelTest : public testing::Test {
  protected:
    // A model whose scans end when the test says so, in any order: the real scanner's queue ends them
    // in the order they were asked for, which would hide a stale result applied late.
    std::unique_ptr<RecordingLibraryModel> gatedModel() {
        return std::make_unique<RecordingLibraryModel>(defaults_, kFolder, [this](const QString&) {
            scans_.push_back(std::make_shared<Promise>());
            scans_.back()->start();
            return scans_.back()->future();
        });
    }
    void finishScan(std::size_t index, Result<Matches> result) {
        scans_.at(index)->addResult(std::move(result));
        scans_.at(index)->finish();
    }
    void refreshWith(RecordingLibraryModel& model, const Matches& matches) {
        QCoro::Task<void> refreshing = model.refresh(kFolder);
        finishScan(scans_.size() - 1, matches);
        QCoro::waitFor(std::move(refreshing));
    }
    void storeCache(const QString& folder, const Matches& matches) {
        const std::string bytes = encodeLibraryCache({folder.toStdString(), matches}).value();
        defaults_.setData(QByteArray::fromStdString(bytes), SettingsKeys::recordingLibraryCache);
    }

    QTemporaryDir home_;
    UserDefaults defaults_{home_.path() + QStringLiteral("/defaults.json")};
    std::vector<std::shared_ptr<Promise>> scans_;
    const MatchVideo a_ = test::entry("/v/a.mov", kEvening, "ARAM", "MID");
    const MatchVideo b_ = test::entry("/v/b.mov", kEvening.addSecs(-600), "CLASSIC", "TOP");
};

TEST_F(RecordingLibraryModelTest, OnlyTheLastStartedRefreshApplies) {
    auto model = gatedModel();
    QCoro::Task<void> first = model->refresh(kFolder);
    QCoro::Task<void> second = model->refresh(kFolder);
    finishScan(1, Matches{b_});
    QCoro::waitFor(std::move(second));
    finishScan(0, Matches{a_, b_});
    QCoro::waitFor(std::move(first));
    EXPECT_EQ(model->matches(), Matches{b_});
    EXPECT_EQ(model->selectedMatch(), b_);

    QCoro::Task<void> failing = model->refresh(kFolder);
    finishScan(2, Error::withDescription(QStringLiteral("The folder is gone.")));
    QCoro::waitFor(std::move(failing));
    EXPECT_EQ(model->scanError(), QStringLiteral("The folder is gone."));
    EXPECT_EQ(model->matches(), Matches{b_});  // a failure changes nothing else
    refreshWith(*model, {a_});
    EXPECT_EQ(model->scanError(), nullopt);
}

// Against the real scanner: a removal or a clear while a scan runs wins over the scan's stale result.
TEST_F(RecordingLibraryModelTest, RemovalDuringRefreshStaysRemoved) {
    QTemporaryDir folder;
    const QString first = folder.path() + QStringLiteral("/2026-01-02_10-00-00_ARAM_Ahri.mov");
    const QString second = folder.path() + QStringLiteral("/2026-01-02_11-00-00_ARAM_Lux.mov");
    test::writeFile(first);
    test::writeFile(second);
    RecordingLibraryModel model(defaults_, folder.path());
    QCoro::waitFor(model.refresh(folder.path()));
    ASSERT_EQ(model.matches().size(), 2u);

    QCoro::Task<void> stale = model.refresh(folder.path());
    model.removeMatches({first}, folder.path());
    QCoro::waitFor(std::move(stale));
    EXPECT_EQ(pathsOf(model.matches()), QStringList{second});
    const QByteArray stored = *defaults_.dataForKey(SettingsKeys::recordingLibraryCache);
    EXPECT_EQ(pathsOf(decodeLibraryCache(stored.toStdString()).value().matches), QStringList{second});

    QCoro::Task<void> cleared = model.refresh(folder.path());
    model.clear();
    QCoro::waitFor(std::move(cleared));
    EXPECT_TRUE(model.matches().empty());
}

// What a refresh does to the selection: entries are matched by movie, and a changed record of the same
// movie replaces the selected one; members whose movie is gone drop out; with the recording on show gone
// or hidden, the newest visible member takes its place, else the first visible entry.
TEST_F(RecordingLibraryModelTest, RefreshCarriesTheSelectionOverByMovie) {
    MatchVideo retitledA = a_;
    retitledA.matchTitle = "ARAM · Ahri";
    const MatchVideo c = test::entry("/v/c.mov", kEvening.addSecs(-1200), "ARAM", "MID");
    const MatchVideo d = test::entry("/v/d.mov", kEvening.addSecs(-1800), "ARAM", "MID");
    const MatchVideo topC = test::entry("/v/c.mov", kEvening.addSecs(-1200), "ARAM", "TOP");
    struct Row {
        const char* name;
        std::optional<MatchVideo> shown;
        Matches members;
        Matches newList;
        std::optional<std::string> laneFilter;
        std::optional<MatchVideo> expectedShown;
        Matches expectedMembers;
    };
    const std::vector<Row> rows{
        {"a changed record of the same movie replaces it",
         a_,
         {a_},
         {retitledA, b_},
         nullopt,
         retitledA,
         {retitledA}},
        {"members whose movie is gone drop out", a_, {a_, b_, c}, {a_, c, d}, nullopt, a_, {a_, c}},
        {"the one on show gone: the newest member", a_, {a_, d, c}, {b_, c, d}, nullopt, c, {d, c}},
        {"the one on show hidden: the newest visible member",
         a_,
         {a_, topC, d},
         {a_, b_, topC, d},
         "TOP",
         topC,
         {a_, topC, d}},
        {"nothing left of the selection: the first visible entry", a_, {a_}, {b_, c}, nullopt, b_, {b_}},
        {"nothing left and nothing visible", a_, {a_}, {b_}, "MIDDLE", nullopt, {}},
        {"an empty list", a_, {a_}, {}, nullopt, nullopt, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        auto model = gatedModel();
        refreshWith(*model, {a_, b_, c, d});
        model->setSelectedMatch(row.shown);
        model->setSelectedMatches(row.members);
        model->setSelectedLaneFilter(row.laneFilter);
        refreshWith(*model, row.newList);
        EXPECT_EQ(model->selectedMatch(), row.expectedShown);
        EXPECT_EQ(model->selectedMatches(), row.expectedMembers);
    }
}

TEST_F(RecordingLibraryModelTest, CacheOfAnotherFolderIsIgnoredUntilTheFirstScan) {
    storeCache(QStringLiteral("/other"), {a_});
    auto model = gatedModel();
    EXPECT_TRUE(model->matches().empty());
    refreshWith(*model, {b_});
    EXPECT_EQ(model->matches(), Matches{b_});
    const auto reopened = gatedModel();  // the cache of its own folder shows at once
    EXPECT_EQ(reopened->matches(), Matches{b_});
    EXPECT_EQ(reopened->selectedMatch(), b_);
}

TEST_F(RecordingLibraryModelTest, FavouritesArePrunedToTheListAndStored) {
    defaults_.setStringArray({"/v/a.mov", "/v/gone.mov"}, SettingsKeys::favoriteRecordingPaths);
    auto model = gatedModel();
    refreshWith(*model, {a_, b_});
    EXPECT_EQ(model->favoritePaths(), QSet<QString>{"/v/a.mov"});
    EXPECT_EQ(defaults_.stringArrayForKey(SettingsKeys::favoriteRecordingPaths), QStringList{"/v/a.mov"});

    model->selectCollection(RecordingLibraryCollection::favorites);
    EXPECT_EQ(model->selectedMatch(), a_);
    model->toggleFavorite(a_);  // the last favourite, while favourites are shown
    EXPECT_EQ(model->selectedMatch(), nullopt);
    EXPECT_EQ(defaults_.stringArrayForKey(SettingsKeys::favoriteRecordingPaths), QStringList{});
}

TEST_F(RecordingLibraryModelTest, HighlightsAndStoredFiltersDecideWhatIsVisible) {
    defaults_.setString("ARAM", SettingsKeys::recordingGameModeFilter);
    defaults_.setString("MIDDLE", SettingsKeys::recordingLaneFilter);
    const MatchVideo clip = test::entry("/v/clip.mov", kEvening.addSecs(60), "ARAM", "MIDDLE", "highlight");
    const MatchVideo noRole = test::entry("/v/c.mov", kEvening.addSecs(-60), "ARAM");
    storeCache(kFolder, {clip, a_, noRole, b_});
    auto model = gatedModel();
    EXPECT_EQ(model->matches().size(), 4u);
    EXPECT_EQ(model->matchCount(RecordingLibraryCollection::fullMatches), 3);
    EXPECT_EQ(model->visibleMatches(), Matches{a_});
    model->setSelectedLaneFilter(nullopt);
    model->setSelectedChampionFilter("ahri");
    EXPECT_TRUE(model->visibleMatches().empty());  // neither championAssetName nor champion
    model->setSelectedChampionFilter(nullopt);
    EXPECT_EQ(model->visibleMatches(), (Matches{a_, noRole}));
}

TEST(RecordingGameSessions, NeighboursWithinAnHourShareASession) {
    const auto sessionSizes = [](std::vector<int> gapsSeconds) {
        Matches matches{test::entry("/v/0.mov", kEvening)};
        for (const int gap : gapsSeconds) {
            matches.push_back(test::entry("/v/n.mov", matches.back().date.toDateTime().addSecs(-gap)));
        }
        std::vector<std::size_t> sizes;
        for (const auto& session : groupSessions(matches)) sizes.push_back(session.matches.size());
        return sizes;
    };
    EXPECT_EQ(sessionSizes({3600}), (std::vector<std::size_t>{2}));
    EXPECT_EQ(sessionSizes({3601}), (std::vector<std::size_t>{1, 1}));
    EXPECT_EQ(sessionSizes({3000, 3000}), (std::vector<std::size_t>{3}));
    EXPECT_EQ(sessionSizes({60, 4000, 60, 3601}), (std::vector<std::size_t>{2, 2, 1}));
}

TEST(RecordingGameSessions, HeaderNamesTheDayAndTheTimes) {
    const QDateTime now(QDate(2026, 1, 5), QTime(23, 30));
    const auto header = [&](QLocale locale, const QDateTime& newest,
                            std::optional<QDateTime> oldest = nullopt) {
        RecordingGameSession session{{test::entry("/v/n.mov", newest)}};
        if (oldest) session.matches.push_back(test::entry("/v/o.mov", *oldest));
        return sessionHeader(session, now, locale).replace(QChar(0x202F), QLatin1Char(' ')).toStdString();
    };
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    EXPECT_EQ(header(english, QDateTime(QDate(2026, 1, 5), QTime(0, 5))), "Today · 12:05 AM");
    EXPECT_EQ(header(english, QDateTime(QDate(2026, 1, 4), QTime(23, 59))), "Yesterday · 11:59 PM");
    EXPECT_EQ(header(english, QDateTime(QDate(2026, 1, 3), QTime(21, 0)),
                     QDateTime(QDate(2026, 1, 3), QTime(19, 45))),
              "Jan 3, 2026 · 7:45 PM–9:00 PM");
    EXPECT_EQ(header(QLocale::German, QDateTime(QDate(2025, 12, 24), QTime(18, 0))), "24. Dez. 2025 · 18:00");
}

}  // namespace
}  // namespace kestrum
