// The value of `transform`, `gradientTransform` and `patternTransform` (SVG 1.1, 7.6).
#pragma once

#include "app/svg/read/values/length.h"
#include "host/matrix.h"

#include <optional>
#include <string_view>

namespace corvane {

/// Right angles are exact.
RealMatrix rotation(double degrees);

/// In degrees, of "deg", "grad", "rad" or "turn"; `hasUnit`: it must have one, but for 0.
std::optional<double> parseAngle(std::string_view text, bool hasUnit);

/// All transforms of a list as one matrix, the last applied first; none where the text is not a
/// list of transforms.
std::optional<RealMatrix> parseTransform(std::string_view text);

/// The same of CSS (CSS Transforms 1, 7): lengths and angles have units, percentages are of the
/// viewport. None for transforms in space, too.
std::optional<RealMatrix> parseCssTransform(std::string_view text, const LengthContext& lengths);

/// The point of `transform-origin`. `hasUnits`: lengths must have them, as in CSS.
std::optional<RealPoint> parseTransformOrigin(std::string_view text, const LengthContext& lengths,
                                              bool hasUnits);

} // namespace corvane
