#include "reader/font/characters.h"

#include "host/utf8.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isHighHalf(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowHalf(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool isBlank(char32_t character) {
    return character == ' ' || character == 0xA0 || character == 0x1680 ||
           (character >= 0x2000 && character <= 0x200F) || character == 0x2028 ||
           character == 0x2029 || character == 0x202F || character == 0x205F ||
           character == 0x2060 || character == 0x3000 || character == 0xFEFF;
}

} // namespace

std::string toUtf8(std::u32string_view characters) {
    std::string bytes;
    for (const char32_t character : characters) {
        appendCharacter(bytes, character);
    }
    return bytes;
}

std::optional<std::u32string> fromUtf8(std::string_view bytes) {
    std::u32string characters;
    while (!bytes.empty()) {
        const Character character = decodeCharacter(bytes);
        if (character.length == 0) {
            return std::nullopt;
        }
        characters.push_back(character.code);
        bytes.remove_prefix(character.length);
    }
    return characters;
}

std::u32string fromUtf16(std::span<const std::byte> bytes) {
    const auto unitAt = [&](std::size_t i) {
        return std::to_integer<char32_t>(bytes[2 * i]) << 8 |
               std::to_integer<char32_t>(bytes[2 * i + 1]);
    };
    std::u32string characters;
    const std::size_t units = bytes.size() / 2;
    for (std::size_t i = 0; i < units; ++i) {
        const char32_t unit = unitAt(i);
        if (isHighHalf(unit) && i + 1 < units && isLowHalf(unitAt(i + 1))) {
            characters.push_back(0x10000 + ((unit & 0x3FF) << 10 | (unitAt(++i) & 0x3FF)));
        } else {
            characters.push_back(isHighHalf(unit) || isLowHalf(unit) ? replacement : unit);
        }
    }
    return characters;
}

bool isTextCharacter(char32_t character) {
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    const bool isNoCharacter =
        (character & 0xFFFE) == 0xFFFE || (character >= 0xFDD0 && character <= 0xFDEF);
    return !isControl && !isNoCharacter && !isHighHalf(character) && !isLowHalf(character) &&
           character != replacement && character <= 0x10FFFF;
}

bool isText(std::u32string_view characters) {
    return !characters.empty() && std::ranges::all_of(characters, isTextCharacter);
}

bool isBlankText(std::u32string_view characters) {
    return std::ranges::all_of(characters, isBlank);
}

char32_t privateCharacter(std::uint32_t code) {
    constexpr std::uint32_t firstArea = 0xF8FF - 0xE000 + 1;
    // Without the two noncharacters at the end of a plane.
    constexpr std::uint32_t planeLength = 0xFFFE;
    return code < firstArea ? 0xE000 + code : 0xF0000 + code % planeLength;
}

bool isPrivateCharacter(char32_t character) {
    return (character >= 0xE000 && character <= 0xF8FF) || character >= 0xF0000;
}

} // namespace corvane
