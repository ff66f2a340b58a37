// The direction of scripts.
#pragma once

#include <string_view>

namespace corvane {

/// Whether letters of scripts that run from the right are in the text.
bool holdsRightToLeft(std::string_view text);

} // namespace corvane
