#include "fonts/made/cff_table.h"
#include "fonts/made/charstring.h"

#include <array>
#include <cstdio>

namespace corvane {

namespace {

constexpr std::uint32_t standardStrings = 391; ///< string numbers below are the format's own

/// Chunks with a list of where each ends.
TableBytes indexOf(std::span<const TableBytes> items) {
    TableBytes index;
    index.u16(count32(items.size()));
    if (items.empty()) {
        return index;
    }
    std::size_t end = 1;
    for (const TableBytes& item : items) {
        end += item.size();
    }
    const std::uint32_t width = end > 0xFFFFFF ? 4 : end > 0xFFFF ? 3 : end > 0xFF ? 2 : 1;
    index.u8(width);
    std::size_t offset = 1;
    const auto writeOffset = [&] {
        for (std::uint32_t i = width; i-- > 0;) {
            index.u8(count32(offset) >> 8 * i);
        }
    };
    writeOffset();
    for (const TableBytes& item : items) {
        offset += item.size();
        writeOffset();
    }
    for (const TableBytes& item : items) {
        index.append(item);
    }
    return index;
}

TableBytes textBytes(std::string_view text) {
    TableBytes bytes;
    bytes.text(text);
    return bytes;
}

/// By the rules of the AGL, so that the name tells the text; by number where that is
/// long, or nothing.
std::string nameOfGlyph(const UnitGlyph& glyph, std::size_t number) {
    constexpr std::size_t mostCharacters = 8;
    std::string name;
    if (glyph.text.empty() || glyph.text.size() > mostCharacters) {
        return "glyph" + std::to_string(number);
    }
    for (const char32_t character : glyph.text) {
        std::array<char, 16> part{};
        (void)std::snprintf(part.data(), part.size(), character > 0xFFFF ? "u%X" : "uni%04X",
                            static_cast<unsigned>(character));
        name += name.empty() ? "" : "_";
        name += part.data();
    }
    return name;
}

/// Five bytes whatever the number, so that the length of a dictionary does not depend on it.
void dictNumber(TableBytes& dict, std::int64_t number) {
    dict.u8(29);
    dict.u32(static_cast<std::uint32_t>(number));
}

struct Places {
    std::size_t charset = 0;
    std::size_t charstrings = 0;
    std::size_t privateDict = 0;
    std::size_t privateSize = 0;
};

TableBytes topDict(const UnitBox& box, const Places& places) {
    TableBytes dict;
    // FontMatrix: .00025 0 0 .00025 0 0; real numbers are written in nibbles.
    static_assert(madeUnits == 4000);
    constexpr std::uint32_t real = 30;
    constexpr std::uint32_t unit = 0xA00025FF;
    constexpr std::uint32_t zero = 139;
    for (const bool isUnit : {true, false, false, true, false, false}) {
        if (isUnit) {
            dict.u8(real);
            dict.u32(unit);
        } else {
            dict.u8(zero);
        }
    }
    dict.u16(12 << 8 | 7);
    for (const std::int32_t side : {box.left, box.bottom, box.right, box.top}) {
        dictNumber(dict, side);
    }
    dict.u8(5);
    dictNumber(dict, static_cast<std::int64_t>(places.charset));
    dict.u8(15);
    dictNumber(dict, static_cast<std::int64_t>(places.charstrings));
    dict.u8(17);
    dictNumber(dict, static_cast<std::int64_t>(places.privateSize));
    dictNumber(dict, static_cast<std::int64_t>(places.privateDict));
    dict.u8(18);
    return dict;
}

/// All glyphs but the first, whose names are the strings of the font in their order.
TableBytes charsetOf(std::size_t glyphs) {
    TableBytes charset;
    charset.u8(2);
    charset.u16(standardStrings);
    charset.u16(count32(glyphs) - 2);
    return charset;
}

/// Default and nominal width 0.
TableBytes privateDict() {
    constexpr std::uint32_t zero = 139;
    TableBytes dict;
    dict.u16(zero << 8 | 20);
    dict.u16(zero << 8 | 21);
    return dict;
}

} // namespace

TableBytes cffTable(const std::string& name, std::span<const UnitGlyph> glyphs,
                    const UnitBox& box) {
    std::vector<TableBytes> names;
    std::vector<TableBytes> charstrings;
    charstrings.reserve(glyphs.size());
    names.reserve(glyphs.size());
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        charstrings.push_back(charstringOf(glyphs[i]));
        if (i > 0) {
            names.push_back(textBytes(nameOfGlyph(glyphs[i], i)));
        }
    }
    TableBytes table;
    table.u32(0x01000404); // version 1.0, a header of 4 bytes, offsets of 4 bytes
    table.append(indexOf(std::array{textBytes(name)}));
    const TableBytes strings = indexOf(names);
    constexpr std::size_t subroutines = 2; // an empty index
    const TableBytes charset = charsetOf(glyphs.size());
    const TableBytes index = indexOf(charstrings);
    const TableBytes last = privateDict();

    Places places;
    const std::size_t dictSize = indexOf(std::array{topDict(box, places)}).size();
    places.charset = table.size() + dictSize + strings.size() + subroutines;
    places.charstrings = places.charset + charset.size();
    places.privateDict = places.charstrings + index.size();
    places.privateSize = last.size();
    table.append(indexOf(std::array{topDict(box, places)}));
    table.append(strings);
    table.append(indexOf({}));
    table.append(charset);
    table.append(index);
    table.append(last);
    return table;
}

} // namespace corvane
