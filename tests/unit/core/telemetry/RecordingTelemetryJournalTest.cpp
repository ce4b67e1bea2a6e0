// The telemetry journal of a recording in progress: every kind of line read back, and what a crash or
// damage leaves of a journal.
#include "SessionDocumentFixtures.h"
#include "core/telemetry/RecordingTelemetryJournal.h"
#include "core/telemetry/RecordingTelemetryJournalCodec.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace kestrum {
namespace {

RecordingEvent event(std::int64_t id, double videoTime, std::string name = "ChampionKill") {
    RecordingEvent made;
    made.id = id;
    made.videoTime = videoTime;
    made.name = std::move(name);
    return made;
}

std::string line(const RecordingTelemetryJournalLine& value) {
    return encodeRecordingTelemetryJournalLine(value).value();
}

RecordingTelemetryJournalLine eventsLine(std::vector<RecordingEvent> events) {
    RecordingTelemetryJournalLine made;
    made.events = std::move(events);
    return made;
}

TEST(RecordingTelemetryJournal, EveryKindOfLineReadsBack) {
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        SCOPED_TRACE(round);
        const RecordingSessionData document = test::randomSessionData(random);
        RecordingTelemetryJournalLine start;
        start.recordingStartedAt = ReferenceDate{7.5e8 + round};
        RecordingTelemetryJournalLine metadata;
        metadata.metadata =
            RecordingMetadata{std::nullopt, "CLASSIC", "Miss Fortune", round % 2 ? "NONE" : "BOTTOM"};
        std::string bytes = line(start) + line(metadata) + line(eventsLine(document.events));
        for (const RecordingScoreboardSnapshot& snapshot :
             document.scoreboard.value_or(std::vector<RecordingScoreboardSnapshot>{})) {
            RecordingTelemetryJournalLine snapshotLine;
            snapshotLine.snapshot = snapshot;
            bytes += line(snapshotLine);
        }
        const RecordingTelemetryJournalContents read = decodeRecordingTelemetryJournal(bytes);
        EXPECT_EQ(read.skippedLines, 0);
        EXPECT_EQ(read.recordingStartedAt, start.recordingStartedAt);
        EXPECT_EQ(read.metadata, metadata.metadata);
        EXPECT_EQ(read.telemetry.scoreboard,
                  document.scoreboard.value_or(std::vector<RecordingScoreboardSnapshot>{}));
        std::vector<RecordingEvent> unique;
        for (const RecordingEvent& candidate : document.events) {
            if (std::none_of(unique.begin(), unique.end(),
                             [&](const auto& kept) { return kept.id == candidate.id; }))
                unique.push_back(candidate);
        }
        std::stable_sort(unique.begin(), unique.end(), [](const RecordingEvent& a, const RecordingEvent& b) {
            return a.videoTime < b.videoTime;
        });
        EXPECT_EQ(read.telemetry.events, unique);
    }
}

TEST(RecordingTelemetryJournal, PutsTheDocumentTogetherFromWhatSurvived) {
    RecordingTelemetryJournalLine firstStart;
    firstStart.recordingStartedAt = ReferenceDate{100};
    RecordingTelemetryJournalLine laterStart;
    laterStart.recordingStartedAt = ReferenceDate{200};
    RecordingTelemetryJournalLine early;
    early.metadata = RecordingMetadata{std::nullopt, "ARAM", std::nullopt, std::nullopt};
    RecordingTelemetryJournalLine late;
    late.metadata = RecordingMetadata{std::nullopt, "ARAM", "Ahri", "MIDDLE"};
    const std::string cutShort = line(eventsLine({event(9, 40)}));
    struct Case {
        const char* name;
        std::string bytes;
        std::vector<std::int64_t> eventIDs;
        int skipped;
        std::optional<ReferenceDate> startedAt;
        std::optional<std::string> champion;
    };
    const std::vector<Case> cases{
        {"the last line cut by a crash",
         line(firstStart) + line(eventsLine({event(1, 12)})) + cutShort.substr(0, cutShort.size() / 2),
         {1},
         1,
         ReferenceDate{100},
         std::nullopt},
        {"a damaged line in the middle",
         line(firstStart) + line(eventsLine({event(1, 12)})) + "{\"events\":[{\"id\":\"x\"}]}\n" +
             line(eventsLine({event(2, 30)})),
         {1, 2},
         1,
         ReferenceDate{100},
         std::nullopt},
        {"an event seen twice keeps its first form, and order is by movie time",
         line(eventsLine({event(5, 50), event(3, 20)})) +
             line(eventsLine({event(5, 10, "Other"), event(4, 5)})),
         {4, 3, 5},
         0,
         std::nullopt,
         std::nullopt},
        {"the first start and the last metadata count",
         line(firstStart) + line(early) + line(laterStart) + line(late),
         {},
         0,
         ReferenceDate{100},
         "Ahri"},
        {"blank lines, and a whole last line without its line feed",
         "\n\n" + line(eventsLine({event(1, 1)})).substr(0, line(eventsLine({event(1, 1)})).size() - 1),
         {1},
         0,
         std::nullopt,
         std::nullopt},
        {"nothing", "", {}, 0, std::nullopt, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const RecordingTelemetryJournalContents read = decodeRecordingTelemetryJournal(c.bytes);
        std::vector<std::int64_t> ids;
        for (const RecordingEvent& kept : read.telemetry.events) ids.push_back(kept.id);
        EXPECT_EQ(ids, c.eventIDs);
        EXPECT_EQ(read.skippedLines, c.skipped);
        EXPECT_EQ(read.recordingStartedAt, c.startedAt);
        EXPECT_EQ(read.metadata ? read.metadata->champion : std::nullopt, c.champion);
    }
    const RecordingTelemetryJournalContents duplicated = decodeRecordingTelemetryJournal(
        line(eventsLine({event(5, 50)})) + line(eventsLine({event(5, 10, "Other")})));
    ASSERT_EQ(duplicated.telemetry.events.size(), 1u);
    EXPECT_EQ(duplicated.telemetry.events[0].name, "ChampionKill");
}

TEST(RecordingTelemetryJournal, WritesWhatIsAppendedBesideTheMovie) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("kestrum_A.mov.telemetry"));
    ASSERT_TRUE(test::writeFileBytes(path, "left over from an earlier run\n"));
    auto journal = RecordingTelemetryJournal::create(path, ReferenceDate{42});
    ASSERT_TRUE(journal.ok());
    journal.value()->appendEvents({event(1, 3), event(2, 4)});
    journal.value()->appendEvents({});
    journal.value()->appendMetadata(RecordingMetadata{"7", "CLASSIC", "Garen", "TOP"});
    RecordingEvent unwritable = event(3, std::numeric_limits<double>::infinity());
    journal.value()->appendEvents({unwritable});
    journal.value()->close();
    journal.value()->appendEvents({event(4, 5)});  // after the close: dropped
    const RecordingTelemetryJournalContents read =
        decodeRecordingTelemetryJournal(test::readFileBytes(path).toStdString());
    EXPECT_EQ(read.skippedLines, 0);
    EXPECT_EQ(read.recordingStartedAt, ReferenceDate{42});
    EXPECT_EQ(read.telemetry.events, (std::vector<RecordingEvent>{event(1, 3), event(2, 4)}));
    EXPECT_EQ(read.metadata, (RecordingMetadata{"7", "CLASSIC", "Garen", "TOP"}));
    EXPECT_FALSE(
        RecordingTelemetryJournal::create(folder.filePath(QStringLiteral("gone/x")), ReferenceDate{1}).ok());
}

}  // namespace
}  // namespace kestrum
