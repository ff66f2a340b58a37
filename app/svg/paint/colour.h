// The artwork's colours as a screen shows them, and back.
#pragma once

#include "app/artwork/paint/paint.h"
#include "host/artwork.h"
#include "host/light.h"

#include <cstdint>

namespace corvane {

/// sRGB, 255 the brightest.
struct ScreenColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    friend constexpr bool operator==(const ScreenColour&, const ScreenColour&) = default;
};

/// What a screen shows for a colour: grays and colours that came from RGB by their levels, amounts
/// of ink by the conversion of the PDF Reference. Amounts outside 0 to 1.0 are limited.
ScreenColour screenColour(const Colour&);

/// The colour that a plain "#rrggbb" of an editor means: gray where all three are equal, otherwise
/// a process colour with origin RGB.
Colour plainColour(ScreenColour);

/// A process colour from levels of light: 75 per cent of the gray part goes to black.
Colour processColour(LightLevels);

/// The process colour that is seen for a custom colour, weakened by `tint`.
Colour standIn(const SpotColour&, Fixed tint);

} // namespace corvane
