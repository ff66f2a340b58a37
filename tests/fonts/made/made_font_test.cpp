#include "fonts/made/made_font.h"

#include "fonts/shaped_text.h"

#include "tests/fonts/shapes.h"
#include "tests/support/drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace corvane {
namespace {

constexpr double tolerance = 0.5 / madeUnits + 1e-9;

/// Steps of every kind that a charstring has an operator for, more of each than one operator takes.
GlyphOutline manySteps() {
    Contour contour{{0.1, 0.2}, {}};
    OutlinePoint here = contour.start;
    const auto line = [&](double x, double y) {
        here = {here.x + x, here.y + y};
        contour.steps.push_back({false, {}, {}, here});
    };
    const auto curve = [&](OutlinePoint a, OutlinePoint b, OutlinePoint c) {
        const OutlinePoint first{here.x + a.x, here.y + a.y};
        const OutlinePoint second{first.x + b.x, first.y + b.y};
        here = {second.x + c.x, second.y + c.y};
        contour.steps.push_back({true, first, second, here});
    };
    for (int i = 0; i < 60; ++i) {
        const double d = (i % 2 == 0 ? 1 : -1) * (0.001 + 0.01 * i);
        line(d, 0);
        line(0, d / 3);
        line(d / 7, -d);
        curve({d, 0}, {d, d}, {0, d});
        curve({0, d}, {-d, d}, {d, 0});
    }
    for (int i = 0; i < 30; ++i) {
        curve({0.01, 0}, {0.02, 0.01}, {0.01, 0});
    }
    for (int i = 0; i < 30; ++i) {
        curve({0, -0.01}, {0.02, 0.01}, {0, -0.03});
    }
    for (int i = 0; i < 30; ++i) {
        curve({0.01, 0.02}, {0.1, -0.04}, {-0.09, 0.01});
        line(0.0013, 0.0017);
    }
    return {contour};
}

MadeFont smallFont() {
    MadeFont font;
    font.family = "Page font";
    font.glyphs = {{manySteps(), 0.5553, U"a"},
                   {test::seedFont("plain.pfa")->outline(3), 1.0, U"\U0001F600"},
                   {test::seedFont("unicode.ttf")->outline(3), 0, U"ffi"},
                   {{}, 0.25, U" "}};
    return font;
}

TEST(MadeFont, IsReadBack) {
    const MadeFont font = smallFont();
    const auto program = FontProgram::open(writeMadeFont(font));
    ASSERT_TRUE(program);
    EXPECT_EQ(program->kind(), ProgramKind::cff);
    EXPECT_EQ(program->familyName(), "Page font");
    EXPECT_DOUBLE_EQ(program->ascent(), 0.8);
    EXPECT_DOUBLE_EQ(program->descent(), 0.2);
    for (GlyphNumber i = 1; i <= font.glyphs.size(); ++i) {
        SCOPED_TRACE(i);
        const MadeGlyph& glyph = font.glyphs[i - 1];
        EXPECT_NEAR(program->advance(i), glyph.advance, tolerance);
        test::expectSame(program->outline(i), glyph.outline, tolerance);
        if (glyph.text.size() == 1) {
            EXPECT_EQ(program->byCharacter(glyph.text.front()), i);
        }
    }
    EXPECT_EQ(program->nameOf(3), "uni0066_uni0066_uni0069");
    // Parts of ligatures are blank glyphs behind the others.
    EXPECT_EQ(program->byCharacter('f'), 5U);
    EXPECT_EQ(program->byCharacter('i'), 6U);
    EXPECT_TRUE(program->outline(5).empty());
}

/// Characters of many runs, so that a cmap of 16-bit lengths cannot hold all; and ligatures beyond
/// one subtable.
MadeFont extremeFont() {
    const double huge = std::numeric_limits<double>::infinity();
    MadeFont font;
    font.family = "\xFF\xC3";
    font.glyphs.push_back(
        {{{{-100, 100}, {{false, {}, {}, {100, -100}}, {false, {}, {}, {0, 0}}}}}, huge, U"A"});
    font.glyphs.push_back(
        {{{{std::nan(""), 0}, {{true, {huge, 0}, {0, -huge}, {1, 1}}}}}, -1, U"A"});
    // Characters of many runs, so that a cmap of 16-bit lengths cannot hold all; and ligatures
    // beyond one subtable.
    for (char32_t c = 0; c < 9000; ++c) {
        font.glyphs.push_back({{}, 0.5, {0x1000 + 2 * c}});
        font.glyphs.push_back({{}, 0.5, {U'A', 0x1000 + 2 * c, U'B'}});
    }
    return font;
}

TEST(MadeFont, HoldsWhatIsExtreme) {
    const auto program = FontProgram::open(writeMadeFont(extremeFont()));
    ASSERT_TRUE(program);
    const GlyphOutline outline = program->outline(1);
    ASSERT_EQ(outline.size(), 1U);
    EXPECT_EQ(outline[0].start, (OutlinePoint{-madeReach, madeReach}));
    EXPECT_EQ(outline[0].steps[0].to, (OutlinePoint{madeReach, -madeReach}));
    EXPECT_EQ(program->advance(2), 0); // of the second glyph that means A
    EXPECT_EQ(program->byCharacter(0x1000 + 2 * 8999), 3U + 2 * 8999);
    EXPECT_TRUE(FontProgram::open(writeMadeFont({})));
}

/// Browsers refuse what OpenType Sanitizer refuses.
/// Lines of a page are set from the left whatever their letters are.
TEST(MadeFont, LettersStandAsThePageHasThem) {
    const GlyphOutline outline = test::seedFont("plain.pfa")->outline(3);
    MadeFont made;
    made.family = "Arabic";
    made.glyphs = {{outline, .5, U"\u0628"},
                   {outline, .4, U"\uFE91"},
                   {outline, .3, U"\u064E"},
                   {outline, .6, U"\u0644\u0627"},
                   {outline, .2, U"\u0644"},
                   {outline, .2, U"\u0627"},
                   {outline, .7, U"e"},
                   {outline, .1, U"\u0301"},
                   {outline, .8, U"\u0628\u0651"},
                   {outline, .2, U"\u0651"}};
    const auto font = OpenTypeFont::open(writeMadeFont(made));
    ASSERT_NE(font, nullptr);
    struct Row {
        const char* name;
        std::u32string text;
        std::vector<GlyphNumber> glyphs;
    };
    for (const Row& row : {
             Row{"forms are not chosen", U"\u0628\u0628", {1, 1}},
             Row{"a mark keeps its width", U"\u064E", {3}},
             Row{"a ligature from the right", U"\u0628\u0644\u0627\u0628", {1, 4, 1}},
             Row{"its letters in the other order are two", U"\u0627\u0644", {6, 5}},
             Row{"a letter with its mark", U"\u0628\u0651\u0627", {9, 6}},
             Row{"an accent is not moved", U"e\u0301", {7, 8}},
         }) {
        const auto shaped = shapeText(*font, {.text = row.text, .count = row.text.size()});
        std::vector<GlyphNumber> glyphs;
        for (const ShapedGlyph& glyph : shaped) {
            glyphs.push_back(glyph.glyph);
            EXPECT_NEAR(glyph.advance, made.glyphs[glyph.glyph - 1].advance, tolerance) << row.name;
            EXPECT_EQ(glyph.x, 0) << row.name;
            EXPECT_EQ(glyph.y, 0) << row.name;
        }
        EXPECT_EQ(glyphs, row.glyphs) << row.name;
    }
}

TEST(MadeFont, IsTakenByBrowsers) {
    if (!test::isInstalled("ots-sanitize")) {
        GTEST_SKIP() << "needs ots-sanitize";
    }
    const test::TemporaryFolder folder;
    for (const MadeFont& font : {MadeFont{}, smallFont(), extremeFont()}) {
        const std::vector<std::byte> bytes = writeMadeFont(font);
        std::string text(bytes.size(), '\0');
        std::ranges::transform(bytes, text.begin(),
                               [](std::byte byte) { return std::to_integer<char>(byte); });
        test::Process sanitizer;
        sanitizer.words = {"/usr/bin/env", "ots-sanitize", folder.add("made.otf", text),
                           "/dev/null"};
        const test::Outcome outcome = test::run(sanitizer);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
    }
}

} // namespace
} // namespace corvane
