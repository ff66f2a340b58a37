#include "fonts/name_table.h"

#include "fonts/made_glyphs.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {

namespace {

/// Characters of a name that count; further ones would not fit its lengths of 16 bits.
constexpr std::size_t mostCharacters = 1000;

/// Takes the first character off. Bytes that are no UTF-8 are question marks, one by one.
char32_t takeCharacter(std::string_view& text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t first = byte(0);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    constexpr std::array<char32_t, 5> lowest = {0, 0, 0x80, 0x800, 0x10000};
    char32_t character = length < 2 ? first : first & (0x7FU >> length);
    bool isSound = length != 0 && length <= text.size();
    for (std::size_t i = 1; isSound && i < length; ++i) {
        isSound = (byte(i) & 0xC0) == 0x80;
        character = character << 6 | (byte(i) & 0x3FU);
    }
    isSound = isSound && character >= lowest[length] && character <= 0x10FFFF &&
              (character < 0xD800 || character > 0xDFFF);
    text.remove_prefix(isSound ? length : 1);
    return isSound ? character : U'?';
}

TableBytes utf16(std::string_view text) {
    TableBytes bytes;
    for (std::size_t i = 0; i < mostCharacters && !text.empty(); ++i) {
        const char32_t character = takeCharacter(text);
        if (character > 0xFFFF) {
            bytes.u16(0xD800 + ((character - 0x10000) >> 10));
            bytes.u16(0xDC00 + ((character - 0x10000) & 0x3FF));
        } else {
            bytes.u16(character);
        }
    }
    return bytes;
}

} // namespace

std::string postScriptName(std::string_view family) {
    constexpr std::size_t most = 63;
    std::string name;
    for (const char c : family) {
        const bool isPlain =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
        if (isPlain && name.size() < most) {
            name += c;
        }
    }
    return name.empty() ? "Made" : name;
}

TableBytes nameTable(const MadeFont& font) {
    const std::string& family = font.family;
    const std::string postScript = postScriptName(family);
    const bool bold = isBold(font);
    const std::string_view style = bold && font.italic ? "Bold Italic"
                                   : bold              ? "Bold"
                                   : font.italic       ? "Italic"
                                                       : "Regular";
    // Family, style, identity, full name, version, PostScript name.
    const std::array<std::pair<std::uint32_t, TableBytes>, 6> names = {{
        {1, utf16(family)},
        {2, utf16(style)},
        {3, utf16(postScript)},
        {4, utf16(family)},
        {5, utf16("Version 1.0")},
        {6, utf16(postScript)},
    }};
    TableBytes table;
    TableBytes texts;
    table.all16({0, count32(names.size()), count32(6 + 12 * names.size())});
    for (const auto& [id, text] : names) {
        // Windows, Unicode, English.
        table.all16({3, 1, 0x409, id, count32(text.size()), count32(texts.size())});
        texts.append(text);
    }
    table.append(texts);
    return table;
}

} // namespace corvane
