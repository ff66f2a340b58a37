// Fonts of the machine: how text is set in them, and the parts that documents get.
#include "fonts/font_subset.h"
#include "fonts/order/text_order.h"
#include "fonts/shaped_text.h"
#include "host/fonts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace corvane {
namespace {

std::shared_ptr<const OpenTypeFont> fontOf(const std::string& name) {
    const auto found = findFont({.name = name, .isOpenType = true});
    return found ? OpenTypeFont::openFile(found->path, found->face) : nullptr;
}

std::vector<ShapedGlyph> shaped(const OpenTypeFont& font, std::u32string_view text,
                                bool isRightToLeft = false, bool hasLigatures = true) {
    return shapeText(font, {.text = text,
                            .count = text.size(),
                            .isRightToLeft = isRightToLeft,
                            .hasLigatures = hasLigatures});
}

TEST(ShapedText, LettersAreKernedJoinedAndPutTogether) {
    const auto font = fontOf("DejaVu Sans");
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->facts().fullName, "DejaVu Sans");
    EXPECT_TRUE(font->mayBeEmbedded());
    struct Row {
        std::u32string text;
        bool isRightToLeft;
        bool hasLigatures;
        std::vector<std::size_t> clusters;
    };
    const Row rows[] = {
        {U"ab", false, true, {0, 1}},
        {U"offi", false, true, {0, 1}},
        {U"offi", false, false, {0, 1, 2, 3}},
        {U"e\u0301a", false, true, {0, 2}},                   // one glyph for both
        {U"x\u0323a", false, true, {0, 1, 2}},                // a mark of its own
        {U"\u0633\u0644\u0627\u0645", true, true, {3, 1, 0}}, // lam and alef are one glyph
        {U"a\u200Db", false, true, {0, 2}},                   // nobody sees a joiner
    };
    for (const Row& row : rows) {
        std::vector<std::size_t> clusters;
        for (const ShapedGlyph& glyph :
             shaped(*font, row.text, row.isRightToLeft, row.hasLigatures)) {
            clusters.push_back(glyph.cluster);
            EXPECT_NE(glyph.glyph, 0U);
        }
        EXPECT_EQ(clusters, row.clusters) << testing::PrintToString(row.text);
    }
    const auto pair = shaped(*font, U"AV");
    EXPECT_LT(pair[0].advance, font->advance(pair[0].glyph) - 0.02);
    // What stands beside a stretch counts for how it joins.
    const std::u32string word = U"\u0633\u0644\u0645";
    const auto whole = shaped(*font, word, true);
    const auto middle =
        shapeText(*font, {.text = word, .start = 1, .count = 1, .isRightToLeft = true});
    ASSERT_EQ(middle.size(), 1U);
    EXPECT_EQ(middle[0].glyph, whole[1].glyph);
    EXPECT_EQ(middle[0].cluster, 1U);
    EXPECT_TRUE(font->shows(U"e\u0301"));
    EXPECT_FALSE(font->shows(U"\U0001F9FF"));
}

TEST(TextOrder, LinesOfTwoDirections) {
    struct Row {
        std::u32string line;
        bool isRightToLeft;
        std::u32string shown; ///< from left to right
    };
    const Row rows[] = {
        {U"ab cd", false, U"ab cd"},
        {U"ab \u05D0\u05D1 cd", false, U"ab \u05D1\u05D0 cd"},
        {U"\u05D0\u05D1 12 \u05D2", true, U"\u05D2 12 \u05D1\u05D0"},
        {U"\u05D0 ab\u05D1", true, U"\u05D1ab \u05D0"},
        {U"ab \u05D0 ", false, U"ab \u05D0 "}, // the last blank stays at the end
        {U"", true, U""},
    };
    for (const Row& row : rows) {
        std::u32string shown;
        for (const std::size_t at : visualOrder(levelsOf(row.line, row.isRightToLeft))) {
            shown += row.line[at];
        }
        EXPECT_EQ(shown, row.shown);
    }
}

