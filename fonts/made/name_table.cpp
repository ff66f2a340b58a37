#include "fonts/made/name_table.h"

#include "fonts/made/made_glyphs.h"
#include "host/utf8.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {

namespace {

/// Characters of a name that count; further ones would not fit its lengths of 16 bits.
constexpr std::size_t mostCharacters = 1000;

/// Takes the first character off. Bytes that are no UTF-8 are question marks, one by one.
char32_t takeCharacter(std::string_view& text) {
    const Character character = decodeCharacter(text);
    text.remove_prefix(std::max<std::size_t>(character.length, 1));
    return character.length == 0 ? U'?' : character.code;
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
