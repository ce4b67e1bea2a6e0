#include "core/dashboard/DashboardGuide.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <QSet>

namespace kestrum {
namespace {

const DashboardGuideSection* sectionTitled(const std::vector<DashboardGuideSection>& sections,
                                           const QString& title) {
    for (const DashboardGuideSection& section : sections) {
        if (section.title == title) return &section;
    }
    return nullptr;
}

// The key each binding names works: pressed as the guide tells (typed keys by their character), it
// does what the guide says, so the guide cannot drift from the key map.
TEST(DashboardGuide, EveryBindingItListsDoesWhatTheGuideSays) {
    const std::vector<DashboardGuideSection> sections = DashboardGuide::sections();
    for (const DashboardKeyBinding& binding : dashboardKeyBindings()) {
        SCOPED_TRACE(binding.keyLabel);
        DashboardKeyInput input;
        input.key = binding.key;
        input.text = binding.typed ? QString(QLatin1Char(binding.typed)) : QString();
        input.modifiers = binding.withControl ? Qt::ControlModifier : Qt::NoModifier;
        input.focus = binding.scope == DashboardKeyScope::sidebar ? DashboardKeyFocus::sidebar
                                                                  : DashboardKeyFocus::playbackSurface;
        const DashboardKeyDecision decision = decideDashboardKey(input, true);
        EXPECT_EQ(decision, (DashboardKeyDecision{true, binding.action}));

        int rowsNamingIt = 0;
        for (const DashboardGuideSection& section : sections) {
            for (const DashboardGuideRow& row : section.rows) {
                const QStringList keys = row.keys.split(QStringLiteral(" or "));
                if (keys.contains(QString::fromUtf8(binding.keyLabel)) &&
                    row.effect == DashboardGuide::effectOf(binding.action))
                    ++rowsNamingIt;
            }
        }
        EXPECT_EQ(rowsNamingIt, 1);
    }
}

TEST(DashboardGuide, RowsGroupTheKeysOfOneActionInTheirScope) {
    struct Row {
        const char* section;
        DashboardGuideRow row;
    };
    const Row rows[] = {
        {"Playback", {"Space or P", "Play or pause"}},
        {"Playback", {"↑", "Volume up"}},
        {"Playback", {"Hold Tab", "Show the scoreboard while held"}},
        {"In the List of Recordings", {"↑", "Select the recording above"}},
        {"In the List of Recordings", {"Delete or Backspace", "Back 10 seconds"}},
        {"Anywhere in the Window", {"Control-R", "Refresh the library"}},
        {"Anywhere in the Window", {"Escape", "Close the scoreboard or this guide"}},
        {"With the Pointer", {"Swipe a recording left", "Move to Trash, with 5 seconds to undo"}},
    };
    const std::vector<DashboardGuideSection> sections = DashboardGuide::sections();
    for (const Row& expected : rows) {
        SCOPED_TRACE(expected.row.keys.toStdString());
        const DashboardGuideSection* section = sectionTitled(sections, QString::fromUtf8(expected.section));
        ASSERT_NE(section, nullptr);
        EXPECT_NE(std::find(section->rows.begin(), section->rows.end(), expected.row), section->rows.end());
    }
    QSet<QString> effects;
    for (const DashboardGuideSection& section : sections) {
        EXPECT_FALSE(section.rows.empty()) << section.title.toStdString();
        for (const DashboardGuideRow& row : section.rows) {
            EXPECT_FALSE(row.effect.isEmpty()) << row.keys.toStdString();
            EXPECT_FALSE(effects.contains(section.title + row.effect))
                << "one row per action: " << row.effect.toStdString();
            effects.insert(section.title + row.effect);
        }
    }
}

TEST(DashboardGuide, TheViewReadsTheSameSectionsAsMaps) {
    const std::vector<DashboardGuideSection> sections = DashboardGuide::sections();
    const QVariantList forView = DashboardGuide::sectionsForView();
    ASSERT_EQ(forView.size(), static_cast<qsizetype>(sections.size()));
    const QVariantMap first = forView.front().toMap();
    EXPECT_EQ(first.value(QStringLiteral("title")).toString(), sections.front().title);
    const QVariantList rows = first.value(QStringLiteral("rows")).toList();
    ASSERT_EQ(rows.size(), static_cast<qsizetype>(sections.front().rows.size()));
    EXPECT_EQ(rows.front().toMap().value(QStringLiteral("keys")).toString(),
              sections.front().rows.front().keys);
    EXPECT_EQ(rows.front().toMap().value(QStringLiteral("effect")).toString(),
              sections.front().rows.front().effect);
}

}  // namespace
}  // namespace kestrum
