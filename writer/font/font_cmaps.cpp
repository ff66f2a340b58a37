#include "writer/font/font_cmaps.h"

#include "reader/font/character_meaning.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

/// One section of a CMap holds no more.
constexpr std::size_t longestSection = 100;

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
    for (const char32_t character : text.substr(0, longestMeaning)) {
        addUtf16(row, character);
    }
    return row + ">\n";
}

/// The parts that all CMaps have, around rows of one kind.
std::string cmapOf(std::string_view head, const std::vector<std::string>& rows,
                   std::string_view kind) {
    std::string map = "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n";
    map += head;
    map += "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
    for (std::size_t from = 0; from < rows.size(); from += longestSection) {
        const std::size_t to = std::min(rows.size(), from + longestSection);
        map += std::to_string(to - from) + " begin" + std::string(kind) + "\n";
        for (std::size_t i = from; i < to; ++i) {
            map += rows[i];
        }
        map += "end" + std::string(kind) + "\n";
    }
    return map + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
}

} // namespace

std::string toUnicodeCMap(const std::map<std::uint32_t, std::u32string>& texts) {
    std::vector<std::string> rows;
    for (const auto& [code, text] : texts) {
        if (!text.empty()) {
            rows.push_back(rowOf(code, text));
        }
    }
    return cmapOf("/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
                  "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n",
                  rows, "bfchar");
}

std::string encodingCMap(const std::map<std::uint32_t, std::uint32_t>& cids, bool isVertical) {
    std::vector<std::string> rows;
    for (const auto& [code, cid] : cids) {
        std::string& row = rows.emplace_back("<");
        addDigits(row, code);
        row += "> " + std::to_string(cid) + "\n";
    }
    return cmapOf("/CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >> def\n"
                  "/CMapName /" +
                      std::string(encodingName) + " def\n/CMapType 1 def\n/WMode " +
                      (isVertical ? "1" : "0") + " def\n",
                  rows, "cidchar");
}

} // namespace corvane
