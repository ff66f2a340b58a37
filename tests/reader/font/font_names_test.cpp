#include "reader/font/font_names.h"

#include "reader/font/font_entries.h"
#include "reader/font/kinds/standard_fonts.h"
#include "tests/reader/reader_fixture.h"

namespace corvane {
namespace {

TEST(FontNames, AreTakenApart) {
    struct Row {
        const char* name;
        const char* family;
        int weight;
        bool italic;
    };
    const Row rows[] = {
        {"ABCDEF+TimesNewRomanPS-BoldItalicMT", "Times New Roman", 700, true},
        {"TimesNewRomanPSMT", "Times New Roman", 0, false},
        {"Arial,Bold", "Arial", 700, false},
        {"ArialMT", "Arial", 0, false},
        {"Arial-Black", "Arial", 900, false},
        {"CMBX12", "CMBX12", 0, false},
        {"MSGothic", "MS Gothic", 0, false},
        {"DejaVuSansMono-Oblique", "DejaVu Sans Mono", 0, true},
        {"SourceSansPro-SemiboldIt", "Source Sans Pro", 600, true},
        {"HelveticaNeueBold", "Helvetica Neue", 700, false},
        {"NotoSansCJKjp-Regular", "Noto Sans CJKjp", 400, false},
        {"MyriadMM_400_600_", "Myriad MM", 0, false},
        {"Foo-BarBaz", "Foo Bar Baz", 0, false},
        {"ABCDE+Short", "ABCDE+Short", 0, false},
        {"", "", 0, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const NameParts parts = partsOfName(row.name);
        EXPECT_EQ(parts.family, row.family);
        EXPECT_EQ(parts.weight, row.weight);
        EXPECT_EQ(parts.italic, row.italic);
    }
    EXPECT_EQ(standardFont("ABCDEF+TimesNewRoman,Bold")->family, "Times");
    EXPECT_TRUE(standardFont("ZapfDingbats")->isDingbats());
    EXPECT_FALSE(standardFont("Verdana"));
}

class NamesOfFontTest : public ReaderTest {
protected:
    FontNames names(const std::string& descriptor, std::string_view baseFont,
                    std::int32_t number = 7, const std::string& entries = "") {
        DocumentCache& cache = open(PdfBuilder::onePage("", "/Descriptor << " + descriptor +
                                                                " >> /Font << " + entries + " >>"));
        pageCache(cache, 1);
        const ObjectOwner read = entryOf(cache, cache.page.get(), "Descriptor");
        const ObjectOwner font = entryOf(cache, cache.page.get(), "Font");
        return namesOfFont(cache, font.get(), read.get(), baseFont, number);
    }
};

TEST_F(NamesOfFontTest, TheDescriptorTellsMore) {
    const FontNames stated = names("/FontFamily (Real Name) /FontWeight 650 /ItalicAngle -12 "
                                   "/Flags 1",
                                   "Fake");
    EXPECT_EQ(stated.realFamily, "Real Name");
    EXPECT_EQ(stated.weight, 600);
    EXPECT_TRUE(stated.italic);
    EXPECT_EQ(stated.generic, GenericFamily::monospace);
    EXPECT_EQ(names("/StemV 150", "X").weight, 700);
    EXPECT_EQ(names("/StemV 150", "X-Light").weight, 300);
    EXPECT_EQ(names("/Flags 262146", "X").weight, 700) << "force bold, serif";
    EXPECT_EQ(names("/Flags 262146", "X").generic, GenericFamily::serif);
    EXPECT_EQ(names("/FontFamily (\\001\\377)", "ABCDEF+Foo").realFamily, "Foo");
}

TEST_F(NamesOfFontTest, EachHasAFamilyOfItsOwn) {
    const std::string family = names("", "ABCDEF+A\"b<c>;-1", 7).family;
    EXPECT_EQ(family.substr(0, 8), "Corvane ");
    EXPECT_EQ(family.substr(14), " A b c -1");
    EXPECT_EQ(names("", "ABCDEF+A\"b<c>;-1", 7).family, family);
    EXPECT_NE(names("", "ABCDEF+A\"b<c>;-1", 8).family, family);
    EXPECT_NE(names("", "ABCDEG+A\"b<c>;-1", 7).family, family);
    EXPECT_NE(names("", "X", 0, "/Widths [1]").family, names("", "X", 0, "/Widths [2]").family);
    EXPECT_EQ(names("", "").family.substr(14), " Font");
}

} // namespace
} // namespace corvane
