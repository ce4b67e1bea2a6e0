// Path data split into standalone subpaths, with whether each bounds an area.
#include "ui/style/icons/SvgPathData.h"

#include <gtest/gtest.h>

namespace kestrum::ui {

// GoogleTest prints a subpath that differs by this, found beside the type.
void PrintTo(const SvgSubpath& subpath, std::ostream* out) {
    *out << '"' << subpath.data.toStdString() << "\" closed=" << subpath.closed
         << " straight=" << subpath.straight;
}

namespace {

struct Row {
    const char* data;
    std::vector<SvgSubpath> subpaths;
};

TEST(SvgPathData, SplitsSubpathsAndTellsClosedFromOpen) {
    const Row rows[] = {
        // A closepath closes; a path that comes back to its start is closed too.
        {"M2 2h4v4H2z", {{QStringLiteral("M2 2h4v4H2Z"), true, true}}},
        {"M3 12a9 9 0 1 0 18 0a9 9 0 1 0 -18 0",
         {{QStringLiteral("M3 12a9 9 0 1 0 18 0a9 9 0 1 0 -18 0"), true, false}}},
        // A relative moveto after a closepath starts from the closed subpath's start.
        {"M10 10l2 0l0 2zm5 5l1 1",
         {{QStringLiteral("M10 10l2 0l0 2Z"), true, true}, {QStringLiteral("M15 15l1 1"), false, true}}},
        // Pairs after a moveto are lines of its relativity.
        {"m1 2 3 4 5 6", {{QStringLiteral("M1 2l3 4l5 6"), false, true}}},
        {"M1 2 3 4", {{QStringLiteral("M1 2L3 4"), false, true}}},
        // Compact numbers and arc flags written without separators.
        {"M11.525 2.295a.53.53 0 0 1 .95 0",
         {{QStringLiteral("M11.525 2.295a0.53 0.53 0 0 1 0.95 0"), false, false}}},
        {"M20 9.807V6a1 1 0 00-1-1", {{QStringLiteral("M20 9.807V6a1 1 0 0 0 -1 -1"), false, false}}},
        {"M1-1-2-3", {{QStringLiteral("M1 -1L-2 -3"), false, true}}},
        {"M1e1 2E-1h1", {{QStringLiteral("M10 0.2h1"), false, true}}},
        // Curves of every kind end where their last pair says; a drawing after Z without a moveto starts
        // a new subpath at the old start.
        {"M0 0C1 1 2 2 3 3S4 4 0 0", {{QStringLiteral("M0 0C1 1 2 2 3 3S4 4 0 0"), true, false}}},
        {"M0 0Q1 1 2 0T4 0Z L5 5",
         {{QStringLiteral("M0 0Q1 1 2 0T4 0Z"), true, false}, {QStringLiteral("M0 0L5 5"), false, true}}},
        // A lone moveto draws nothing.
        {"M5 5", {}},
        {"M5 5zM1 1h1", {{QStringLiteral("M1 1h1"), false, true}}},
    };
    for (const Row& row : rows) {
        const auto subpaths = splitSvgPathData(QString::fromLatin1(row.data));
        ASSERT_TRUE(subpaths) << row.data;
        EXPECT_EQ(*subpaths, row.subpaths) << row.data;
    }
}

TEST(SvgPathData, RefusesMalformedData) {
    for (const char* data :
         {"L1 1", "M1", "M1 1 X2 2", "M1 1 L2", "M1 1 A1 1 0 2 0 3 3", "M1 1 l.", "M1 1 h1e"}) {
        EXPECT_FALSE(splitSvgPathData(QString::fromLatin1(data))) << data;
    }
}

}  // namespace
}  // namespace kestrum::ui
