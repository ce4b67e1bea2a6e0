#include "RecordingTestSupport.h"
#include "core/recording/RecordingFileName.h"

#include <gtest/gtest.h>

#include <QLocale>

namespace kestrum::test {
namespace {

// A local date; the name is written in local time, so the expected text is independent of the zone.
QDateTime localDate() {
    return QDateTime(QDate(2026, 3, 14), QTime(21, 7, 55, 302), Qt::LocalTime);
}

TEST(recordingFileName, JoinsTheTreatedPartsOfTheMetadata) {
    struct Case {
        const char* name;
        std::optional<RecordingMetadata> metadata;
        QString expected;
    };
    const auto meta = [](std::optional<std::string> mode, std::optional<std::string> champion,
                         std::optional<std::string> position) {
        return RecordingMetadata{std::nullopt, std::move(mode), std::move(champion), std::move(position)};
    };
    const std::vector<Case> cases = {
        {"no metadata", std::nullopt, "2026-03-14_21-07-55.mov"},
        {"one-word mode, two-word champion, NONE", meta("CLASSIC", "Miss Fortune", "NONE"),
         "2026-03-14_21-07-55_CLASSIC_MISSFORTUNE.mov"},
        {"all parts", meta("ARAM", "Ahri", "MIDDLE"), "2026-03-14_21-07-55_ARAM_AHRI_MIDDLE.mov"},
        {"mode with blanks and a colon", meta("  Arena: 2v2  mode ", "Jinx", "BOTTOM"),
         "2026-03-14_21-07-55_Arena_2v2_mode_JINX_BOTTOM.mov"},
        {"lower-case none", meta("CLASSIC", "Lux", "none"), "2026-03-14_21-07-55_CLASSIC_LUX.mov"},
        {"mixed-case None with blanks", meta("CLASSIC", "Lux", " None\n"),
         "2026-03-14_21-07-55_CLASSIC_LUX.mov"},
        {"position that only contains NONE stays", meta(std::nullopt, std::nullopt, "NONE_TOP"),
         "2026-03-14_21-07-55_NONE_TOP.mov"},
        {"punctuation in the champion", meta("CLASSIC", "Kai'Sa", "UTILITY"),
         "2026-03-14_21-07-55_CLASSIC_KAISA_UTILITY.mov"},
        {"Nunu & Willump", meta(std::nullopt, "Nunu & Willump", std::nullopt),
         "2026-03-14_21-07-55_NUNUWILLUMP.mov"},
        {"parts that end up empty", meta(" :: ", "!!", "--"), "2026-03-14_21-07-55.mov"},
        {"absent and blank parts", meta(std::nullopt, "   ", ""), "2026-03-14_21-07-55.mov"},
        {"letters of other scripts are kept", meta("Ранговая игра", "ゼド", "TOP"),
         "2026-03-14_21-07-55_Ранговая_игра_ゼド_TOP.mov"},
        {"a scalar outside the basic plane counts once", meta("A\U0001F600B", "\U0001D400x", std::nullopt),
         "2026-03-14_21-07-55_A_B_\U0001D400X.mov"},
    };
    const QLocale savedLocale;
    QLocale::setDefault(QLocale::c());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(recordingFileName(localDate(), c.metadata), c.expected);
    }
    QLocale::setDefault(savedLocale);
}

}  // namespace
}  // namespace kestrum::test
