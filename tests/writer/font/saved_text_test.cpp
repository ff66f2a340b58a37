// Pages of text, opened and saved in the original profile.
#include "tests/reader/classic/line_text.h"
#include "tests/writer/save_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using testing::HasSubstr;

class SavedTextTest : public SaveTest {
protected:
    std::string texts() {
        return textsText(*document_, document_->layerArt(document_->firstLayer()));
    }
};

TEST_F(SavedTextTest, TextAndFontsComeBack) {
    original();
    const std::string update = saved(
        PdfBuilder::onePage("BT /F1 12 Tf 0 0 1 rg 60 700 Td (Caf\\351 \\(one\\)) Tj ET "
                            "BT /F2 8 Tf 16 0 0 16 60 500 Tm (two) Tj ET "
                            "q BT /F1 20 Tf 7 Tr 60 300 Td (clip) Tj ET 0 0 400 400 re f Q",
                            "/Resources << /Font << "
                            "/F1 << /Type /Font /Subtype /Type1 /BaseFont /Helvetica-Bold "
                            "/Encoding /WinAnsiEncoding >> "
                            "/F2 << /Type /Font /Subtype /Type1 /BaseFont /NimbusRoman-Regular >> "
                            ">> >>")
            .object(5, "<< /Producer (Test) >>")
            .trailer("/Size 6 /Root 1 0 R /Info 5 0 R")
            .bytes());
    EXPECT_THAT(update, HasSubstr("/Font <<\n/\002F2 "));
    EXPECT_THAT(update, HasSubstr("/ProcSet [ /PDF /Text ]"));
    EXPECT_THAT(update, HasSubstr("(Caf\\216 \\(one\\)) Tj\nET\n"));
    EXPECT_THAT(update, HasSubstr("/BaseFont /NimbusRoman-Regular \n/Encoding "));
    EXPECT_THAT(update, HasSubstr("/FontName /NimbusRoman-Regular\n"));
    EXPECT_THAT(update, HasSubstr("q\nBT\n"));

    const std::string before = texts();
    EXPECT_EQ(before, "Helvetica-Bold 12 @60,700 F: Café (one)\n"
                      "NimbusRoman-Regular 128 @60,500 F: two\n"
                      "[{<>\nHelvetica-Bold 20 @60,300 C: clip}]");
    ASSERT_EQ(open(), 0U);
    EXPECT_EQ(texts(), before);
}

} // namespace
} // namespace corvane
