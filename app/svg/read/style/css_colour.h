// Colours as CSS writes them.
#pragma once

#include "app/svg/paint/colour.h"
#include "app/svg/read/values/number.h"

#include <optional>
#include <string_view>

namespace corvane {

/// A colour and how much it covers.
struct CssColour {
    ScreenColour screen;
    double alpha = 1;
};

/// A keyword, "#rgb" and its longer forms, rgb(), hsl(), hwb(); "transparent" is alpha 0. An
/// "icc-color" behind it is left alone. None where the text is no colour.
std::optional<CssColour> parseColour(std::string_view text);

/// "currentColor", which stands for the value of `color`.
inline bool isCurrentColour(std::string_view text) {
    return isWord(text, "currentcolor");
}

} // namespace corvane
