// Gradients (SVG 1.1, 13.2).
#pragma once

#include "app/artwork/paint/paint.h"
#include "app/svg/read/context.h"
#include "app/svg/read/shape_builder.h"
#include "app/svg/read/style/computed_style.h"

#include <optional>
#include <pugixml.hpp>
#include <vector>

namespace corvane {

/// What a paint server is used on.
struct PaintUse {
    RealMatrix toArt; ///< from the element's user space
    UserBox box;      ///< of its geometry, in its user space
    LengthContext lengths;
};

/// The element, and those that it inherits from by `href`.
std::vector<Attributes> inheritedAttributes(pugi::xml_node server, ReadingContext& context,
                                            std::vector<pugi::xml_node>& elements);

/// The first value among those; empty where none has the attribute.
std::string_view firstOf(const std::vector<Attributes>& inherited, Attribute name);

/// From the unit square to the box; none where the box has no area.
std::optional<RealMatrix> boxMatrix(const UserBox& box);

/// The stops of a gradient, its own or inherited.
std::vector<GradientStop> readStops(const std::vector<pugi::xml_node>& elements,
                                    ReadingContext& context);

/// A gradient as it paints the element of `use`, without its stops; none where it paints nothing.
std::optional<Gradient> readGradient(pugi::xml_node server,
                                     const std::vector<Attributes>& inherited, const PaintUse& use,
                                     ReadingContext& context);

} // namespace corvane
