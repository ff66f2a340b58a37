// A text in UTF-8, a zero byte, and any bytes as a font of the machine: the text is put in order,
// shaped, and the glyphs that it takes become a part of the font.
#include "fonts/font_program.h"
#include "fonts/font_subset.h"
#include "fonts/order/text_order.h"
#include "fonts/shaped_text.h"
#include "fuzz/targets.h"
#include "reader/font/characters.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace corvane::fuzz {

namespace {

/// What a longer text finds, this finds sooner.
constexpr std::size_t mostCharacters = 60;

struct Parts {
    std::u32string text;
    Bytes font;
};

Parts divided(Bytes input) {
    const auto end = std::ranges::find(input, std::byte{0});
    std::string text;
    std::transform(input.begin(), end, std::back_inserter(text),
                   [](std::byte byte) { return static_cast<char>(byte); });
    const auto length = static_cast<std::size_t>(end - input.begin());
    return {fromUtf8(text).value_or(U"AB\u05D0\u0301 C").substr(0, mostCharacters),
            input.subspan(std::min(length + 1, input.size()))};
}

void checkOrder(std::span<const TextLevel> levels) {
    std::vector<std::size_t> order = visualOrder(levels);
    std::ranges::sort(order);
    for (std::size_t i = 0; i < levels.size(); ++i) {
        require(order.size() == levels.size() && order[i] == i);
    }
}

/// What stands so reads as something that stands so.
void checkReading(std::u32string_view standing) {
    const std::optional<ReadLine> line = readingOf(standing);
    if (!line) {
        return;
    }
    std::u32string read;
    require(line->order.size() == standing.size() && line->levels.size() == standing.size());
    for (std::size_t i = 0; i < standing.size(); ++i) {
        const char32_t character = standing[line->order[i]];
        read += line->levels[i] % 2 != 0 ? mirrored(character) : character;
    }
    const std::vector<TextLevel> levels = levelsOf(read, line->isRightToLeft);
    require(levels == line->levels);
    const std::vector<std::size_t> back = visualOrder(levels);
    for (std::size_t place = 0; place < standing.size(); ++place) {
        require(line->order[back[place]] == place);
    }
}

/// Each letter is followed by its marks.
void checkReadingWithMarks(std::u32string_view standing) {
    std::vector<bool> isBehind(standing.size());
    std::transform(standing.begin(), standing.end(), isBehind.begin(), isMark);
    const ReadLine line = readingWithMarks(standing, isBehind);
    require(line.order.size() == standing.size() && line.levels.size() == standing.size());
    std::vector<bool> isRead(standing.size());
    for (std::size_t i = 0; i < standing.size(); ++i) {
        const std::size_t at = line.order[i];
        require(at < standing.size() && !isRead[at]);
        require(at == 0 || !isBehind[at] || (i > 0 && line.order[i - 1] == at - 1));
        isRead[at] = true;
    }
}

/// Characters from `start` to where the direction or the script changes.
TextStretch stretchFrom(std::size_t start, std::u32string_view text,
                        std::span<const TextLevel> levels, std::span<const std::uint32_t> scripts) {
    std::size_t end = start;
    while (end < text.size() && levels[end] == levels[start] && scripts[end] == scripts[start]) {
        ++end;
    }
    return {.text = text,
            .start = start,
            .count = end - start,
            .isRightToLeft = levels[start] % 2 != 0,
            .script = scripts[start]};
}

std::vector<GlyphNumber> glyphsOf(const OpenTypeFont& font, const TextStretch& stretch) {
    std::vector<GlyphNumber> glyphs;
    for (const ShapedGlyph& each : shapeText(font, stretch)) {
        require(each.cluster >= stretch.start && each.cluster < stretch.start + stretch.count);
        require(std::isfinite(each.advance) && std::isfinite(each.x) && std::isfinite(each.y));
        require(std::isfinite(font.advance(each.glyph)));
        glyphs.push_back(each.glyph);
    }
    return glyphs;
}

/// Documents show its glyphs by CIDs of two bytes.
void checkSubset(const OpenTypeFont& font, std::span<const GlyphNumber> glyphs) {
    const std::optional<FontSubset> subset = makeSubset(font, glyphs);
    if (!subset) {
        return;
    }
    for (const GlyphNumber glyph : glyphs) {
        require(subset->cids.contains(glyph) && subset->cids.at(glyph) <= 0xFFFF);
    }
    const std::optional<FontSubset> again = makeSubset(font, glyphs);
    require(again && again->program == subset->program);
    if (const auto program = FontProgram::open(subset->program)) {
        for (const auto& [glyph, cid] : subset->cids) {
            (void)program->outline(program->byCid(cid).value_or(0));
        }
    }
}

} // namespace

void fuzzShaping(Bytes input) {
    Choices choices(input);
    const auto [text, bytes] = divided(input);
    const std::vector<TextLevel> levels = levelsOf(text, choices.below(2) == 0);
    const std::vector<std::uint32_t> scripts = scriptsOf(text);
    require(levels.size() == text.size() && scripts.size() == text.size());
    checkOrder(levels);
    checkReading(text);
    checkReadingWithMarks(text);
    (void)runsBothWays(text);
    const auto font = OpenTypeFont::open({bytes.begin(), bytes.end()});
    if (!font) {
        return;
    }
    (void)font->shows(text);
    const bool isVertical = choices.below(4) == 0;
    const bool hasLigatures = choices.below(2) == 0;
    std::vector<GlyphNumber> glyphs;
    for (std::size_t at = 0; at < text.size();) {
        TextStretch stretch = stretchFrom(at, text, levels, scripts);
        stretch.isVertical = isVertical;
        stretch.hasLigatures = hasLigatures;
        std::ranges::copy(glyphsOf(*font, stretch), std::back_inserter(glyphs));
        at += stretch.count;
    }
    checkSubset(*font, glyphs);
}

} // namespace corvane::fuzz
