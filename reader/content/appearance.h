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

struct GraphicsState;
struct Interpreter;
struct Transparency;

/// The names of the PDF Reference, in the order of `BlendMode`.
inline constexpr std::array<std::string_view, 16> blendNames{
    "Normal",     "Multiply",   "Screen",    "Overlay",   "Darken",     "Lighten",
    "ColorDodge", "ColorBurn",  "HardLight", "SoftLight", "Difference", "Exclusion",
    "Hue",        "Saturation", "Color",     "Luminosity"};

/// The same of `RenderingIntent`.
inline constexpr std::array<std::string_view, 4> intentNames{
    "RelativeColorimetric", "AbsoluteColorimetric", "Perceptual", "Saturation"};

/// Whether the host has art that is laid over other art otherwise than by covering it.
bool hostHoldsAppearance();

/// Whether the host's strokes have pens, art overprints, and custom colours can be added.
bool hostHoldsPens();

/// Whether the host's art has rendering intents.
bool hostHoldsIntents();

/// The intent that a name says; relative colorimetric for what is none (PDF Reference, 4.5.4).
RenderingIntent intentOf(const Object& name);

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
/// How a group that is laid over what is behind it as one thing is, in that state.
Appearance appearanceAsOne(const Transparency& state);
/// The same of an image.
Appearance imageAppearance(const GraphicsState& state);

/// The same of art that is laid over what is behind it as one thing.
void tellAppearanceAsOne(Interpreter& interpreter, Art art, const Appearance& appearance);

} // namespace corvane
