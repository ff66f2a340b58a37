// The value of `transform`, `gradientTransform` and `patternTransform` (SVG 1.1, 7.6).
#pragma once

#include "host/matrix.h"

#include <optional>
#include <string_view>

namespace corvane {

/// All transforms of a list as one matrix, the last applied first; none where the text is not a
/// list of transforms.
std::optional<RealMatrix> parseTransform(std::string_view text);

} // namespace corvane
