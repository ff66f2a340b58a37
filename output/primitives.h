// Output primitives: the exact textual form of what is written, value by value.
//
// Texts end their lines with a carriage return, as all of this program's do; each is written as a
// line feed. A stream that does not take every byte raises `io`.
#pragma once

#include "filters/filter.h"

#include <cstdint>
#include <string_view>

namespace corvane {

/// Writes `text` with every carriage return as a line feed.
void stringOutput(Filter& stream, std::string_view text);
/// The value in decimal and one space.
void integerOutput(Filter& stream, std::int32_t value);
/// Exactly `width` decimal digits, zeros in front, the low ones where there are more; no space. A
/// negative value and a width outside 0 to 255 raise `type`.
void paddedOutput(Filter& stream, std::int32_t value, std::int32_t width);

} // namespace corvane
