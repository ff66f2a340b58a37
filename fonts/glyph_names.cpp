#include "fonts/glyph_names.h"
#include "fonts/encodings.h"
#include "fonts/glyph_list.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

namespace corvane {

namespace {

bool isSurrogate(std::uint32_t code) {
    return code >= 0xD800 && code < 0xE000;
}

/// Upper-case hexadecimal digits only, as the rules have it.
std::optional<char32_t> characterOfDigits(std::string_view digits) {
    const bool isHexadecimal = std::ranges::all_of(
        digits, [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F'); });
    std::uint32_t code = 0;
    if (!isHexadecimal ||
        std::from_chars(digits.data(), digits.data() + digits.size(), code, 16).ec != std::errc() ||
        code > 0x10FFFF || isSurrogate(code)) {
        return std::nullopt;
    }
    return static_cast<char32_t>(code);
}

/// "uni" and groups of four digits, each a character.
std::u32string charactersOfGroups(std::string_view digits) {
    std::u32string text;
    for (; !digits.empty(); digits.remove_prefix(4)) {
        const auto character = characterOfDigits(digits.substr(0, 4));
        if (!character) {
            return {};
        }
        text += *character;
    }
    return text;
}

/// The names of most pages, without unpacking the list. Nothing where it is none of them.
std::optional<char32_t> westernCharacter(std::string_view name) {
    // From 0x7F, codes that Windows does not use being bullets as in the PDF Reference.
    constexpr std::u32string_view windows =
        U"\u2022\u20AC\u2022\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152"
        U"\u2022\u017D\u2022\u2022\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161"
        U"\u203A\u0153\u2022\u017E\u0178";
    const auto code = winAnsiCodeOf(name);
    if (!code) {
        return std::nullopt;
    }
    const std::size_t place = *code - std::size_t{0x7F};
    return *code >= 0x7F && place < windows.size() ? windows[place] : char32_t{*code};
}

std::u32string charactersOfPart(std::string_view part) {
    if (const auto character = westernCharacter(part)) {
        return {*character};
    }
    static const GlyphList list(packedGlyphList);
    if (const std::u32string_view meaning = list.find(part); !meaning.empty()) {
        return std::u32string(meaning);
    }
    if (part.starts_with("uni") && part.size() > 3 && part.size() % 4 == 3) {
        return charactersOfGroups(part.substr(3));
    }
    if (part.starts_with('u') && part.size() >= 5 && part.size() <= 7) {
        if (const auto character = characterOfDigits(part.substr(1))) {
            return {*character};
        }
    }
    return {};
}

} // namespace

std::u32string charactersOfName(std::string_view name) {
    name = name.substr(0, name.find('.'));
    std::u32string text;
    while (!name.empty()) {
        const std::size_t end = std::min(name.find('_'), name.size());
        text += charactersOfPart(name.substr(0, end));
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    return text;
}

char32_t dingbatOfName(std::string_view name) {
    static const GlyphList list(packedDingbats);
    const std::u32string_view meaning = list.find(name);
    return meaning.empty() ? 0 : meaning.front();
}

} // namespace corvane
