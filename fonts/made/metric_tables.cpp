#include "fonts/made/metric_tables.h"
#include "fonts/made/ligature_table.h"

namespace corvane {

namespace {

constexpr std::int32_t longest = 0x7FFF;

std::uint32_t low16(std::int32_t value) {
    return static_cast<std::uint32_t>(value);
}

} // namespace

FontMeasures measure(const MadeFont& font, const GlyphOrder& order) {
    FontMeasures measures;
    measures.weight = std::clamp(font.weight, 1, 1000);
    measures.isBold = isBold(font);
    measures.isItalic = font.italic;
    measures.ascent = unitsOf(font.ascent, longest);
    measures.descent = unitsOf(font.descent, longest);
    std::int64_t sum = 0;
    for (const UnitGlyph& glyph : order.glyphs) {
        UnitBox& box = measures.box;
        box = {std::min(box.left, glyph.box.left), std::min(box.bottom, glyph.box.bottom),
               std::max(box.right, glyph.box.right), std::max(box.top, glyph.box.top)};
        measures.longestAdvance = std::max(measures.longestAdvance, glyph.advance);
        sum += glyph.advance;
    }
    measures.meanAdvance =
        static_cast<std::int32_t>(sum / static_cast<std::int64_t>(order.glyphs.size()));
    if (!order.byCharacter.empty()) {
        const auto within16 = [](char32_t c) { return std::min<std::uint32_t>(c, 0xFFFF); };
        measures.firstCharacter = within16(order.byCharacter.begin()->first);
        measures.lastCharacter = within16(order.byCharacter.rbegin()->first);
    }
    measures.context = count32(std::min<std::size_t>(longestLigature(order), 0xFFFF));
    return measures;
}

TableBytes headTable(const FontMeasures& measures) {
    const UnitBox& box = measures.box;
    TableBytes table;
    table.u32(0x00010000); // version of the table, of the font
    table.u32(0x00010000);
    table.u32(0);
    table.u32(0x5F0F3CF5);
    table.all16({3, madeUnits});
    // The same font makes the same bytes, so made and changed at the start of 2000.
    constexpr std::uint32_t date = 0xB492F400; // seconds since 1904
    for (const std::uint32_t half : {0U, date, 0U, date}) {
        table.u32(half);
    }
    table.all16({low16(box.left), low16(box.bottom), low16(box.right), low16(box.top)});
    const std::uint32_t style = (measures.isBold ? 1U : 0U) | (measures.isItalic ? 2U : 0U);
    table.all16({style, 8, 2, 0, 0}); // smallest size, direction, formats
    return table;
}

TableBytes hheaTable(const FontMeasures& measures, std::span<const UnitGlyph> glyphs) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    for (const UnitGlyph& glyph : glyphs) {
        left = std::min(left, glyph.box.left);
        right = std::min(right, glyph.advance - glyph.box.right);
    }
    TableBytes table;
    table.u32(0x00010000);
    table.all16({low16(measures.ascent), low16(-measures.descent), 0,
                 low16(measures.longestAdvance), low16(left), low16(right),
                 low16(measures.box.right)});
    table.all16({1, 0, 0, 0, 0, 0, 0, 0, count32(glyphs.size())});
    return table;
}

TableBytes hmtxTable(std::span<const UnitGlyph> glyphs) {
    TableBytes table;
    for (const UnitGlyph& glyph : glyphs) {
        table.all16({low16(glyph.advance), low16(glyph.box.left)});
    }
    return table;
}

TableBytes maxpTable(std::size_t glyphs) {
    TableBytes table;
    table.u32(0x00005000);
    table.u16(count32(glyphs));
    return table;
}

TableBytes os2Table(const FontMeasures& measures) {
    constexpr std::uint32_t tenth = madeUnits / 10;
    TableBytes table;
    // Width 5, any embedding.
    table.all16({4, low16(measures.meanAdvance), low16(measures.weight), 5, 0});
    // Subscripts and superscripts: sizes and shifts; strikeout.
    table.all16({6 * tenth, 6 * tenth, 0, tenth, 6 * tenth, 6 * tenth, 0, 3 * tenth});
    table.all16({tenth / 2, 3 * tenth, 0});
    for (int i = 0; i < 10 + 16; ++i) {
        table.u8(0); // no classification, no ranges of characters
    }
    table.text("NONE");
    constexpr std::uint32_t regular = 0x40;
    const std::uint32_t style = (measures.isBold ? 0x20U : 0U) | (measures.isItalic ? 1U : 0U);
    table.all16({style == 0 ? regular : style, measures.firstCharacter, measures.lastCharacter,
                 low16(measures.ascent), low16(-measures.descent), 0});
    // Windows cuts off what is beyond.
    table.all16({low16(std::max({0, measures.ascent, measures.box.top})),
                 low16(std::max({0, measures.descent, -measures.box.bottom}))});
    table.u32(1); // code page: Latin 1
    table.u32(0);
    table.all16({0, 0, 0, ' ', measures.context});
    return table;
}

TableBytes postTable() {
    TableBytes table;
    table.u32(0x00030000); // the names of glyphs stand in the CFF
    table.u32(0);
    table.all16({low16(-madeUnits / 10), madeUnits / 20}); // underline
    for (int i = 0; i < 5; ++i) {
        table.u32(0);
    }
    return table;
}

} // namespace corvane
