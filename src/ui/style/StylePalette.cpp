#include "ui/style/StylePalette.h"

#include <array>

namespace kestrum::ui {

// Contrast targets (checked by the palette tests): primary and secondary text at least 4.5:1 on every
// surface, tertiary text and every ink (teams, dragon kinds, states, accent) at least 3:1, text on the
// accent at least 4.5:1. The light inks are darker than their usual system values for that reason.
const StylePalette& StylePalette::light() {
    static const StylePalette palette{
        .background = QColor(0xF4F4F6),
        .surface = QColor(0xFFFFFF),
        .surfaceHovered = QColor(0xF8F9FB),
        .surfaceSunken = QColor(0xEAEAEF),
        .toastBackground = QColor::fromRgba(0xE6FFFFFF),
        .separator = QColor(0xD8D8DE),
        .border = QColor(0xE2E2E8),
        .borderHovered = QColor(0xC4C4CC),
        .textPrimary = QColor(0x1D1D1F),
        .textSecondary = QColor(0x5C5C63),
        .textTertiary = QColor(0x7A7A81),
        .textOnAccent = QColor(0xFFFFFF),
        .accent = QColor(0x1F63D6),
        .teamBlue = QColor(0x1F63D6),
        .teamRed = QColor(0xD42B2B),
        .teamBlueTint = QColor(0xE9F0FC),
        .teamRedTint = QColor(0xFBECEC),
        .yellow = QColor(0xA07400),
        .orange = QColor(0xC15700),
        .brown = QColor(0x8A6139),
        .cyan = QColor(0x0B7D99),
        .mint = QColor(0x0A8570),
        .blue = QColor(0x2F6BE0),
        .green = QColor(0x2E8540),
        .warning = QColor(0xA85A00),
        .error = QColor(0xCC1F2E),
        .success = QColor(0x1E7F3E),
        .shadowOpacity = 0.16,
        .shadowOpacityHovered = 0.26,
    };
    return palette;
}

const StylePalette& StylePalette::dark() {
    static const StylePalette palette{
        .background = QColor(0x161618),
        .surface = QColor(0x232326),
        .surfaceHovered = QColor(0x2C2C30),
        .surfaceSunken = QColor(0x111113),
        .toastBackground = QColor::fromRgba(0xE62A2A2E),
        .separator = QColor(0x3A3A3F),
        .border = QColor(0x333338),
        .borderHovered = QColor(0x4C4C53),
        .textPrimary = QColor(0xF2F2F4),
        .textSecondary = QColor(0xB0B0B7),
        .textTertiary = QColor(0x86868D),
        .textOnAccent = QColor(0xFFFFFF),
        .accent = QColor(0x2C71E6),
        .teamBlue = QColor(0x5B9BFF),
        .teamRed = QColor(0xFF6B6B),
        .teamBlueTint = QColor(0x1B2A43),
        .teamRedTint = QColor(0x3A1F23),
        .yellow = QColor(0xF2C230),
        .orange = QColor(0xFF9A3C),
        .brown = QColor(0xC8A27A),
        .cyan = QColor(0x4FD1E8),
        .mint = QColor(0x5EDCC0),
        .blue = QColor(0x6AA1FF),
        .green = QColor(0x5FCF72),
        .warning = QColor(0xFFB547),
        .error = QColor(0xFF6B6B),
        .success = QColor(0x5FCF72),
        .shadowOpacity = 0.55,
        .shadowOpacityHovered = 0.75,
    };
    return palette;
}

QColor StylePalette::named(NamedColor color) const {
    switch (color) {
        case NamedColor::yellow:
            return yellow;
        case NamedColor::orange:
            return orange;
        case NamedColor::brown:
            return brown;
        case NamedColor::cyan:
            return cyan;
        case NamedColor::mint:
            return mint;
        case NamedColor::blue:
            return blue;
        case NamedColor::green:
            return green;
        case NamedColor::secondary:
            return textSecondary;
    }
    return textSecondary;
}

std::span<const StylePaletteRow> stylePaletteRows() {
    static constexpr std::array<StylePaletteRow, 27> rows{{
        {"background", &StylePalette::background},
        {"surface", &StylePalette::surface},
        {"surfaceHovered", &StylePalette::surfaceHovered},
        {"surfaceSunken", &StylePalette::surfaceSunken},
        {"toastBackground", &StylePalette::toastBackground},
        {"separator", &StylePalette::separator},
        {"border", &StylePalette::border},
        {"borderHovered", &StylePalette::borderHovered},
        {"textPrimary", &StylePalette::textPrimary},
        {"textSecondary", &StylePalette::textSecondary},
        {"textTertiary", &StylePalette::textTertiary},
        {"textOnAccent", &StylePalette::textOnAccent},
        {"accent", &StylePalette::accent},
        {"teamBlue", &StylePalette::teamBlue},
        {"teamRed", &StylePalette::teamRed},
        {"teamBlueTint", &StylePalette::teamBlueTint},
        {"teamRedTint", &StylePalette::teamRedTint},
        {"yellow", &StylePalette::yellow},
        {"orange", &StylePalette::orange},
        {"brown", &StylePalette::brown},
        {"cyan", &StylePalette::cyan},
        {"mint", &StylePalette::mint},
        {"blue", &StylePalette::blue},
        {"green", &StylePalette::green},
        {"warning", &StylePalette::warning},
        {"error", &StylePalette::error},
        {"success", &StylePalette::success},
    }};
    return rows;
}

}  // namespace kestrum::ui
