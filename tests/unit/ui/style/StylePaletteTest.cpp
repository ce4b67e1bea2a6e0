// The palette of both appearances: legible text and inks on every surface, and no two names that
// collapse into one colour.
#include "ui/style/KestrumStyle.h"
#include "ui/style/StylePalette.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <cmath>

namespace kestrum::ui {
namespace {

double luminance(const QColor& color) {
    const auto channel = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) +
           0.0722 * channel(color.blueF());
}

// The contrast ratio of two opaque colours (WCAG), from 1 to 21.
double contrast(const QColor& a, const QColor& b) {
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

using Member = QColor StylePalette::*;

TEST(StylePalette, TextAndInksReadOnEverySurfaceInBothAppearances) {
    const struct {
        const char* name;
        Member ink;
        double least;
    } rows[] = {
        {"textPrimary", &StylePalette::textPrimary, 7.0},
        {"textSecondary", &StylePalette::textSecondary, 4.5},
        {"textTertiary", &StylePalette::textTertiary, 3.0},
        {"accent", &StylePalette::accent, 3.0},
        {"teamBlue", &StylePalette::teamBlue, 3.0},
        {"teamRed", &StylePalette::teamRed, 3.0},
        {"yellow", &StylePalette::yellow, 3.0},
        {"orange", &StylePalette::orange, 3.0},
        {"brown", &StylePalette::brown, 3.0},
        {"cyan", &StylePalette::cyan, 3.0},
        {"mint", &StylePalette::mint, 3.0},
        {"blue", &StylePalette::blue, 3.0},
        {"green", &StylePalette::green, 3.0},
        {"warning", &StylePalette::warning, 3.0},
        {"error", &StylePalette::error, 3.0},
        {"success", &StylePalette::success, 3.0},
    };
    const Member grounds[] = {&StylePalette::background, &StylePalette::surface,
                              &StylePalette::surfaceHovered};
    for (const bool dark : {false, true}) {
        const StylePalette& palette = StylePalette::of(dark);
        for (const auto& row : rows) {
            for (const Member ground : grounds) {
                EXPECT_GE(contrast(palette.*row.ink, palette.*ground), row.least)
                    << row.name << (dark ? " (dark)" : " (light)");
            }
        }
        EXPECT_GE(contrast(palette.textOnAccent, palette.accent), 4.5) << (dark ? "dark" : "light");
        EXPECT_GE(contrast(palette.teamBlue, palette.teamBlueTint), 3.0) << (dark ? "dark" : "light");
        EXPECT_GE(contrast(palette.teamRed, palette.teamRedTint), 3.0) << (dark ? "dark" : "light");
        // Primary text on the sunken ground of fields and placeholders.
        EXPECT_GE(contrast(palette.textPrimary, palette.surfaceSunken), 7.0) << (dark ? "dark" : "light");
    }
}

TEST(StylePalette, AppearancesDifferAndTheSurfacesStepTheRightWay) {
    for (const StylePaletteRow& row : stylePaletteRows()) {
        const QColor light = StylePalette::light().*row.member;
        const QColor dark = StylePalette::dark().*row.member;
        EXPECT_TRUE(light.isValid() && dark.isValid()) << row.name;
        // White text on the accent is the one colour both appearances share.
        if (QLatin1String(row.name) != QLatin1String("textOnAccent")) {
            EXPECT_NE(light, dark) << row.name;
        }
    }
    // The ground is lighter than the text in light, darker in dark; a hovered card stands out of its card.
    EXPECT_GT(luminance(StylePalette::light().surface), luminance(StylePalette::light().textPrimary));
    EXPECT_LT(luminance(StylePalette::dark().surface), luminance(StylePalette::dark().textPrimary));
    for (const bool dark : {false, true}) {
        const StylePalette& palette = StylePalette::of(dark);
        EXPECT_NE(palette.surface, palette.surfaceHovered);
        EXPECT_GT(palette.shadowOpacityHovered, palette.shadowOpacity);
    }
}

TEST(StylePalette, VocabularyColoursAreDistinctInks) {
    const NamedColor named[] = {NamedColor::yellow, NamedColor::orange,   NamedColor::brown,
                                NamedColor::cyan,   NamedColor::mint,     NamedColor::blue,
                                NamedColor::green,  NamedColor::secondary};
    for (const bool dark : {false, true}) {
        const StylePalette& palette = StylePalette::of(dark);
        for (const NamedColor a : named) {
            for (const NamedColor b : named) {
                if (a == b) continue;
                EXPECT_NE(palette.named(a), palette.named(b))
                    << static_cast<int>(a) << " " << static_cast<int>(b);
            }
        }
        EXPECT_EQ(palette.named(NamedColor::secondary), palette.textSecondary);
    }
}

TEST(KestrumStyle, SwitchingTheAppearanceChangesEveryColourBindingAtOnce) {
    KestrumStyle& style = KestrumStyle::instance();
    style.setDark(false);
    QSignalSpy changed(&style, &KestrumStyle::appearanceChanged);
    style.setDark(true);
    style.setDark(true);
    EXPECT_EQ(changed.count(), 1) << "one signal per change, none for the same appearance";
    EXPECT_EQ(style.surface(), StylePalette::dark().surface);
    EXPECT_EQ(style.namedColor(static_cast<int>(NamedColor::mint)), StylePalette::dark().mint);
    EXPECT_EQ(style.namedColor(99), StylePalette::dark().textSecondary)
        << "an unknown name reads as secondary";
    style.setDark(false);
    EXPECT_EQ(style.surface(), StylePalette::light().surface);
}

}  // namespace
}  // namespace kestrum::ui
