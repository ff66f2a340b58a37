// Properties of text but for its fonts (CSS 2.1, 16; SVG 1.1, 10).
#pragma once

#include "app/svg/read/style/computed_style.h"

namespace corvane {

/// `lengths` has the element's own size. What text of the artwork does not have is counted.
void readTextStyle(ComputedStyle& style, const Declared& declared, const LengthContext& lengths,
                   Tally& tally);

} // namespace corvane
