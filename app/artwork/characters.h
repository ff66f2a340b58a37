// Characters of UTF-8, and which of them text may hold.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvane {

struct Character {
    char32_t code = 0;
    std::size_t length = 0; ///< bytes; 0: not UTF-8
};

/// The character that starts `text`, which is not empty.
Character decodeCharacter(std::string_view text);

/// In UTF-8; what is no character is U+FFFD.
void appendCharacter(std::string& text, char32_t code);

/// Any character but control characters and those that no XML can hold.
constexpr bool isTextCharacter(char32_t code) {
    return code >= 0x20 && !(code >= 0x7F && code <= 0x9F) && code != 0xFFFE && code != 0xFFFF;
}

/// UTF-8 of such characters alone.
bool isPlainText(std::string_view text);

} // namespace corvane
