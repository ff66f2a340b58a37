#include "writer/font/to_unicode.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

/// One section of a CMap holds no more.
constexpr std::size_t longestSection = 100;

/// The longest text of a code that readers take: a ligature, or a letter with its marks.
constexpr std::size_t longestText = 16;

void addDigits(std::string& text, std::uint32_t value) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (int shift = 12; shift >= 0; shift -= 4) {
        text += digits[value >> static_cast<unsigned>(shift) & 15U];
    }
}

void addUtf16(std::string& text, char32_t character) {
    constexpr std::uint32_t astral = 0x10000;
    if (character < astral) {
        addDigits(text, character);
        return;
    }
    const std::uint32_t rest = character - astral;
    addDigits(text, 0xD800 + (rest >> 10U));
    addDigits(text, 0xDC00 + (rest & 0x3FFU));
}

std::string rowOf(std::uint32_t code, std::u32string_view text) {
    std::string row = "<";
    addDigits(row, code);
    row += "> <";
    for (const char32_t character : text.substr(0, longestText)) {
        addUtf16(row, character);
    }
    return row + ">\n";
}

} // namespace

std::string toUnicodeCMap(const std::map<std::uint32_t, std::u32string>& texts) {
    std::vector<std::string> rows;
    for (const auto& [code, text] : texts) {
        if (!text.empty()) {
            rows.push_back(rowOf(code, text));
        }
    }
    std::string map = "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
                      "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
                      "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
                      "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
    for (std::size_t from = 0; from < rows.size(); from += longestSection) {
        const std::size_t to = std::min(rows.size(), from + longestSection);
        map += std::to_string(to - from) + " beginbfchar\n";
        for (std::size_t i = from; i < to; ++i) {
            map += rows[i];
        }
        map += "endbfchar\n";
    }
    return map + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
}

} // namespace corvane
