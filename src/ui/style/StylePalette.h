#pragma once

#include "core/telemetry/vocabulary/NamedColor.h"

#include <QColor>
#include <QString>

#include <span>

namespace kestrum::ui {

// One appearance's named colours. Views take every colour from here (through the `Style` singleton),
// never a literal, so that light and dark stay one set of names with two values each.
struct StylePalette {
    // Surfaces, from the window's ground up to what floats over the video.
    QColor background;
    QColor surface;
    QColor surfaceHovered;
    QColor surfaceSunken;
    QColor toastBackground;
    QColor separator;
    QColor border;
    QColor borderHovered;
    // Text and symbols, by emphasis.
    QColor textPrimary;
    QColor textSecondary;
    QColor textTertiary;
    QColor textOnAccent;
    QColor accent;
    // The two teams, as ink and as a row's tint.
    QColor teamBlue;
    QColor teamRed;
    QColor teamBlueTint;
    QColor teamRedTint;
    // The named colours of the event vocabulary (dragon kinds); `secondary` is textSecondary.
    QColor yellow;
    QColor orange;
    QColor brown;
    QColor cyan;
    QColor mint;
    QColor blue;
    QColor green;
    // States.
    QColor warning;
    QColor error;
    QColor success;
    // Opacity of the card's pre-rendered shadow: dark grounds need a deeper one to show at all.
    double shadowOpacity = 0;
    double shadowOpacityHovered = 0;

    static const StylePalette& light();
    static const StylePalette& dark();
    static const StylePalette& of(bool dark) { return dark ? StylePalette::dark() : light(); }

    // The colour that the vocabulary's name stands for in this appearance.
    QColor named(NamedColor color) const;
};

// The palette as rows of one name and its two values, in declaration order: what the gallery lists and
// what the contrast tests walk.
struct StylePaletteRow {
    const char* name;
    QColor StylePalette::*member;
};
std::span<const StylePaletteRow> stylePaletteRows();

}  // namespace kestrum::ui
