// The colours of a shading along one line, as stops.
#pragma once

#include "host/gradient.h"
#include "reader/content/progress.h"
#include "reader/shading/shading.h"

#include <vector>

namespace corvane {

/// Stops from the first to the last value of the shading's domain. Between them colours are within
/// a level of 255 of what the functions say, as far as `budget::gradientStops` goes; where a
/// function jumps there are two stops at one place. Colours and stops count as work.
std::vector<GradientStop> gradientStops(ContentProgress& progress, const Shading& shading);

} // namespace corvane
