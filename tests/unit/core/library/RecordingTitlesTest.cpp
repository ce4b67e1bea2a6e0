#include "LibraryTestSupport.h"
#include "core/library/MatchVideo.h"
#include "core/library/ParsedRecordingFileName.h"
#include "core/library/RecordingTitles.h"

namespace kestrum {
namespace {

using std::nullopt;
using Opt = std::optional<std::string>;

// The names the save path writes and the odd ones a user may drop into the folder, with the title
// that the name alone gives.
TEST(ParsedRecordingFileName, ReadsEveryShapeOfName) {
    struct Row {
        const char* name;
        Opt gameMode, champion, lane, title;
    };
    const std::vector<Row> rows{
        {"2026-01-02_10-00-00_CLASSIC_Ahri_MIDDLE.mov", "CLASSIC", "Ahri", "MIDDLE", "Classic · Ahri · Mid"},
        {"2026-01-02_10-00-00_Ahri_UTILITY.mov", nullopt, "Ahri", "UTILITY", "Ahri · Support"},
        {"2026-01-02_10-00-00_ARAM_MonkeyKing_NONE.mov", "ARAM", "MonkeyKing", nullopt, "ARAM · Wukong"},
        {"2026-01-02_10-00-00_CLASSIC_Ahri_MID.mov", "CLASSIC", "Ahri", nullopt, "Classic · Ahri"},
        {"2026-01-02_10-00-00_CLASSIC_Ahri_bottom.MP4", "CLASSIC", "Ahri", "bottom", "Classic · Ahri · Bot"},
        {"2026-01-02__10-00-00__CHERRY_Kaisa.mov", "CHERRY", "Kaisa", nullopt, "Arena · Kai'Sa"},
        {"2026-01-02_10-00-00_ARAM.mov", "ARAM", "ARAM", nullopt,
         "ARAM · Aram"},  // one-piece tail, as it stands
        {"2026-01-02_10-00-00_top.mov", "top", "top", "top", "Top · Top · Top"},
        {"2026-01-02_10-00-00.mov", nullopt, nullopt, nullopt, nullopt},
        {"clip.mov", nullopt, nullopt, nullopt, nullopt},
    };
    for (const Row& row : rows) {
        const ParsedRecordingFileName parsed =
            ParsedRecordingFileName::parse(QStringLiteral("/videos/") + QString::fromUtf8(row.name));
        EXPECT_EQ(parsed, (ParsedRecordingFileName{row.gameMode, row.champion, row.lane})) << row.name;
        EXPECT_EQ(fileNameTitle(parsed), row.title) << row.name;
    }
}

RecordingSessionData withEnrichment(RecordingEnrichmentState::Status status, std::int64_t attempts,
                                    Opt lastError) {
    RecordingSessionData session = test::savedSession();
    session.enrichment = RecordingEnrichmentState{status, attempts, nullopt, std::move(lastError)};
    return session;
}

RecordingSessionData withQueue(std::int64_t queueID) {
    RecordingSessionData session = test::savedSession();
    session.matchData = RecordingMatchData{"EUW1_1", "14.1", queueID, 1800, nullopt, {}, {}};
    return session;
}

TEST(RecordingTitles, TitleFromSessionAndFileName) {
    using Status = RecordingEnrichmentState::Status;
    const char* custom = "Custom · Tournament Draft · Summoner's Rift · Ahri · Mid";
    const std::vector<std::tuple<const char*, RecordingSessionData, const char*>> rows{
        {"x_y_CLASSIC_Ahri_MIDDLE.mov", withEnrichment(Status::failed, 1, "HTTP 404 Not Found"), custom},
        {"x_y_CLASSIC_Ahri_MIDDLE.mov", withEnrichment(Status::retrying, 5, "HTTP 404"), custom},
        {"x_y_CLASSIC_Ahri_MIDDLE.mov", withEnrichment(Status::retrying, 4, "HTTP 404"),
         "Classic · Ahri · Mid"},
        {"x_y_CLASSIC_Ahri_MIDDLE.mov", withEnrichment(Status::failed, 9, "HTTP 500"),
         "Classic · Ahri · Mid"},
        {"x_y_CLASSIC_Ahri_MIDDLE.mov", withQueue(0), custom},
        {"x_y_CLASSIC_Ahri_MIDDLE.mov", withQueue(420), "Ranked Solo/Duo · Ahri · Mid"},
        {"x_y_URF_Ahri_MIDDLE.mov", withQueue(9999), "URF · Ahri · Mid"},
        {"x_y_Ahri_MIDDLE.mov", test::savedSession(), "League Match · Ahri · Mid"},
        {"x_y_kiwi_MonkeyKing_BOTTOM.mov", withQueue(450), "ARAM Mayhem · Wukong · Bot"},
        {"x_y_CHERRY_Kaisa.mov", test::savedSession(), "Arena · Kai'Sa"},
        {"x_y_PRACTICETOOL_Ahri.mov", withQueue(420), "Practice Tool · Ahri"},
        {"clip.mov", test::savedSession(), "League Match"},
    };
    for (const auto& [name, session, title] : rows) {
        EXPECT_EQ(sessionTitle(session, ParsedRecordingFileName::parse(QString::fromUtf8(name))), title)
            << name;
    }
}

// The repair must rewrite a missing or stale generated title and never one the user chose.
TEST(RecordingTitles, RepairsOnlyMissingOrStaleGeneratedTitles) {
    const ParsedRecordingFileName name = ParsedRecordingFileName::parse("x_y_CLASSIC_Ahri_MIDDLE.mov");
    const auto titled = [](Opt title, Opt mediaKind = nullopt) {
        RecordingSessionData session = test::savedSession();
        session.title = std::move(title);
        session.mediaKind = std::move(mediaKind);
        return session;
    };
    const std::vector<std::pair<RecordingSessionData, Opt>> rows{
        {titled(nullopt), "Classic · Ahri · Mid"},
        {titled("League Match · Ahri · Mid"), "Classic · Ahri · Mid"},
        {titled("custom game · Ahri"), "Classic · Ahri · Mid"},
        {titled("Classic · Ahri · Mid"), nullopt},    // already right
        {titled("Finals with friends"), nullopt},     // the user's
        {titled("Ranked Solo/Duo · Ahri"), nullopt},  // not one of the generated heads
        {titled(nullopt, "highlight"), nullopt},
        {titled(nullopt, "clip"), "Classic · Ahri · Mid"},  // only "highlight" is special
    };
    for (const auto& [session, repaired] : rows) {
        EXPECT_EQ(repairedTitle(session, name), repaired) << session.title.value_or("<none>");
    }
}

TEST(MatchVideo, DisplayTitle) {
    const std::vector<std::tuple<std::optional<std::int64_t>, Opt, const char*>> rows{
        {nullopt, nullopt, "Recorded Match"},
        {420, nullopt, "Ranked Solo/Duo"},
        {420, "RANKED SOLO/DUO · Ahri", "RANKED SOLO/DUO · Ahri"},
        {420, "Classic · Ahri · Mid", "Ranked Solo/Duo · Ahri · Mid"},
        {450, "aram · Ahri", "aram · Ahri"},
        {420, "aram · Ahri", "Ranked Solo/Duo · Ahri"},
        {420, "CLASSIC", "Ranked Solo/Duo"},
        {420, "Finals with friends", "Ranked Solo/Duo · Finals with friends"},
        {0, "Custom · Tournament Draft · Summoner's Rift · Ahri",
         "Custom Game · Custom · Tournament Draft · Summoner's Rift · Ahri"},
    };
    for (const auto& [queueID, matchTitle, expected] : rows) {
        MatchVideo video;
        video.queueID = queueID;
        video.matchTitle = matchTitle;
        EXPECT_EQ(displayTitle(video), expected) << matchTitle.value_or("<none>");
    }
}

}  // namespace
}  // namespace kestrum
