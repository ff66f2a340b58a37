// Groups that forms painted: whether an edited one is what the page shows.
#pragma once

#include "writer/patch/compare/comparison.h"

namespace corvane {

bool isSameGroup(Art was, Art is, PaintComparison& paints);

} // namespace corvane
