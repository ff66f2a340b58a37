// Output primitives: the exact textual form of what is written, value by value.
//
// Texts end their lines with a carriage return, as all of this program's do; each is written as a
// line feed. A stream that does not take every byte raises `io`. Numbers are in the form of the
// profile (output/number_text.h), and one space follows each.
#pragma once

#include "filters/filter.h"
#include "host/artwork.h"
#include "host/matrix.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// Writes `text` with every carriage return as a line feed.
void stringOutput(Filter& stream, std::string_view text);
/// The value in decimal and one space.
void integerOutput(Filter& stream, std::int32_t value);
/// Exactly `width` decimal digits, zeros in front, the low ones where there are more; no space. A
/// negative value and a width outside 0 to 255 raise `type`.
void paddedOutput(Filter& stream, std::int32_t value, std::int32_t width);

void fixedOutput(Filter& stream, Fixed value);
/// Extended: the shortest decimal that reads back as the same double. Original: the nearest 16.16
/// number. What is no number, or infinite, raises `type`.
void realOutput(Filter& stream, double value);
void pointOutput(Filter& stream, const Point& point);
/// Lower left and upper right corner: left, bottom, right, top.
void rectOutput(Filter& stream, const Rect& rect);
void matrixOutput(Filter& stream, const Matrix& matrix);
void matrixOutput(Filter& stream, const RealMatrix& matrix);

/// "12 0 R" and a line end. Of the generation, the low 16 bits are written.
void referenceOutput(Filter& stream, std::int32_t number, std::int32_t generation);
/// "12 0 obj" and a line end.
void objectOutput(Filter& stream, std::int32_t number, std::int32_t generation);

/// "/", the name and one space. Extended: bytes that a name cannot hold as they are, as #xx.
void nameOutput(Filter& stream, std::string_view name);
/// The body of a string, which the caller puts in parentheses. Parentheses and backslashes are
/// escaped, other bytes below 32 and from 128 up are octal; backspaces, line feeds, form feeds and
/// carriage returns are left out.
void bufferOutput(Filter& stream, std::span<const std::uint8_t> bytes);

/// A PostScript line that sets a gray or process colour; other kinds raise `type`.
void colorOutput(Filter& stream, const Colour& colour);
/// Today, and now without seconds, in the platform's short form; no space.
void dateOutput(Filter& stream);
void timeOutput(Filter& stream);

} // namespace corvane
