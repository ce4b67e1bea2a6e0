#pragma once

namespace kestrum {

// The sizes of the sidebar, in points, computed from the window's three constants: the card's inner
// width is 240 plus three element spacings; the sidebar is that plus both card paddings and both edge
// insets (291), and the cards' column is the sidebar less the insets (267).
struct DashboardSidebarLayout {
    static constexpr double sidebarEdgeInset = 12;
    static constexpr double matchCardHorizontalPadding = 6;
    static constexpr double matchCardElementSpacing = 5;

    static constexpr double cardInnerWidth = 240 + 3 * matchCardElementSpacing;
    static constexpr double width = cardInnerWidth + 2 * matchCardHorizontalPadding + 2 * sidebarEdgeInset;
    static constexpr double contentWidth = width - 2 * sidebarEdgeInset;

    // The list: cards 8 apart, with 8 above the first and below the last.
    static constexpr double cardSpacing = 8;
    static constexpr double contentMargin = 8;
    // The champion portrait, and the KDA column's frame.
    static constexpr double championPortraitSize = 35;
    static constexpr double kdaColumnWidth = 154;
    static constexpr double kdaColumnHeight = 52;
    static constexpr double kdaColumnSpacing = 5;
    // The hover star's button.
    static constexpr double favoriteButtonWidth = 22;
    static constexpr double favoriteButtonHeight = 26;
};

static_assert(DashboardSidebarLayout::width == 291);
static_assert(DashboardSidebarLayout::contentWidth == 267);

}  // namespace kestrum
