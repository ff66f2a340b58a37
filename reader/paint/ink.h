// Inks of the page as custom colours of the artwork.
#pragma once

#include "host/artwork.h"
#include "reader/paint/colour_space.h"

#include <optional>
#include <string_view>

namespace corvane {

struct Interpreter;
struct Paint;

/// The custom colour of which the tints look like those of a space of one ink. None where they do
/// not, where the name is one that the artwork cannot hold, or means all inks or none.
std::optional<CustomColour> inkOf(std::string_view name, const ColourSpace& tint);

/// Whether the artwork holds the inks of that space.
bool holdsInk(const Interpreter& interpreter, const ColourSpace& space);

/// Makes the tint of the space that was chosen the ink of the paint, where the artwork holds it.
void selectInk(Interpreter& interpreter, Paint& paint, double tint);

} // namespace corvane
