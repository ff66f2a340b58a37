#include "writer/text/page_letters.h"

#include "fonts/made_font.h"
#include "reader/font/characters.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace corvane {

namespace {

/// Characters that one glyph may mean: "ffi" and its like.
constexpr std::size_t longestLigature = 4;

double asMade(double advance) {
    return std::round(advance * madeUnits) / madeUnits;
}

/// The letters at the front of the text that one glyph of the font means, the longest that fit;
/// takes them off the text.
std::optional<EncodedLetters> firstLetters(PageFont& font, std::u32string_view& text) {
    for (std::size_t count = std::min(longestLigature, text.size()); count > 0; --count) {
        const std::optional<std::string> codes = font.encode(toUtf8(text.substr(0, count)));
        if (!codes) {
            continue;
        }
        EncodedLetters letters{.codes = *codes};
        std::vector<ShownGlyph> glyphs;
        font.show(std::as_bytes(std::span(*codes)), glyphs);
        for (const ShownGlyph& glyph : glyphs) {
            letters.advance += asMade(glyph.advance);
        }
        letters.count = static_cast<std::int32_t>(glyphs.size());
        text.remove_prefix(count);
        return letters;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::vector<EncodedLetters>> encodeText(PageFont& font, std::u32string_view text) {
    std::vector<EncodedLetters> all;
    const std::size_t whole = text.size();
    while (!text.empty()) {
        const std::size_t start = whole - text.size();
        std::optional<EncodedLetters> letters = firstLetters(font, text);
        if (!letters && text.front() == U' ') {
            text.remove_prefix(1);
            letters =
                EncodedLetters{.advance = asMade(font.spaceAdvance()), .count = 1, .isBlank = true};
        }
        if (!letters) {
            return std::nullopt;
        }
        letters->start = start;
        all.push_back(std::move(*letters));
    }
    return all;
}

} // namespace corvane
