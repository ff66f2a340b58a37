#include "reader/font/page_font.h"

#include "fonts/font_program.h"
#include "reader/font/font_entries.h"
#include "tests/fonts/shapes.h"
#include "tests/reader/reader_fixture.h"

#include <cmath>
#include <cstdio>

namespace corvane {
namespace {

/// fuzz/font_seeds.py says what is in the font programs: A is a square, B an arch, C both.
class PageFontTest : public ReaderTest {
protected:
    /// A font of these entries; objects 6 to 9 are streams that they may refer to.
    PageFont& read(const std::string& entries, const std::string& program = "",
                   const std::string& six = "", const std::string& seven = "") {
        PdfBuilder file = PdfBuilder::onePage("", "/Font 5 0 R");
        file.object(5, "<< " + entries + " >>").stream(6, six).stream(7, seven);
        if (!program.empty()) {
            file.stream(
                8, test::fileBytes(test::sourceFolder() / "fuzz" / "seeds" / "font" / program));
        }
        font_.reset();
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        const ObjectOwner dictionary = entryOf(cache, cache.page.get(), "Font");
        font_ = readFont(cache, dictionary.get(), 5);
        return *font_;
    }

    void TearDown() override {
        font_.reset();
        ReaderTest::TearDown();
    }

    /// What a string shows: "A:600 x/1:650", text, face where it is not 0, advance.
    std::string shown(std::string_view string) {
        std::vector<ShownGlyph> glyphs;
        font_->show(std::as_bytes(std::span(string)), glyphs);
        std::string all;
        for (const ShownGlyph& glyph : glyphs) {
            all += (all.empty() ? "" : " ") + std::string(glyph.text);
            all += glyph.face != 0 ? "/" + std::to_string(glyph.face) : "";
            all += ":" + std::to_string(std::lround(glyph.advance * 1000));
        }
        return all;
    }

    /// Which of the shapes a face has for a character; "-" for a blank one.
    std::string shape(char32_t character, std::int32_t face = 0) {
        const auto made = FontProgram::open(font_->makeFace(face));
        const auto glyph = made ? made->byCharacter(character) : std::nullopt;
        if (!glyph) {
            return "none";
        }
        const GlyphOutline outline = made->outline(*glyph);
        if (outline.empty()) {
            return "-";
        }
        return outline.size() == 2 ? "C" : outline[0].steps[0].isCurve ? "B" : "A";
    }

