// What a line of text is made of, in ems: how far apart its letters stand, and by how much they
// miss its baseline.
#pragma once

#include "fonts/order/text_order.h"
#include "host/matrix.h"
#include "host/utf8.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace corvane {

// In ems. Words of justified text stand up to one apart, columns farther; kerning goes back by less
// than a third.
inline constexpr double widestGap = 1.0;
inline constexpr double farthestBack = 0.35;
/// A gap from here on reads as a blank: blanks of fonts are a quarter wide, letters that are moved
/// apart stand less.
inline constexpr double blankGap = 0.15;
/// By how much a glyph may miss its place.
inline constexpr double tolerance = 0.004;
/// By how much a baseline may miss the line, and a direction its own.
inline constexpr double sameBaseline = 0.008;
inline constexpr double sameDirection = 1e-4;
/// Indices and exponents: how large they are at most, and how far their baseline lies above that of
/// the line, or below it, in ems of its first letters.
inline constexpr double indexSize = 0.85;
inline constexpr double highestIndex = 0.7;
inline constexpr double deepestIndex = 0.4;

inline bool isNear(double a, double b) {
    return std::abs(a - b) <= sameDirection * std::max(1.0, std::abs(a));
}

inline bool isParallel(const RealMatrix& a, const RealMatrix& b) {
    return isNear(a.a, b.a) && isNear(a.b, b.b) && isNear(a.c, b.c) && isNear(a.d, b.d);
}

inline bool isBlank(std::string_view text) {
    return text == " " || text == "\xC2\xA0";
}

/// Letters before those of Hebrew, which begin with smaller bytes, are known at once.
inline bool startsFromRight(std::string_view text) {
    constexpr unsigned char firstOfHebrew = 0xD6;
    return !text.empty() && static_cast<unsigned char>(text.front()) >= firstOfHebrew &&
           isRightToLeft(decodeCharacter(text).code);
}

} // namespace corvane
