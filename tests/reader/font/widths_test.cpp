#include "reader/font/widths.h"

#include "reader/font/font_entries.h"
#include "tests/reader/reader_fixture.h"

namespace corvane {
namespace {

class WidthsTest : public ReaderTest {
protected:
    /// Object 5 of a file, a dictionary of these entries.
    ObjectOwner dictionary(const std::string& entries) {
        PdfBuilder file = PdfBuilder::onePage("", "/Font 5 0 R");
        DocumentCache& cache =
            open(file.object(5, "<< " + entries + " >>").object(6, "[1 2 3]").object(7, "250"));
        pageCache(cache, 1);
        return entryOf(cache, cache.page.get(), "Font");
    }
};

TEST_F(WidthsTest, OfSimpleFonts) {
    const ObjectOwner font = dictionary(
        "/FirstChar 65 /Widths [500 7 0 R (x) 9999999] /FontDescriptor << /MissingWidth 33 >>");
    const SimpleWidths widths(*cache_, font.get(),
                              entryOf(*cache_, font.get(), "FontDescriptor").get());
    EXPECT_EQ(widths.widthOf(65), 500);
    EXPECT_EQ(widths.widthOf(66), 250);
    EXPECT_EQ(widths.widthOf(67), 33) << "no number";
    EXPECT_EQ(widths.widthOf(64), 33);
    const ObjectOwner bare = dictionary("/FirstChar 65");
    EXPECT_EQ(SimpleWidths(*cache_, bare.get(), Object{}).widthOf(65), std::nullopt);
}

TEST_F(WidthsTest, OfCids) {
    const ObjectOwner font = dictionary("/DW 900 /W [10 [100 200] 20 30 300 (x) 25 [400] "
                                        "40 6 0 R 7 0 R 251 5 99999 1]");
    const CidWidths widths(*cache_, font.get());
    const std::pair<std::uint32_t, double> expected[] = {
        {9, 900},  {10, 100}, {11, 200}, {12, 900}, {20, 300}, {24, 300}, {25, 400},  {26, 300},
        {30, 300}, {31, 900}, {40, 1},   {42, 3},   {250, 5},  {251, 5},  {252, 900},
    };
    for (const auto& [cid, width] : expected) {
        EXPECT_EQ(widths.widthOf(cid), width) << cid;
    }
}

TEST_F(WidthsTest, OfVerticalWriting) {
    const ObjectOwner font =
        dictionary("/W [1 [600]] /DW2 [800 -900] /W2 [5 [-500 250 700 -510 260 710] 8 9 -1 2 3]");
    const CidWidths widths(*cache_, font.get());
    EXPECT_EQ(widths.verticalOf(1), (VerticalMetrics{-900, 300, 800}));
    EXPECT_EQ(widths.verticalOf(2), (VerticalMetrics{-900, 500, 800}));
    EXPECT_EQ(widths.verticalOf(6), (VerticalMetrics{-510, 260, 710}));
    EXPECT_EQ(widths.verticalOf(9), (VerticalMetrics{-1, 2, 3}));
}

TEST_F(WidthsTest, OneArrayMetAgainAndAgainEnds) {
    std::string all = "/W [";
    for (int i = 0; i < 20'000; ++i) {
        all += "1 6 0 R ";
    }
    std::string many = "[";
    for (int i = 0; i < 60'000; ++i) {
        many += "1 ";
    }
    PdfBuilder file = PdfBuilder::onePage("", "/Font 5 0 R");
    DocumentCache& cache = open(file.object(5, "<< " + all + "] >>").object(6, many + "]"));
    pageCache(cache, 1);
    const CidWidths widths(cache, entryOf(cache, cache.page.get(), "Font").get());
    EXPECT_EQ(widths.widthOf(60'000), 1);
}

} // namespace
} // namespace corvane
