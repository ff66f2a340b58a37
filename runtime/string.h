// The classic string calls: zero-terminated and length-prefixed text.
//
// A source is a view (its end stands for the terminator), a destination a span, whose bounds are
// kept: what does not fit raises `range`. Where the classic calls return a position, these return
// the text from there on, nothing for null.
#pragma once

#include "host/artwork.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace corvane {

/// Copies `from` and a terminator.
void copyString(std::span<char> to, std::string_view from);
/// The text up to the terminator, or all of `text` where there is none.
std::string_view viewString(std::span<const char> text);
/// Bytes up to the terminator.
std::size_t countString(std::span<const char> text);
/// 0 where equal, otherwise -1 or 1: the first differing bytes compared as signed characters, the
/// end being 0.
int compareString(std::string_view a, std::string_view b);
bool leftString(std::string_view prefix, std::string_view text);
/// What follows the first `character`.
std::optional<std::string_view> advanceString(char character, std::string_view text);

struct QuotedText {
    std::string_view text; ///< between the first two double quotes, or from the first to the end
    std::optional<std::string_view> rest; ///< what follows the second; nothing where there is none
};
QuotedText quotedString(std::string_view text);

void mapString(std::span<char> text, char from, char to);

struct TextNumber {
    std::int32_t value = 0;
    std::optional<std::string_view> rest; ///< what follows the digits; nothing where there are none
};
/// Reads blanks, sign and digits. Wraps in 32 bits.
TextNumber integerString(std::string_view text);
/// As `integerString`, with a fraction; the value is 16.16 and saturates.
TextNumber fixedString(std::string_view text);

/// Entry `index`, from 1, of the string list `list`, length-prefixed; the empty string where there
/// is none.
void getString(std::span<std::uint8_t, 256> text, std::int16_t list, std::int16_t index);

/// The bytes of a length-prefixed string; a length beyond the span raises `range`.
std::span<const std::uint8_t> prefixedBytes(std::span<const std::uint8_t> text);

// Length-prefixed strings. The two do not overlap; more than 255 bytes, or than `to` has room for,
// raise `range`.

void pstrcpy(std::span<std::uint8_t> to, std::span<const std::uint8_t> from);
/// Appends `from`.
void pstrcat(std::span<std::uint8_t> to, std::span<const std::uint8_t> from);
/// Puts `from` in front.
void pstrinsert(std::span<std::uint8_t> to, std::span<const std::uint8_t> from);

} // namespace corvane
