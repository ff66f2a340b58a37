// Stencils in a gradient, a pattern or a mixture of inks.
#pragma once

#include "host/artwork.h"
#include "host/image.h"

namespace corvane {

struct Interpreter;

/// Whether the fill in force is one in which the pixels of a stencil cannot be.
bool paintsStencils(const Interpreter& interpreter);

/// The colour of a stencil's pixels: the fill in force or, where that paints it, white.
Colour stencilColour(const Interpreter& interpreter);

/// Makes art of a white stencil that the fill in force paints: the square of the image as a path,
/// under a mask of the image.
Art paintStencil(Interpreter& interpreter, const PlacedImage& stencil);

} // namespace corvane
