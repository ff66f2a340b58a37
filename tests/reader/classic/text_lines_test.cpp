// Text of pages in the original profile.
#include "host/resources.h"
#include "resources/resources.h"
#include "tests/reader/classic/line_text.h"
#include "tests/reader/reader_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class TextLinesTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        selectRules(Profile::original);
    }

    /// Draws content with those entries of the "Font" dictionary; the warnings.
    std::string show(std::string_view content, std::string_view fonts = helvetica) {
        return drawContent(content, "/Resources << /Font << " + std::string(fonts) + " >> >>");
    }
    std::string texts() { return textsText(document(), importedArt()); }

    static constexpr std::string_view helvetica =
        "/F1 << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>";

    ResourceSource resources_{pluginResources()};
};

struct Row {
    const char* content;
    const char* texts;
    const char* warnings = "";
};

TEST_F(TextLinesTest, LinesOfThePage) {
    const Row rows[] = {
        {"BT /F1 12 Tf 60 700 Td (Two ) Tj (strings) Tj ET", "Helvetica 12 @60,700 F: Two strings"},
        {"BT /F1 12 Tf 14 TL 60 700 Td (a) Tj T* (b) Tj (c) ' ET",
         "Helvetica 12 @60,700 F: a | Helvetica 12 @60,686 F: b | Helvetica 12 @60,672 F: c"},
        {"BT /F1 12 Tf 60 700 Td (a) Tj 0 -14 Td (b) Tj ET",
         "Helvetica 12 @60,700 F: a\nHelvetica 12 @60,686 F: b"},
        // A line end moves by both offsets of TD, the letters of the line straight down.
        {"BT /F1 12 Tf 60 700 TD 5 -14 TD (a) Tj T* (b) Tj 0 0 Td (c) Tj ET",
         "Helvetica 12 @65,686 F: a | Helvetica 12 @65,672 F: b\nHelvetica 12 @70,672 F: c"},
        {"BT /F1 12 Tf 5 -14 TD 20 TL 0 100 Td T* (a) Tj ET", "Helvetica 12 @10,66 F: a"},
        {"BT /F1 10 Tf 0 0 Td [(A) -250 (B) 120 (C)] TJ ET",
         "Helvetica 10 @0,0 F: A{0.25}B{-0.12}C"},
        // Of kerns at one place the first stays.
        {"BT /F1 10 Tf [(A) -250 500 (B) 7] TJ ET", "Helvetica 10 @0,0 F: A{0.25}B"},
        {"BT /F1 10 Tf 1 0 0 1 10000 -9999 Tm (a) Tj ET", "Helvetica 10 @4320,-4320 F: a"},
        {"BT /F1 1 Tf 20 0 0 20 60 700 Tm .125 Ts .2 Tc (a) Tj ET",
         "Helvetica 20^2.5+4 @60,700 F: a"},
        {"2 0 0 2 10 20 cm BT /F1 5 Tf 0 1 -1 0 60 70 Tm (a) Tj ET",
         "Helvetica 10 @130,160(0 1 -1 0) F: a"},
        // A blank is 0.278 em wide.
        {"BT /F1 10 Tf 5 Tw (a b) Tj ET", "Helvetica 10 @0,0 F: a {0.5}b"},
        {"BT /F1 10 Tf (aa) Tj 50 Tz (b) Tj ET",
         "Helvetica 10 @0,0 F: aa | Helvetica 10 @11.12,0(0.5 0 0 1) F: b"},
        {"BT /F1 -10 Tf 50 60 Td (a) Tj ET", "Helvetica 10 @50,60(-1 0 0 -1) F: a"},
        {"BT /F1 10 Tf 0 Tz (a) Tj ET BT /F1 0 Tf 100 Tz (b) Tj ET", "", "7"},
        {"BT /F1 10 Tf 1 2 (a) \" T* (b) Tj ET",
         "Helvetica 10+2 @0,0 F: a | Helvetica 10+2 @0,0 F: b"},
        {"BT /F1 1 Tf 11 Tc (a) Tj ET", "Helvetica 1+11 @0,0 F: a", "7"},
        // Left open at the end of the page.
        {"BT /F1 10 Tf (a) Tj", "Helvetica 10 @0,0 F: a"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(show(row.content), row.warnings) << row.content;
        EXPECT_EQ(texts(), row.texts) << row.content;
    }
}

TEST_F(TextLinesTest, RenderModes) {
    const Row rows[] = {
        {"BT /F1 9 Tf 1 Tr (a) Tj 2 Tr (b) Tj 3 Tr (c) Tj ET",
         "Helvetica 9 @0,0 S: a | Helvetica 9 FS: b | Helvetica 9 : c"},
        {"q BT /F1 9 Tf 7 Tr (a) Tj ET 0 0 9 9 re f Q 0 0 1 1 re f",
         "[{<>\nHelvetica 9 @0,0 C: a}]\n<>"},
        {"q BT /F1 9 Tf 4 Tr (a) Tj ET 0 0 9 9 re f Q",
         "[Helvetica 9 @0,0 F: a\n{<>\nHelvetica 9 @0,0 C: a}]"},
        {"q BT /F1 9 Tf 14 TL 6 Tr [(a) -250 (b)] TJ (c) ' ET Q",
         "[Helvetica 9 @0,0 FS: a{0.25}b | Helvetica 9 @0,-14 FS: c\n"
         "{Helvetica 9 @0,0 C: a{0.25}b | Helvetica 9 @0,-14 C: c}]"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(show(row.content), "") << row.content;
        EXPECT_EQ(texts(), row.texts) << row.content;
    }
}

TEST_F(TextLinesTest, OperatorsOutOfPlaceAreSkipped) {
    const Row rows[] = {
        {"BT /F1 9 Tf (a) Tj BT (b) Tj ET", "Helvetica 9 @0,0 F: ab", "13"},
        {"(a) Tj /F1 9 Tf 2 Tr ET BT (b) Tj ET", "", "7 13"},
        {"BT /F1 9 Tf 8 Tr 2.5 Tr -1 Tr (a) Tj ET", "Helvetica 9 @0,0 F: a", "13"},
        {"BT /F1 9 Tf [(a) /no (b)] TJ [<62>] TJ ET", "Helvetica 9 @0,0 F: a", "13"},
        {"BT /F1 9 Tf [-250] TJ [] TJ (a) Tj ET", "Helvetica 9 @0,0 F: {0.25}a"},
        {"BT /F1 9 Tf () Tj (a\\000\\011b) Tj ET", "Helvetica 9 @0,0 F: ab"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(show(row.content), row.warnings) << row.content;
        EXPECT_EQ(texts(), row.texts) << row.content;
    }
}

/// What the font named F1 makes of the codes A, ' and 202.
TEST_F(TextLinesTest, FontsAndEncodings) {
    constexpr auto content = "BT /F1 9 Tf (A'\\202) Tj ET";
    const struct {
        const char* font;
        const char* texts;
        const char* warnings = "";
    } rows[] = {
        {"/Subtype /Type1 /BaseFont /Times-Roman", "Times-Roman 9 @0,0 F: A’Ç"},
        {"/Subtype /Type1 /BaseFont /Times-Roman /Encoding /MacRomanEncoding",
         "Times-Roman 9 @0,0 F: A'Ç"},
        {"/Subtype /Type1 /BaseFont /Courier /Encoding /WinAnsiEncoding", "Courier 9 @0,0 F: A'‚",
         "5"},
        {"/Subtype /Type1 /BaseFont /Symbol", "Symbol 9 @0,0 F: Α∋"},
        {"/Subtype /Type1 /BaseFont /Courier /Encoding << /Differences [39 /eacute 65 /nosuch] >>",
         "Courier 9 @0,0 F: ?éÇ", "5"},
        {"/Subtype /Type1 /BaseFont /Courier /Encoding << /BaseEncoding /MacExpertEncoding "
         "/Differences [-1 /a /b 70000 /c 65 /.notdef /bullet] >>",
         "Courier 9 @0,0 F: ??¢", "5"},
        {"/Subtype /TrueType /BaseFont /Arial,Bold /Encoding /MacRomanEncoding",
         "Helvetica-Bold 9 @0,0 F: A'Ç", "17"},
        {"/Subtype /Type1 /BaseFont /ABCDEF+Nowhere /Encoding /MacRomanEncoding /FontDescriptor << "
         "/Flags 66 >>",
         "Times-Italic 9 @0,0 F: A'Ç", "16"},
        {"/Subtype /MMType1 /BaseFont /Courier_400_600_ /Encoding /MacRomanEncoding",
         "Courier 9 @0,0 F: A'Ç"},
        {"/Subtype /MMType1 /BaseFont /Nowhere_400_ /Encoding /MacRomanEncoding",
         "Helvetica 9 @0,0 F: A'Ç", "15"},
        {"/Subtype /Type3 /FontMatrix [1 0 0 1 0 0]", "", "4"},
        // What was known of the font by then is in use.
        {"/BaseFont /Times-Roman", "Helvetica 9 @0,0 F: A'Ç", "13"},
        {"/Subtype /Type0 /BaseFont /Times-Roman", "Helvetica 9 @0,0 F: A'Ç", "13"},
        {"/Subtype /Type1 /BaseFont (Courier)", "Helvetica 9 @0,0 F: A'Ç", "13"},
        {"/Subtype /Type1 /BaseFont /Courier /Encoding /StandardEncoding", "Courier 9 @0,0 F: A'Ç",
         "13"},
        {"/Subtype /Type1 /BaseFont /Courier /Encoding [1]", "Courier 9 @0,0 F: A'Ç", "13"},
        {"/Subtype /Type1 /BaseFont /Courier /Encoding << /Differences [(x)] >>",
         "Courier 9 @0,0 F: A'Ç", "5 13"},
        {"/Subtype /Type1 /BaseFont /Courier /Encoding << /Differences 7 >>",
         "Courier 9 @0,0 F: A'Ç", "13"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(show(content, "/F1 << /Type /Font " + std::string(row.font) + " >>"),
                  row.warnings)
            << row.font;
        EXPECT_EQ(texts(), row.texts) << row.font;
    }
    EXPECT_EQ(show(content, "/F1 9"), "");
    EXPECT_EQ(texts(), "Helvetica 9 @0,0 F: A'Ç");
    EXPECT_EQ(show(content, "/F2 9"), "13") << "no such font";
    EXPECT_EQ(drawContent(content), "13") << "no fonts at all";
    EXPECT_EQ(show("q BT /F1 9 Tf (a) Tj ET Q BT (b) Tj ET", helvetica), "7")
        << "q and Q keep the font and its size";
}

TEST_F(TextLinesTest, ManyStringsTakeTimeInTheirNumber) {
    std::string content = "BT /F1 9 Tf ";
    for (int i = 0; i < 200'000; ++i) {
        content += "[(a) 9 (b)] TJ ";
    }
    EXPECT_EQ(show(content + "ET"), "");
    const Art text = document().firstChild(importedArt());
    ASSERT_EQ(document().textRunCount(text), 1);
    EXPECT_EQ(document().textRun(text, 0).text.size(), 400'000U);
    EXPECT_EQ(document().textRun(text, 0).pieces.size(), 200'000U);
}

} // namespace
} // namespace corvane