    std::unique_ptr<PageFont> font_;
};

std::string toUnicode(std::string_view mappings) {
    return "beginbfchar " + std::string(mappings) + " endbfchar";
}

TEST_F(PageFontTest, CodesOfSimpleFontsFindTheirGlyphs) {
    struct Row {
        const char* program;
        const char* entries;
        char code;
        const char* shown;
        const char* shape;
    };
    const Row rows[] = {
        {"unicode.ttf", "/Encoding /WinAnsiEncoding", 'A', "A:600", "A"},
        {"unicode.ttf", "/Encoding << /Differences [1 /C] >>", 1, "C:700", "C"},
        {"unicode.ttf", "/Encoding << /Differences [1 /uni0042] >>", 1, "B:650", "B"},
        {"unicode.ttf", "/Encoding /MacRomanEncoding", '\x80', "Ä:700", "C"},
        {"unicode.ttf", "/Other 1", '\x80', "C:700", "C"},
        {"unicode.ttf", "/Other 1", 'A', "A:600", "A"},
        {"symbol.ttf", "/Encoding /WinAnsiEncoding", 'B', "B:650", "B"},
        {"symbol.ttf", "/Other 1", 'B', "B:650", "B"},
        {"plain.pfa", "/Other 1", '\xC8', "B:650", "B"},
        {"plain.pfa", "/Encoding << /Differences [199 /C /A] >>", '\xC8', "A:600", "A"},
        {"names.cff", "/Encoding /StandardEncoding", 'C', "C:700", "C"},
        {"names.otf", "/Encoding /WinAnsiEncoding /Widths [123] /FirstChar 67", 'C', "C:123", "C"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.program) + " " + row.entries);
        read("/Subtype /Type1 /BaseFont /X /FontDescriptor << /Flags 4 /FontFile3 8 0 R >> " +
                 std::string(row.entries),
             row.program);
        EXPECT_EQ(shown(std::string_view(&row.code, 1)), row.shown);
        const std::string text = shown(std::string_view(&row.code, 1));
        EXPECT_EQ(shape(text.starts_with("Ä") ? U'Ä' : static_cast<char32_t>(text[0])), row.shape);
    }
}

constexpr const char* threeGlyphs = "/Subtype /Type1 /BaseFont /X /ToUnicode 6 0 R "
                                    "/FontDescriptor << /FontFile3 8 0 R >> "
                                    "/Encoding << /Differences [1 /A /B /C /A] >>";

TEST_F(PageFontTest, ALongTextIsCut) {
    std::string digits;
    for (int i = 0; i < 40; ++i) {
        digits += "0078";
    }
    read(threeGlyphs, "names.cff", toUnicode("<01> <" + digits + ">"));
    EXPECT_EQ(shown("\1"), std::string(16, 'x') + ":600");
}

TEST_F(PageFontTest, WhatIsNoTextIsMissing) {
    read(threeGlyphs, "names.cff",
         toUnicode("<01> <0020> <02> <0007> <03> <00AD> <05> <FFFD> <06> <200B>"));
    EXPECT_EQ(shown("\1\2\3"), "A:600 B:650 \u00AD:700") << "a square is no blank";
    EXPECT_EQ(shown("\5\6"), "\uE005:500 \u200B:0");
}

TEST_F(PageFontTest, GlyphsOfOneTextAreOfSeveralFaces) {
    read(threeGlyphs, "names.cff", toUnicode("<01> <0078> <02> <0078> <03> <0079> <04> <0078>"));
    EXPECT_EQ(shown("\1\2\3\4\2"), "x:600 x/1:650 y:700 x:600 x/1:650");
    EXPECT_EQ(font_->faceCount(), 2);
    EXPECT_EQ(shape(U'x', 0) + shape(U'x', 1), "AB");
    EXPECT_EQ(font_->encode("x", 0), "\1");
    EXPECT_EQ(font_->encode("x", 1), "\2");
    EXPECT_EQ(font_->encode("x", 2), "\1") << "the face does not have it";
    EXPECT_EQ(FontProgram::open(font_->makeFace(1))->familyName(),
              std::string(font_->facts().family) + " 2");
}

TEST_F(PageFontTest, LettersDoNotBecomeALigature) {
    const std::string texts = toUnicode("<01> <0066> <02> <0069> <03> <00660069>");
    read(threeGlyphs, "names.cff", texts);
    EXPECT_EQ(shown("\3\2\1\2\2"), "fi:700 i:650 f:600 i/1:650 i:650");
    read(threeGlyphs, "names.cff", texts);
    EXPECT_EQ(shown("\1"), "f:600");
    EXPECT_EQ(shown("\2\3"), "i:650 fi/1:700") << "the letters met, in another string";
}

TEST_F(PageFontTest, EncodesWhatItHas) {
    read(threeGlyphs, "names.cff", toUnicode("<03> <00660069> <09> <005A>"));
    EXPECT_EQ(font_->encode("A", 0), "\1");
    EXPECT_EQ(font_->encode("fi", 0), "\3");
    EXPECT_EQ(font_->encode("Z", 0), std::nullopt) << "no glyph";
    EXPECT_EQ(font_->encode("\xFF", 0), std::nullopt);
    EXPECT_EQ(shown("\4"), "A:600");
    EXPECT_EQ(font_->encode("A", 0), "\4") << "the page shows it so";
}

std::string composite(const std::string& encoding, const std::string& descendant) {
    return "/Subtype /Type0 /BaseFont /X /ToUnicode 6 0 R /Encoding " + encoding +
           " /DescendantFonts [<< /CIDToGIDMap 7 0 R /FontDescriptor << /FontFile2 8 0 R >> " +
           descendant + " >>]";
}

TEST_F(PageFontTest, CompositeFontsGoByCids) {
    const std::string map("\0\0\0\3\0\2", 6);
    read(composite("/Identity-H", "/W [1 [555]]"), "bare.ttf", toUnicode("<0001> <0416>"), map);
    EXPECT_EQ(shown(std::string_view("\0\1\0\2", 4)), "Ж:555 \uE002:1000");
    EXPECT_EQ(shape(U'Ж') + shape(U'\uE002'), "CB");
    EXPECT_EQ(font_->encode("Ж", 0), std::string("\0\1", 2));
    EXPECT_EQ(font_->encode("B", 0), std::nullopt);

    read(composite("/Identity-H", "/DW 400"), "cid.cff");
    EXPECT_EQ(shown("\x01\x2C"), "\uE12C:400");
    EXPECT_EQ(shape(U'\uE12C'), "B");

    read(composite("7 0 R", ""), "cid.cff", "",
         "begincodespacerange <00> <7F> <8000> <FFFF> endcodespacerange "
         "begincidrange <20> <30> 290 <8000> <8010> 5 endcidrange");
    EXPECT_EQ(shown("\x2A\x80\x02"), "\uE12C:1000 \uE007:1000");
}

TEST_F(PageFontTest, GlyphsOfWellKnownFontsAreCharactersWithoutTheFile) {
    const auto bare = [](const std::string& family, const std::string& descendant) {
        return "/Subtype /Type0 /BaseFont /" + family +
               " /Encoding /Identity-H /DescendantFonts [<< /BaseFont /" + family +
               " /FontDescriptor << /Flags 32 >> /DW 500 " + descendant + " >>]";
    };
    const std::string_view codes("\0\3\0\x24\0\x61\0\x62\0\xE1\0\xE2\0\1", 14);
    read(bare("ArialMT", "/Subtype /CIDFontType2"));
    if (!font_->facts().isPageFont) {
        GTEST_SKIP() << "no fonts are installed";
    }
    EXPECT_EQ(shown(codes), " :500 A:500 ~:500 Ä:500 ˇ:500 \uE0E2:500 \uE001:500");
    EXPECT_EQ(font_->encode("A", 0), std::string("\0\x24", 2));
    for (const auto& [family, descendant] : {std::pair("Calibri", "/Subtype /CIDFontType2"),
                                             std::pair("ArialMT", "/Subtype /CIDFontType0")}) {
        read(bare(family, descendant));
        EXPECT_EQ(shown(codes.substr(2, 2)), "\uE024:500");
    }
    read(bare("ArialMT", "/Subtype /CIDFontType2 /CIDToGIDMap 7 0 R"), "", "",
         std::string("\0\0\0\x24", 4));
    EXPECT_EQ(shown(std::string_view("\0\1\0\2", 4)), "A:500 \uE002:500");
}

TEST_F(PageFontTest, VerticalGlyphsHangFromTheLine) {
    read(composite("/Identity-V", "/W [1 [600]] /W2 [2 [-700 300 900]]"), "bare.ttf");
    ASSERT_TRUE(font_->isVertical());
    std::vector<ShownGlyph> glyphs;
    const std::string_view string("\0\1\0\2", 4);
    font_->show(std::as_bytes(std::span(string)), glyphs);
    ASSERT_EQ(glyphs.size(), 2U);
    EXPECT_DOUBLE_EQ(glyphs[0].advance, 1.0);
    EXPECT_DOUBLE_EQ(glyphs[1].advance, 0.7);
    // Faces hold them where a column of ems has them: in the middle, and at its usual origin.
    const auto made = FontProgram::open(font_->makeFace(0));
    const auto cornerOf = [](const FontProgram& program, GlyphNumber glyph) {
        const GlyphOutline outline = program.outline(glyph);
        return outline.empty() ? OutlinePoint{-9, -9} : outline.front().start;
    };
    const auto own = test::seedFont("bare.ttf");
    for (const auto& [glyph, x, y] : {std::tuple(1U, .5 - .3, 0.0), std::tuple(2U, .2, -.02)}) {
        const GlyphNumber placed = made->byCharacter(U'\uE000' + glyph).value_or(0);
        EXPECT_DOUBLE_EQ(made->advance(placed), 1);
        EXPECT_NEAR(cornerOf(*made, placed).x, cornerOf(*own, glyph).x + x, 1e-3);
        EXPECT_NEAR(cornerOf(*made, placed).y, cornerOf(*own, glyph).y + y, 1e-3);
    }
}

TEST_F(PageFontTest, Type3GoesByItsMatrix) {
    read("/Subtype /Type3 /FontMatrix [0.01 0 0 0.01 0 0] /FirstChar 32 /Widths [30 60] "
         "/CharProcs << /space 6 0 R /b 7 0 R >> /Encoding << /Differences [32 /space /b /c 65 "
         "/a65] >>");
    EXPECT_EQ(shown(" !\"A"), " :300 b:600 c:0 \uE041:0");
    EXPECT_DOUBLE_EQ(font_->spaceAdvance(), 0.3);
    EXPECT_EQ(font_->encode("b", 0), "!");
    EXPECT_EQ(font_->encode("c", 0), std::nullopt) << "no procedure";
    EXPECT_EQ(font_->faceCount(), 0);
    read("/Subtype /Type3 /CharProcs << /a65 6 0 R >> /Encoding << /Differences [65 /a65] >>");
    EXPECT_EQ(shown("A"), "A:0") << "a name that says nothing";
}

double rightEdge(const PageFont& font, char32_t character) {
    const auto made = FontProgram::open(font.makeFace(0));
    double edge = 0;
    for (const Contour& contour : made->outline(made->byCharacter(character).value_or(0))) {
        for (const OutlineStep& step : contour.steps) {
            edge = std::max(edge, step.to.x);
        }
    }
    return edge;
}

TEST_F(PageFontTest, FontsOfTheMachineAreDrawnAsWideAsTheDocumentSays) {
    const std::string bare = "/Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding ";
    read(bare);
    if (!font_->facts().isPageFont) {
        GTEST_SKIP() << "no fonts are installed";
    }
    const std::string own = shown("W");
    const double edge = rightEdge(*font_, U'W');
    const double width = std::stod(own.substr(2));
    read(bare + "/FirstChar 87 /Widths [" + std::to_string(width / 2) + "]");
    shown("W");
    EXPECT_NEAR(rightEdge(*font_, U'W'), edge / 2, 0.001);
    EXPECT_EQ(font_->facts().realFamily, "Helvetica");
}

/// Other programs would show a box, in a font of theirs.
TEST_F(PageFontTest, CodesThatMeanNothingShowNothing) {
    read("/Subtype /Type1 /BaseFont /Helvetica");
    if (!font_->facts().isPageFont) {
        GTEST_SKIP() << "no fonts are installed";
    }
    const std::string seen = shown("\1");
    EXPECT_TRUE(seen.starts_with("\uE001:"));
    EXPECT_FALSE(seen.ends_with(":0")) << "what stands for missing glyphs is as wide";
    EXPECT_EQ(shape(U'\uE001'), "-");
}

/// A viewer makes one glyph of letters that run one way. Marks of scripts from the right are set
/// apart from their letters.
TEST_F(PageFontTest, LettersFromTheRight) {
    read(threeGlyphs, "names.cff", toUnicode("<01> <064E> <02> <0628> <03> <062D064E00200061>"));
    EXPECT_EQ(shown("\2\1\3\2"), "\u0628:650 \u064E/1:600 C:700 \u0628:650");
    EXPECT_EQ(shape(U'\u064E', 1) + shape(U'\u064E', 0), "Anone");
    read(threeGlyphs, "names.cff", toUnicode("<01> <0301> <02> <0065> <03> <06440627>"));
    EXPECT_EQ(shown("\2\1\3"), "e:650 \u0301:600 \u0627\u0644:700");
}

TEST_F(PageFontTest, HostileDictionariesAreRead) {
    for (const char* entries :
         {"", "/Subtype /Type0", "/Subtype /Type0 /DescendantFonts [1 2]",
          "/Subtype /Type0 /DescendantFonts [5 0 R] /Encoding 5 0 R",
          "/Subtype /Type1 /FontDescriptor 5 0 R /FontFile 5 0 R /Encoding 5 0 R",
          "/Subtype /Type0 /Encoding 6 0 R /DescendantFonts 5 0 R /W [5 0 R] /W2 5 0 R",
          "/Subtype /Type3 /FontMatrix [(x)] /CharProcs 6 0 R /Widths 6 0 R /Encoding /X"}) {
        SCOPED_TRACE(entries);
        read(entries, "", "begincmap <");
        EXPECT_NE(shown("a\xFF"), "");
        EXPECT_EQ(font_->encode("", 0), std::nullopt);
        EXPECT_GT(font_->spaceAdvance(), 0);
    }
    DocumentCache& cache = *cache_;
    EXPECT_EQ(raisedBy([&] { readFont(cache, Object{}, 0); }), Exception::type);
}

} // namespace
} // namespace corvane
