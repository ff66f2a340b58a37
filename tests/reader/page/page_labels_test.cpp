#include "reader/page/page_labels.h"

#include "tests/reader/reader_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace corvane {
namespace {

using ::testing::ElementsAre;

class PageLabelsTest : public ReaderTest {
protected:
    /// Labels of the first `count` pages of a file whose catalog has `entry` under PageLabels.
    std::vector<std::string> labels(const std::string& entry, int count,
                                    const std::map<int, std::string>& objects = {}) {
        PdfBuilder file = PdfBuilder::onePage("");
        file.object(1, "<< /Type /Catalog /Pages 2 0 R /PageLabels " + entry + " >>");
        for (const auto& [number, body] : objects) {
            file.object(number, body);
        }
        const PageLabels read(open(file));
        std::vector<std::string> all;
        for (int page = 1; page <= count; ++page) {
            all.push_back(read.of(page));
        }
        return all;
    }
};

TEST_F(PageLabelsTest, OfEachStyle) {
    struct Row {
        LabelStyle style;
        std::int64_t value;
        const char* text;
    };
    for (const Row& row : {Row{LabelStyle::decimal, 1, "1"},
                           {LabelStyle::none, 7, ""},
                           {LabelStyle::lowerRoman, 4, "iv"},
                           {LabelStyle::upperRoman, 1944, "MCMXLIV"},
                           {LabelStyle::upperRoman, 9999, "MMMMMMMMMCMXCIX"},
                           {LabelStyle::upperRoman, 10000, "10000"},
                           {LabelStyle::upperLetters, 26, "Z"},
                           {LabelStyle::lowerLetters, 27, "aa"},
                           {LabelStyle::upperLetters, 54, "BBB"},
                           {LabelStyle::upperLetters, 260, "ZZZZZZZZZZ"},
                           {LabelStyle::lowerLetters, 261, "261"},
                           {LabelStyle::lowerLetters, INT32_MAX + std::int64_t{7}, "2147483654"}}) {
        EXPECT_EQ(labelNumber(row.style, row.value), row.text);
    }
}

TEST_F(PageLabelsTest, RangesOfATree) {
    EXPECT_THAT(
        labels(
            "5 0 R", 7,
            {{5, "<< /Kids [7 0 R 6 0 R] >>"},
             {6, "<< /Limits [0 2] /Nums [0 << /S /r >> 2 8 0 R] >>"},
             {7, "<< /Limits [4 6] /Nums [4 << /P (A-) /S /D /St 8 >> 6 << /P <FEFF00C4> >>] >>"},
             {8, "<< /S /D >>"}}),
        ElementsAre("i", "ii", "1", "2", "A-8", "A-9", "\u00C4"));
    EXPECT_THAT(labels("<< /Nums [1 << /S /A >>] >>", 3), ElementsAre("", "A", "B"))
        << "the tree leaves the first page out";
}

TEST_F(PageLabelsTest, OfHostileTrees) {
    // What can be read counts; nothing loops, and nothing is larger than a person reads.
    EXPECT_THAT(
        labels("5 0 R", 3,
               {{5, "<< /Kids [5 0 R 6 0 R 6 0 R 99 0 R (x) 7 0 R] /Nums [0 << /S /D >> 1] >>"},
                {6, "<< /Kids [5 0 R] /Nums [-1 << /S /r >> (x) << >> 1 null 1 (x) 1 << /S /R /St "
                    "-5 >>] >>"},
                {7, "<< /Nums [2 << /S (D) /P 7 0 R /St 2 >> 2147483647 << /S /D >>] >>"}}),
        ElementsAre("1", "I", ""));
    EXPECT_THAT(labels("<< /Nums [0 << /S /R /St 2147483647 >>] >>", 2),
                ElementsAre("2147483647", "2147483648"));
    EXPECT_EQ(labels("<< /Nums [0 << /P (" + std::string(20'000, 'x') + ") >>] >>", 1)[0].size(),
              64U);
    for (const char* entry :
         {"(x)", "99 0 R", "<< /Nums 7 /Kids 7 >>", "<< /Nums [0] >>", "null", "1 0 R"}) {
        EXPECT_THAT(labels(entry, 1), ElementsAre("")) << entry;
    }
}

/// Nodes may share their lists, so that a small file holds far more than anyone can read.
TEST_F(PageLabelsTest, WorkEndsAtALimit) {
    const auto repeated = [](int count, const std::string& text) {
        std::string all;
        for (int i = 0; i < count; ++i) {
            all += text;
        }
        return all;
    };
    constexpr int pairs = 20'000;
    EXPECT_THAT(
        labels("<< /Kids 5 0 R /Nums [0 << /S /A >>] >>", 2,
               {{5, "[ << /Nums [1 8 0 R] >> " + repeated(1000, "<< /Kids 5 0 R /Nums 6 0 R >> ") +
                        "]"},
                {6, "[ " + repeated(pairs, "0 7 0 R ") + repeated(pairs, "-1 7 0 R ") + "]"},
                {7, "<< /S /D /P (x) >>"},
                {8, "<< /S /r >>"}}),
        ElementsAre("A", "B"))
        << "what is read first counts, and the rest is passed over";
    EXPECT_LT(cache_->work.comparedKeys, 10 * pairs);
}

} // namespace
} // namespace corvane
