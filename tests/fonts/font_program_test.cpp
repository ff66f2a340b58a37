#include "fonts/font_program.h"

#include "tests/fonts/shapes.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::seedFont;

constexpr int none = -1;

int numberOf(std::optional<GlyphNumber> glyph) {
    return glyph ? static_cast<int>(*glyph) : none;
}

/// fuzz/font_seeds.py says what is in the fonts.
struct Lookups {
    const char* file;
    ProgramKind kind;
    int nameC;     ///< byName("C")
    int character; ///< byCharacter('B')
    int macintosh; ///< bySubtable(1, 0, 0x80)
    int symbol;    ///< bySubtable(3, 0, 'B')
    int own;       ///< byOwnCode(200)
    int cid300;
    int cid3;
    char32_t meaning; ///< characterOf of glyph 2
};

class Programs : public ::testing::TestWithParam<Lookups> {};

TEST_P(Programs, FindGlyphs) {
    const Lookups& wanted = GetParam();
    const auto program = seedFont(wanted.file);
    ASSERT_TRUE(program);
    EXPECT_EQ(program->kind(), wanted.kind);
    EXPECT_EQ(numberOf(program->byName("C")), wanted.nameC);
    EXPECT_EQ(numberOf(program->byName(".notdef")), none);
    EXPECT_EQ(numberOf(program->byCharacter('B')), wanted.character);
    EXPECT_EQ(numberOf(program->bySubtable(1, 0, 0x80)), wanted.macintosh);
    EXPECT_EQ(numberOf(program->bySubtable(3, 0, 'B')), wanted.symbol);
    EXPECT_EQ(numberOf(program->byOwnCode(200)), wanted.own);
    EXPECT_EQ(numberOf(program->byCid(300)), wanted.cid300);
    EXPECT_EQ(numberOf(program->byCid(3)), wanted.cid3);
    EXPECT_EQ(program->characterOf(2), wanted.meaning);
    EXPECT_EQ(program->isSymbolic(), wanted.symbol != none);
}

INSTANTIATE_TEST_SUITE_P(
    Seeds, Programs,
    ::testing::Values(
        Lookups{"unicode.ttf", ProgramKind::trueType, 3, 2, 3, none, none, none, 3, 'B'},
        Lookups{"symbol.ttf", ProgramKind::trueType, 3, none, none, 2, none, none, 3, 'B'},
        Lookups{"bare.ttf", ProgramKind::trueType, none, none, none, none, none, none, 3, 0},
        Lookups{"names.otf", ProgramKind::cff, 3, 2, none, none, none, none, 3, 'B'},
        Lookups{"names.cff", ProgramKind::cff, 3, 2, none, none, none, none, 3, 'B'},
        Lookups{"cid.cff", ProgramKind::cidCff, none, none, none, none, none, 300, none, 0},
        Lookups{"cid.otf", ProgramKind::cidCff, none, none, none, none, none, 2, none, 0x20A1},
        Lookups{"plain.pfa", ProgramKind::type1, 3, 2, none, none, 2, none, 3, 'B'},
        Lookups{"segments.pfb", ProgramKind::type1, 3, 2, none, none, 2, none, 3, 'B'},
        Lookups{"lead.pfa", ProgramKind::type1, 3, 2, none, none, 2, none, 3, 'B'},
        Lookups{"other-line.pfa", ProgramKind::type1, 3, 2, none, none, 2, none, 3, 'B'}),
    [](const auto& row) {
        std::string name = row.param.file;
        std::erase_if(name, [](char c) { return c == '.' || c == '-'; });
        return name;
    });

TEST(FontProgram, ReadsShapesInEms) {
    const OutlinePoint origin;
    const GlyphOutline square = {
        {origin,
         {{false, {}, {}, {0.5, 0}}, {false, {}, {}, {0.5, 0.5}}, {false, {}, {}, {0, 0.5}}}}};
    for (const char* file : {"unicode.ttf", "bare.ttf", "names.cff", "plain.pfa"}) {
        SCOPED_TRACE(file);
        const auto program = seedFont(file);
        ASSERT_TRUE(program);
        EXPECT_DOUBLE_EQ(program->advance(1), 0.6);
        test::expectSame(program->outline(1), square, 1e-9);
        EXPECT_EQ(program->outline(3).size(), 2U);
        EXPECT_TRUE(program->outline(0).empty());
        EXPECT_TRUE(program->outline(4000).empty());
    }
    EXPECT_DOUBLE_EQ(seedFont("cid.cff")->advance(300), 0.65);
    // The control point of the quadratic arch is 0.3,0.6; two thirds of the way to it from each
    // end.
    test::expectSame(seedFont("unicode.ttf")->outline(2),
                     {{origin, {{true, {0.2, 0.4}, {0.4, 0.4}, {0.6, 0}}}}}, 1e-9);
}

TEST(FontProgram, TellsOfItself) {
    const auto program = seedFont("unicode.ttf");
    EXPECT_EQ(program->familyName(), "Seed");
    EXPECT_DOUBLE_EQ(program->ascent(), 0.8);
    EXPECT_DOUBLE_EQ(program->descent(), 0.2);
    EXPECT_FALSE(program->mayBeEmbedded());
    EXPECT_TRUE(seedFont("names.otf")->mayBeEmbedded());
    EXPECT_EQ(program->nameOf(3), "C");
}

TEST(FontProgram, RefusesWhatIsNoFont) {
    EXPECT_FALSE(FontProgram::open({}));
    EXPECT_FALSE(FontProgram::open(std::vector(5000, std::byte{'%'})));
    EXPECT_FALSE(FontProgram::openFile("/nowhere/font.ttf", 0));
}

} // namespace
} // namespace corvane