TEST(TextOrder, LinesThatStandInOrderAreRead) {
    struct Row {
        std::u32string standing;
        bool isRightToLeft;
        std::u32string read;
    };
    const Row rows[] = {
        {U"\u05D2 12 \u05D1\u05D0", true, U"\u05D0\u05D1 12 \u05D2"},
        {U"ab \u05D1\u05D0 cd", false, U"ab \u05D0\u05D1 cd"},
        {U"(\u05D1\u05D0) ab", true, U"ab (\u05D0\u05D1)"},
        {U".(7) [ab] \u05D1\u05D0", true, U"\u05D0\u05D1 [ab] (7)."},
        // Behind Arabic letters numbers with a sign between them stand the other way round.
        {U"04-14 \u0628", true, U"\u0628 14-04"},
        {U"\u064E\u0628", true, U"\u0628\u064E"},
        {U"", true, U""},
    };
    for (const Row& row : rows) {
        const auto line = readingOf(row.standing);
        ASSERT_TRUE(line);
        EXPECT_EQ(line->isRightToLeft, row.isRightToLeft);
        std::u32string read;
        for (std::size_t i = 0; i < line->order.size(); ++i) {
            const char32_t standing = row.standing[line->order[i]];
            read += line->levels[i] % 2 != 0 ? mirrored(standing) : standing;
        }
        EXPECT_EQ(read, row.read);
    }
}

std::vector<OutlinePoint> pointsOf(const GlyphOutline& outline) {
    std::vector<OutlinePoint> points;
    for (const Contour& contour : outline) {
        points.push_back(contour.start);
        for (const OutlineStep& step : contour.steps) {
            points.insert(points.end(), {step.first, step.second, step.to});
        }
    }
    return points;
}

TEST(FontSubset, HasTheGlyphsThatWereAskedForAndNoOther) {
    for (const char* const name : {"DejaVu Sans", "Nimbus Sans"}) {
        SCOPED_TRACE(name);
        const auto found = findFont({.name = name, .isOpenType = true});
        const auto font = OpenTypeFont::openFile(found->path, found->face);
        ASSERT_NE(font, nullptr);
        const auto whole = FontProgram::openFile(found->path, found->face);
        std::vector<GlyphNumber> glyphs;
        for (const ShapedGlyph& glyph : shaped(*font, U"\u00C5a\u00F6i")) {
            glyphs.push_back(glyph.glyph);
        }
        const auto subset = makeSubset(*font, glyphs);
        ASSERT_TRUE(subset);
        EXPECT_LT(subset->program.size(), 4000U);
        EXPECT_EQ(makeSubset(*font, glyphs)->program, subset->program);
        const auto part = FontProgram::open(subset->program);
        ASSERT_NE(part, nullptr);
        // Composed glyphs bring their parts along.
        EXPECT_LE(part->glyphCount(), 10U);
        for (const GlyphNumber glyph : glyphs) {
            const GlyphNumber number = subset->cids.at(glyph);
            EXPECT_EQ(pointsOf(part->outline(number)), pointsOf(whole->outline(glyph)));
            EXPECT_EQ(part->advance(number), whole->advance(glyph));
            EXPECT_FALSE(part->outline(number).empty());
        }
    }
}

TEST(FontSubset, HasNoGlyphThatTheFontLacks) {
    for (const char* const name : {"DejaVu Sans", "Nimbus Sans"}) {
        const auto font = fontOf(name);
        ASSERT_NE(font, nullptr);
        EXPECT_FALSE(makeSubset(*font, std::vector<GlyphNumber>{1, 0xFFFE})) << name;
    }
}

TEST(OpenTypeFont, TakesNothingThatIsDamaged) {
    const auto found = findFont({.name = "DejaVu Sans", .isOpenType = true});
    EXPECT_EQ(OpenTypeFont::openFile(found->path, 1), nullptr);
    EXPECT_EQ(OpenTypeFont::openFile(found->path, -1), nullptr);
    EXPECT_EQ(OpenTypeFont::openFile(found->path + "x", 0), nullptr);
    EXPECT_EQ(OpenTypeFont::open(std::vector<std::byte>(4096)), nullptr);
    EXPECT_EQ(OpenTypeFont::open({}), nullptr);
}

} // namespace
} // namespace corvane
