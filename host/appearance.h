// How art is laid over what is behind it: opacity, blending, soft masks.
//
// Source: PDF Reference, chapter 7.
#pragma once

#include "host/artwork.h"

#include <compare>
#include <cstdint>
#include <span>

namespace corvane {

/// The blend modes of the PDF Reference, 7.2.4.
enum class BlendMode : std::uint8_t {
    normal = 0,
    multiply = 1,
    screen = 2,
    overlay = 3,
    darken = 4,
    lighten = 5,
    colorDodge = 6,
    colorBurn = 7,
    hardLight = 8,
    softLight = 9,
    difference = 10,
    exclusion = 11,
    hue = 12,
    saturation = 13,
    color = 14,
    luminosity = 15
};

/// Whether inks that art does not use stay as they are behind it (PDF Reference, 4.5.6).
struct Overprint {
    bool fills = false;
    bool strokes = false;
    bool skipsZeros = false; ///< of device CMYK: an amount of 0 is an ink that is not used
    friend constexpr bool operator==(const Overprint&, const Overprint&) = default;
    friend constexpr auto operator<=>(const Overprint&, const Overprint&) = default;
};

/// How colours of a profile are brought to those that a device has (PDF Reference, 4.5.4).
enum class RenderingIntent : std::uint8_t {
    relativeColorimetric = 0, ///< as a page begins
    absoluteColorimetric = 1,
    perceptual = 2,
    saturation = 3
};

/// A soft mask that the host's document holds; 0 is null.
enum class SoftMask : std::uint32_t { null = 0 };

/// Of any art; opacities are 0 to 1. Art that has none of its own has the defaults.
struct Appearance {
    /// Of the art as one thing: a group is painted first, and laid over what is behind it then.
    double opacity = 1;
    double fillOpacity = 1;   ///< of paths alone
    double strokeOpacity = 1; ///< of paths alone
    BlendMode blend = BlendMode::normal;
    bool isIsolated = false; ///< of groups: what they hold does not blend with what is behind them
    bool isKnockout = false; ///< of groups: what they hold does not show what they hold behind it
    SoftMask mask = SoftMask::null;
    Overprint overprint = {}; ///< of paths and text; from version 7 of the extension on
    /// Of paths, text and images; from version 9 of the extension on.
    RenderingIntent intent = RenderingIntent::relativeColorimetric;
    friend constexpr bool operator==(const Appearance&, const Appearance&) = default;
};

/// Art in coordinates of the artboard, of which the light or the opacity tells how much of other
/// art is seen.
struct MaskFacts {
    Art content = Art::null;   ///< a group that is in no layer
    bool isLuminosity = false; ///< false: its opacity counts
    /// Of luminosity: the light, 0 to 1, of what lies behind the content, everywhere.
    double backdrop = 0;
    /// What becomes of values from 0 to 1, at even steps; empty: they stay as they are. Lives as
    /// long as the document.
    std::span<const double> transfer = {};
};

} // namespace corvane
