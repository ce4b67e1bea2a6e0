#pragma once

namespace kestrum::ui {

// The card's shadow as a nine-patch image: a rounded rectangle of the card's radius, blurred, with
// `kCardShadowExtent` pixels of shadow on every side. The generator draws it with these numbers and the
// card lays it out with them, so that the two always agree.
inline constexpr int kCardShadowRadius = 10;     // the card's corner radius
inline constexpr int kCardShadowExtent = 16;     // shadow beyond the card's edge, each side
inline constexpr int kCardShadowBlurRadius = 6;  // box half-width of each of the three blur passes
inline constexpr int kCardShadowOffsetY = 2;     // the light comes from above
// The nine-patch's fixed borders: the shadow's extent plus the corner's radius, and a one-pixel
// stretchable middle.
inline constexpr int kCardShadowBorder = kCardShadowExtent + kCardShadowRadius;
inline constexpr int kCardShadowImageSide = 2 * kCardShadowBorder + 1;

}  // namespace kestrum::ui
