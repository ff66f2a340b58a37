// Characters of UTF-8 (RFC 3629): shortest forms alone, no surrogates, up to U+10FFFF.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

struct Character {
    char32_t code = 0;
    std::size_t length = 0; ///< bytes; 0: not UTF-8
};

/// Of a byte that is not the first of its character.
constexpr bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The character that starts `text`, which is not empty.
constexpr Character decodeCharacter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) {
        return {first, 1};
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) {
        return {};
    }
    char32_t code = first & (0x7FU >> length);
    for (const char byte : text.substr(1, length - 1)) {
        if (!isContinuation(byte)) {
            return {};
        }
        code = code << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest[length] || code > 0x10FFFF || isSurrogate) {
        return {};
    }
    return {code, length};
}

constexpr bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = decodeCharacter(text).length;
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

inline constexpr std::size_t longestCharacter = 4;

/// Writes a character to the front of `room`; the bytes that it took. What is no character is
/// U+FFFD.
constexpr std::size_t putCharacter(char32_t code, std::span<char, longestCharacter> room) {
    if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        code = 0xFFFD;
    }
    if (code < 0x80) {
        room[0] = static_cast<char>(code);
        return 1;
    }
    const std::size_t more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    for (std::size_t i = more; i > 0; --i) {
        room[i] = static_cast<char>(0x80U | (code & 0x3FU));
        code >>= 6;
    }
    // As many bits are set in front as the character has bytes.
    room[0] = static_cast<char>((0xFF00U >> (more + 1) & 0xFFU) | code);
    return more + 1;
}

constexpr void appendCharacter(std::string& text, char32_t code) {
    std::array<char, longestCharacter> room{};
    text.append(room.data(), putCharacter(code, room));
}

/// The start of `text` of at most `limit` bytes that splits no character.
constexpr std::string_view cutText(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) {
        return text;
    }
    std::size_t end = limit;
    while (end > 0 && limit - end < longestCharacter - 1 && isContinuation(text[end])) {
        --end;
    }
    return text.substr(0, end);
}

} // namespace corvane
