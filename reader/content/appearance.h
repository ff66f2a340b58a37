// Opacity, blend modes and soft masks of the graphics state, and the art that they are told of.
//
// Source: PDF Reference, 7.5.
#pragma once

#include "host/appearance.h"
#include "host/artwork.h"
#include "objects/object.h"

#include <array>
#include <string_view>

namespace corvane {

struct Interpreter;
struct Transparency;

/// The names of the PDF Reference, in the order of `BlendMode`.
inline constexpr std::array<std::string_view, 16> blendNames{
    "Normal",     "Multiply",   "Screen",    "Overlay",   "Darken",     "Lighten",
    "ColorDodge", "ColorBurn",  "HardLight", "SoftLight", "Difference", "Exclusion",
    "Hue",        "Saturation", "Color",     "Luminosity"};

/// Whether the host has art that is laid over other art otherwise than by covering it.
bool hostHoldsAppearance();

/// Whether the host's strokes have pens, art overprints, and custom colours can be added.
bool hostHoldsPens();

/// The entries of an external graphics state (`gs`) that say how what is painted is laid over what
/// is behind it.
void applyTransparency(Interpreter& interpreter, const Object& entries);

/// With which paints art is painted; none: it is there and not seen.
struct PaintsUsed {
    bool fills = false;
    bool strokes = false;
};

/// Tells the host of art that was painted in the state in force.
void tellAppearance(Interpreter& interpreter, Art art, PaintsUsed paints);
/// How art that is laid over what is behind it as one thing (an image, a group) is, in that state.
Appearance appearanceAsOne(const Transparency& state);

/// The same of art that is laid over what is behind it as one thing.
void tellAppearanceAsOne(Interpreter& interpreter, Art art, const Appearance& appearance);

} // namespace corvane
