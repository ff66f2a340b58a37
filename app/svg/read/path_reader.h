// Path data: the value of `d` (SVG 1.1, 8.3), and the points of polygons.
#pragma once

#include "app/svg/read/shape_builder.h"

#include <string_view>

namespace corvane {

/// Draws path data. Where it is wrong, all before the wrong command is drawn and the answer is
/// false.
bool readPathData(std::string_view data, ShapeBuilder& shape);

/// Draws the corners of a `polyline` or `polygon`. Where they are wrong, those before are drawn and
/// the answer is false.
bool readPoints(std::string_view points, bool closed, ShapeBuilder& shape);

} // namespace corvane
