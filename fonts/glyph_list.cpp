#include "fonts/glyph_list.h"

#include <array>

namespace corvane {

namespace {

constexpr std::string_view letters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz-+";
constexpr std::string_view firstDigits = "!#$%&()*+,-./:;<";
constexpr std::string_view pieceMarks = "=>@[]^_`{|}~";
constexpr std::array<std::string_view, pieceMarks.size()> pieces = {
    "cyrillic", "arabic",   "hebrew",  "onospace", "korean",   "katakana",
    "square",   "armenian", "bengali", "ircle",    "hiragana", "halfwidth"};

} // namespace

GlyphList unpackedGlyphList(std::string_view packed) {
    GlyphList list;
    std::string name;
    std::size_t at = 0;
    while (at < packed.size()) {
        name.resize(letters.find(packed[at++]));
        for (; firstDigits.find(packed[at]) == firstDigits.npos; ++at) {
            const std::size_t piece = pieceMarks.find(packed[at]);
            name += piece == pieceMarks.npos ? packed.substr(at, 1) : pieces[piece];
        }
        std::u32string meaning;
        for (; at < packed.size() && firstDigits.find(packed[at]) != firstDigits.npos; at += 3) {
            meaning += static_cast<char32_t>(firstDigits.find(packed[at]) << 12 |
                                             letters.find(packed[at + 1]) << 6 |
                                             letters.find(packed[at + 2]));
        }
        list.emplace(name, std::move(meaning));
    }
    return list;
}

} // namespace corvane
