// XML text: elements' ends, attributes, and strings from anywhere made safe.
#pragma once

#include "app/svg/sink.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// Writes any bytes as the inside of a quoted attribute. Bytes that are not UTF-8 are taken as ISO
/// 8859-1; characters that XML forbids are left out.
void writeEscaped(TextOutput&, std::string_view text);

/// Writes ` name="text"`, the text escaped.
void writeAttribute(TextOutput&, std::string_view name, std::string_view text);

/// Writes ` name="text"`, for text that needs no escapes.
void writePlainAttribute(TextOutput&, std::string_view name, std::string_view text);

/// Writes ` name="number"` for a 16.16 number.
void writeNumberAttribute(TextOutput&, std::string_view name, std::int64_t fixed);

/// Writes ` name="number number"` for 16.16 numbers.
void writeNumbersAttribute(TextOutput&, std::string_view name, std::span<const std::int64_t>);

/// Writes ` name="number"`, of at most 12 significant digits, with an exponent where that is
/// shorter. Not for infinite numbers.
void writeDoubleAttribute(TextOutput&, std::string_view name, double number);
/// The same number alone.
void writeDouble(TextOutput&, double number);

/// Writes a line end and the indentation of an element of that depth, the root's being 0.
void writeIndent(TextOutput&, int depth);

} // namespace corvane
