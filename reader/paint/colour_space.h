// Colour spaces of page content: what the numbers of `sc` and `scn` mean.
//
// The host knows gray and process colour. Spaces with a profile count by their number of
// components, as readers without colour management take them; a space that names inks is shown
// through its alternate. PDF Reference, 4.5.
#pragma once

#include "host/artwork.h"
#include "objects/object.h"
#include "reader/document/cache.h"
#include "reader/paint/function.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace corvane {

struct ColourSpace {
    enum class Kind { gray, rgb, cmyk, lab, indexed, tint, pattern };

    Kind kind = Kind::gray;
    std::int32_t components = 1; ///< operands of a colour; 0 for patterns
    bool hasProfile = false;     ///< its colours are measured, not those of a device

    /// Of `indexed` and `tint`: the space that their colours are given in. Of `pattern`: that of
    /// the colours of patterns without colours of their own; null: it has none.
    std::shared_ptr<const ColourSpace> base = nullptr;
    /// Of `indexed`: the components of each colour, a byte each.
    std::vector<std::uint8_t> table = {};
    /// Of `tint`: from amounts of its inks to components of the base.
    FunctionPointer function = nullptr;
    /// Of `lab`: the ranges of a and b.
    double range[4] = {-100, 100, -100, 100};
};

using ColourSpacePointer = std::shared_ptr<const ColourSpace>;

/// The device space of that name, or the pattern space; null for any other name.
ColourSpacePointer namedColourSpace(std::string_view name);

/// The space that an object describes. Null where it is of a kind that is not supported. Raises
/// what reading its objects raises.
ColourSpacePointer readColourSpace(DocumentCache& cache, const Object& object);

/// The colour that a space begins with.
Colour initialColour(const ColourSpace& space);

/// The colour of these components; missing ones count as 0, further ones are ignored.
Colour colourIn(const ColourSpace& space, std::span<const double> components);

} // namespace corvane
