// Colours of a space that operators set.
#pragma once

#include "host/artwork.h"
#include "reader/paint/colour_space.h"

#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

struct Interpreter;
struct Paint;

/// The topmost operands, at most `most`, the deepest first.
std::vector<double> popComponents(std::int32_t most);

/// The colour of these components, computed as a part of the page's work: a space may compute its
/// colours in many steps.
Colour computedColour(Interpreter& interpreter, const ColourSpace& space,
                      std::span<const double> components);

/// Makes the topmost operands, components of the paint's space, its colour.
void takeColour(Interpreter& interpreter, Paint& paint, Colour& colour);

} // namespace corvane
