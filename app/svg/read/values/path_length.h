// How long paths of the art are.
#pragma once

#include "app/artwork/document.h"

#include <span>

namespace corvane {

/// In points. `closed`: back to the first segment.
double lengthOf(std::span<const Segment> segments, bool closed);

/// Of all subpaths of a path or compound path.
double lengthOf(const Document&, Art shape);

} // namespace corvane
