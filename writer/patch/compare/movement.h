// By which matrix an object was moved.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"
#include "runtime/charged_list.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace corvane {

/// The matrix that leads from the points of one piece of art to those of another: a path, an image,
/// a group of them, within an editor's rounding; nothing where there is none.
std::optional<RealMatrix> movementOf(Art was, Art is);
/// The same of points that belong to each other.
std::optional<RealMatrix> movementBetween(std::span<const RealPoint> was,
                                          std::span<const RealPoint> is);

/// Equal for most movements that nobody can tell apart on a page.
using MovementKey = std::array<std::int64_t, 6>;
MovementKey movementKey(const RealMatrix& movement);

/// Adds the anchors and control points of a path, or of all that art holds.
void addPoints(ChargedList<RealPoint>& points, Art art);

} // namespace corvane
