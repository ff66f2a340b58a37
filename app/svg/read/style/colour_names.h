// The colour keywords of CSS (SVG 1.1, 4.4).
#pragma once

#include "app/svg/paint/colour.h"

#include <optional>
#include <string_view>

namespace corvane {

/// The colour of a keyword in small letters; none where there is no such keyword.
std::optional<ScreenColour> colourByName(std::string_view name);

} // namespace corvane
