// Inks of the page as custom colours of the artwork, and as mixtures.
#pragma once

#include "host/artwork.h"
#include "reader/paint/colour_space.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

struct Interpreter;
struct Paint;

/// Mixtures of inks that the host was told, by their space and the tints of its inks.
struct InkMixtures {
    std::map<std::pair<ColourSpacePointer, std::vector<Fixed>>, PaintSource> known;
    std::int64_t bytes = 0;
};

/// Whether the host holds colours that are mixed of inks.
bool hostHoldsInkMixtures();

/// The custom colour of which the tints look like those of a space of one ink. None where they do
/// not, where the name is one that the artwork cannot hold, or means all inks or none.
std::optional<CustomColour> inkOf(std::string_view name, const ColourSpace& tint);

/// Whether the artwork holds the inks of that space: one as a custom colour, several as a mixture.
bool holdsInk(const Interpreter& interpreter, const ColourSpace& space);

/// Makes tints of the space that was chosen, which look like `seen`, the ink of the paint, where
/// the artwork holds it. Missing tints are 0.
void selectInk(Interpreter& interpreter, Paint& paint, const Colour& seen,
               std::span<const double> tints);

} // namespace corvane
