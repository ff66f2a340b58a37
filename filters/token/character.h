// Character classes of PDF syntax (PDF Reference, 3.1.1), in one table.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace corvane {

enum class CharacterClass : std::uint8_t { regular, digit, sign, point, space, delimiter };

inline constexpr auto characterClasses = [] {
    std::array<CharacterClass, 256> classes{};
    for (const char c : std::string_view("\0\t\n\f\r ", 6)) {
        classes[static_cast<std::uint8_t>(c)] = CharacterClass::space;
    }
    for (const char c : std::string_view("()<>[]{}/%")) {
        classes[static_cast<std::uint8_t>(c)] = CharacterClass::delimiter;
    }
    for (const char c : std::string_view("0123456789")) {
        classes[static_cast<std::uint8_t>(c)] = CharacterClass::digit;
    }
    classes[std::uint8_t{'+'}] = CharacterClass::sign;
    classes[std::uint8_t{'-'}] = CharacterClass::sign;
    classes[std::uint8_t{'.'}] = CharacterClass::point;
    return classes;
}();

constexpr CharacterClass characterClass(char c) {
    return characterClasses[static_cast<std::uint8_t>(c)];
}
constexpr bool isSpace(char c) {
    return characterClass(c) == CharacterClass::space;
}
constexpr bool isDigit(char c) {
    return characterClass(c) == CharacterClass::digit;
}
/// Neither white space nor a delimiter.
constexpr bool isRegular(char c) {
    return characterClass(c) < CharacterClass::space;
}

} // namespace corvane
