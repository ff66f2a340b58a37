// Characters of fonts: which of them can stand in a text, and their bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

std::string toUtf8(std::u32string_view characters);
/// Nothing where the bytes are not UTF-8.
std::optional<std::u32string> fromUtf8(std::string_view bytes);
/// UTF-16, the high byte first; half of a pair becomes U+FFFD, an odd last byte is left out.
std::u32string fromUtf16(std::span<const std::byte> bytes);

/// Whether it may stand in a text: no control character, surrogate, noncharacter or U+FFFD.
bool isTextCharacter(char32_t character);
bool isText(std::u32string_view characters); ///< not empty, and all of it text
/// Whether nothing of it is seen: spaces and characters of no width.
bool isBlankText(std::u32string_view characters);

/// A private-use character for a code or CID that has no other: U+E000 and on, and above
/// U+F0000 where the first area has no room.
char32_t privateCharacter(std::uint32_t code);
/// Whether it means nothing but to those who agreed on it.
bool isPrivateCharacter(char32_t character);

} // namespace corvane
