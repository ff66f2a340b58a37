// Text of a page as lines of runs.
#include "tests/reader/extension_fixture.h"
#include "tests/reader/seen_text.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class TextTest : public ExtensionTest {
protected:
    /// The runs of a page with fonts /F (Helvetica), /T (Type 3), /V (vertical) and /H, in which a
    /// to d are the first letters of the Hebrew alphabet, and all are half an em wide.
    std::string runs(const std::string& content) {
        omissions_.clear();
        std::string halves;
        for (int code = 48; code <= 100; ++code) {
            halves += "500 ";
        }
        draw(PdfBuilder::onePage(
                 content, "/Resources << /Font << /F 20 0 R /T 21 0 R /V 22 0 R /H 27 0 R >> "
                          "/XObject << /I 24 0 R >> /ExtGState << "
                          "/G << /Font [20 0 R 20] >> /W << /Font [20 0 R] >> "
                          ">> >>")
                 .object(20, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                 .object(21, "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 9 9] /FontMatrix [.1 0 "
                             "0 .1 0 0] /CharProcs << /a 26 0 R >> /Encoding << /Differences [97 "
                             "/a] >> /FirstChar 97 /LastChar 97 /Widths [10] >>")
                 .object(22, "<< /Type /Font /Subtype /Type0 /BaseFont /Gothic /Encoding "
                             "/Identity-V /DescendantFonts [23 0 R] /ToUnicode 25 0 R >>")
                 .stream(25, "beginbfrange <0000> <007F> <0000> endbfrange")
                 .object(23, "<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Gothic "
                             "/CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) "
                             "/Supplement 0 >> >>")
                 .stream(24, "0",
                         "/Subtype /Image /Width 1 /Height 1 /BitsPerComponent 8 "
                         "/ColorSpace /DeviceGray")
                 .stream(26, "10 0 d0 0 0 9 9 re f")
                 .object(27, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /FirstChar 48 "
                             "/Widths [" +
                                 halves + "] /ToUnicode 28 0 R >>")
                 .stream(28, "beginbfrange <61> <64> <05D0> endbfrange "
                             "beginbfrange <30> <39> <0030> endbfrange")
                 .bytes());
        return test::runsText(document());
    }
};

struct Row {
    const char* name;
    std::string content; ///< in a text object, in /F 10 at 100,700
    std::string runs;
    std::int32_t omitted = 0;
};

TEST_F(TextTest, LinesAndRuns) {
    const Row rows[] = {
        {"one", "(ab) Tj", "ab@100,700 10"},
        {"shows that touch", "(ab) Tj (cd) Tj", "ab@100,700 10 + cd@111.1,700 10"},
        {"words apart get a blank", "(ab) Tj 14 0 Td (cd) Tj",
         "ab@100,700 10 +  {10}cd@111.1,700 10"},
        {"a blank of the page is one blank", "(ab ) Tj 16 0 Td (cd) Tj",
         "ab @100,700 10 + {210}cd@116,700 10"},
        {"less than a blank apart", "(ab) Tj 12 0 Td (cd) Tj", "ab@100,700 10 + {88}cd@112,700 10"},
        {"columns", "(ab) Tj 30 0 Td (cd) Tj", "ab@100,700 10 | cd@130,700 10"},
        {"back to the left", "(ab) Tj -30 0 Td (cd) Tj", "ab@100,700 10 | cd@70,700 10"},
        {"a little back", "[(ab) 300 (cd)] TJ", "ab{-300}cd@100,700 10"},
        {"a letter below its accent", "[(b) -20 (\\302) 450 (ur) 450 (\\302)] TJ",
         "b{20}\u00B4{-450}ur@100,700 10 | \u00B4@109,700 10"},
        {"in front of the line's first letter", "[(i) 300 (b)] TJ",
         "i@100,700 10 | b@99.22,700 10"},
        {"letters from the right", "/H 10 Tf [(a) 1000 (b) 1050 (c)] TJ",
         "\u05D2{50}\u05D1\u05D0@89.5,700 10"},
        {"words and numbers from the right", "/H 10 Tf [(a) 2300 (12) 1800 (b)] TJ",
         "\u05D1 {50}12 {550}\u05D0@74,700 10"},
        {"columns from the right", "/H 10 Tf [(a) 1000 (b) 6000 (c) 1000 (d)] TJ (a) Tj",
         "\u05D1\u05D0@95,700 10 | \u05D3\u05D2@35,700 10 | \u05D0@40,700 10"},
        {"letters from the right that do not stand in lines",
         "/H 10 Tf [(a) 6000 (b) -4000 (c) 6000 (d)] TJ",
         "\u05D0@100,700 10 | \u05D1@45,700 10 | \u05D2@90,700 10 | \u05D3@35,700 10"},
        {"words left of one another", "/H 10 Tf (ba) Tj -12.5 0 Td (dc) Tj",
         "\u05D3\u05D2 @87.5,700 10 + \u05D1\u05D0@112.5,700 10"},
        {"digits and letters of another size left of them",
         "/H 10 Tf (ba) Tj -13 0 Td (12) Tj /H 20 Tf -12 0 Td (c) Tj",
         "\u05D2@75,700 20 + {200}12 @99.24,700 10 + {50}\u05D1\u05D0@113.6,700 10"},
        {"letters left of one another, a little too far",
         "/H 10 Tf (a) Tj -5.03 0 Td (b) Tj -5.03 0 Td (c) Tj",
         "\u05D2@89.94,700 10 + {3}\u05D1@101.1,700 10 + \u05D0@112.2,700 10"},
        {"arrays left of one another", "/H 10 Tf [(a) 1000 (b)] TJ -12.5 0 Td [(c) 1000 (d)] TJ",
         "\u05D3\u05D2 @82.5,700 10 + \u05D1\u05D0@107.5,700 10"},
        {"left of letters of the left", "(ab) Tj /H 10 Tf -12.5 0 Td (dc) Tj",
         "\u05D3\u05D2 @87.5,700 10 + ab@112.5,700 10"},
        {"left and right of a word", "/H 10 Tf (ba) Tj -12.5 0 Td (dc) Tj 22.5 0 Td (12) Tj",
         "\u05D3\u05D2 @87.5,700 10 + \u05D1\u05D0@112.5,700 10 + 12@134.8,700 10"},
        {"columns left of one another", "/H 10 Tf (ba) Tj -20.1 0 Td (dc) Tj",
         "\u05D1\u05D0@100,700 10 | \u05D3\u05D2@79.9,700 10"},
        {"copies of a letter from the right", "/H 10 Tf (a) Tj -.1 0 Td (a) Tj",
         "\u05D0@100,700 10 | \u05D0@99.9,700 10"},
        {"left of a word, on another baseline", "/H 10 Tf (ba) Tj -12.5 -1 Td (dc) Tj",
         "\u05D1\u05D0@100,700 10 | \u05D3\u05D2@87.5,699 10"},
        {"words of the left that step back", "(ab) Tj -14 0 Td (cd) Tj",
         "ab@100,700 10 | cd@86,700 10"},
        {"letters of the left that step back", "/H 10 Tf [(1) 1000 (2)] TJ",
         "1@100,700 10 | 2@95,700 10"},
        {"columns of one array", "[(ab) -3000 (cd) 100 (ef)] TJ",
         "ab@100,700 10 | cd{-100}ef@141.1,700 10"},
        {"kerning", "[(ab) 120 (cd) -80 (ef)] TJ", "ab{-120}cd{80}ef@100,700 10"},
        {"kerning of less than is seen", "[(ab) 2 (cd)] TJ", "abcd@100,700 10"},
        {"an array with a word gap", "[(ab) -300 (cd)] TJ", "ab {22}cd@100,700 10"},
        {"lines", "12 TL (ab) Tj T* (cd) Tj 0 -20 TD (ef) ' 2 1 (g h) \"",
         "ab@100,700 10 | cd@100,688 10 | ef@100,648 10 | g {200}h@100,628 10 spaced 1"},
        {"rise ends no line", "(ab) Tj 3 Ts (cd) Tj 0 Ts (ef) Tj",
         "ab@100,700 10 + cd@111.1,703 10 rise 3 + ef@121.7,700 10"},
        {"an exponent, an index, and what comes behind them",
         "(ab) Tj /F 7 Tf 11.12 4 Td (c) Tj 0 -6 Td (d) Tj /F 10 Tf 3.9 2 Td (ef) Tj",
         "ab@100,700 10 + c@111.1,704 7 rise 4 + {-500}d@111.1,698 7 rise -2 + ef@115,700 10"},
        {"the exponent of an exponent",
         "(a) Tj /F 7 Tf 5.56 4 Td (b) Tj /F 5 Tf 3.892 2 Td 1 Ts (c) Tj",
         "a@100,700 10 + b@105.6,704 7 rise 4 + c@109.5,707 5 rise 7"},
        {"too large for an exponent, or too high",
         "(ab) Tj /F 9 Tf 11.12 4 Td (c) Tj /F 7 Tf 4.5 8 Td (d) Tj",
         "ab@100,700 10 | c@111.1,704 9 | d@115.6,712 7"},
        {"spacing", "2 Tc (ab) Tj", "ab@100,700 10 spaced 2"},
        {"a gap at the end of an array", "[(ab) -300] TJ (cd) Tj",
         "ab@100,700 10 +  {22}cd@111.1,700 10"},
        {"spaced letters", "2 Tc (abc) Tj (ab) Tj",
         "abc@100,700 10 spaced 2 + ab@122.1,700 10 spaced 2"},
        {"spacing that makes words", "(ab) Tj 11.1 0 Td 2 Tc [(ab) 200 (cd)] TJ 0 Tc (c) Tj",
         "ab@100,700 10 + a {-80}bc {-78}d@111.1,700 10 +  {-78}c@136.8,700 10"},
        {"spacing between two words", "(ab) Tj 2 Tc (cd) Tj",
         "ab@100,700 10 + c {-78}d@111.1,700 10"},
        {"word spacing", "3 Tw (a b) Tj", "a {300}b@100,700 10"},
        {"stretched", "50 Tz 2 Tc (ab) Tj (cd) Tj",
         "ab@100,700 10 spaced 2 + cd@107.6,700 10 spaced 2 by 0.5 0 0 1"},
        {"sizes", "(ab) Tj /F 20 Tf (cd) Tj", "ab@100,700 10 + cd@111.1,700 20"},
        {"a size below 0", "/F -10 Tf (ab) Tj (cd) Tj",
         "ab@100,700 10 + cd@88.88,700 10 by -1 0 0 -1"},
        {"turned", "0 1 -1 0 50 60 Tm (ab) Tj (cd) Tj", "ab@50,60 10 + cd@50,71.12 10 by 0 1 -1 0"},
        {"enlarged by its matrix", "2 0 0 2 50 60 Tm 1 Tc (ab) Tj (cd) Tj",
         "ab@50,60 20 spaced 2 + cd@76.24,60 20 spaced 2"},
        {"another colour is another run", "(ab) Tj .5 g (cd) Tj",
         "ab@100,700 10 + cd@111.1,700 10"},
        {"modes", "1 Tr (ab) Tj 2 Tr (cd) Tj 3 Tr (ef) Tj",
         "ab@100,700 10 unfilled stroked + cd@111.1,700 10 stroked + ef@121.7,700 10 unfilled"},
        {"what adds to the clip", "(ab) Tj 7 Tr (cd) Tj 0 Tr (ef) Tj",
         "ab@100,700 10 | ef@121.7,700 10"},
        {"what is painted and adds to the clip", "4 Tr (ab) Tj 6 Tr (cd) Tj",
         "ab@100,700 10 + cd@111.1,700 10 stroked"},
        {"glyphs that are drawn", "(ab) Tj /T 10 Tf (a) Tj /F 10 Tf (c) Tj",
         "ab@100,700 10 | c@121.1,700 10"},
        {"a column", "/V 10 Tf <00610062> Tj 3 Ts <0063> Tj",
         "ab@100,700 10 + {-300}c@100,683 10 down"},
        {"shifts of a column", "/V 10 Tf -1 Tc [<0061> 500 <0062> -9000 <0063>] TJ",
         "a{600}b@100,700 10 down | c@100,763 10 down"},
        {"a line goes on with no column", "(ab) Tj /V 10 Tf <0063> Tj /F 10 Tf (d) Tj",
         "ab@100,700 10 | c@111.1,700 10 down | d@111.1,690 10"},
        {"a font of a state", "/G gs (ab) Tj /W gs (cd) Tj", "ab@100,700 20 + cd@122.2,700 20"},
        {"no font", "/None 10 Tf (ab) Tj /F 10 Tf (cd) Tj", "cd@100,700 10", 1},
        {"no size", "/F 0 Tf (ab) Tj", "", 1},
        {"no way back", "1 0 0 0 50 60 Tm (ab) Tj", "", 1},
        {"a path in between", "(ab) Tj 0 0 9 9 re f (cd) Tj", "ab@100,700 10 | cd@111.1,700 10"},
        {"marked content", "(ab) Tj /P BMC (cd) Tj EMC", "ab@100,700 10 + cd@111.1,700 10"},
        {"an image in between", "(ab) Tj ET /I Do BT 111.12 700 Td (cd) Tj",
         "ab@100,700 10 | cd@111.1,700 10"},
        {"another text object", "(ab) Tj ET BT 111.12 700 Td (cd) Tj",
         "ab@100,700 10 + cd@111.1,700 10"},
        {"a clip in between", "(ab) Tj ET q 0 0 500 800 re W n BT 111.12 700 Td (cd) Tj ET Q BT",
         "ab@100,700 10 | cd@111.1,700 10"},
        {"behind a clip",
         "ET q 0 0 500 800 re W n BT 88.9 700 Td (ab) Tj ET Q BT 100 700 Td (cd) Tj",
         "ab@88.9,700 10 | cd@100,700 10"},
        {"states of their own",
         "ET q BT 100 700 Td (ab) Tj ET Q q .5 g q BT 111.12 700 Td (cd) Tj ET Q q 2 0 0 2 0 0 cm "
         "BT /F 5 Tf 60.84 350 Td (ef) Tj ET Q Q BT 130.02 700 Td (gh) Tj",
         "ab@100,700 10 + cd@111.1,700 10 + ef@121.7,700 10 + gh@130,700 10"},
        {"clips to the page, in rounded numbers",
         "ET q 0 0.05 612.02 791.9 re W* n BT 100 700 Td (ab) Tj ET Q "
         "q 0 0 612 792 re W n BT 111.12 700 Td (cd) Tj",
         "ab@100,700 10 + cd@111.1,700 10"},
        {"clips that leave a margin",
         "ET q 0 0 611 792 re W n BT 100 700 Td (ab) Tj ET Q "
         "q 0 0 611 792 re W n BT 111.12 700 Td (cd) Tj",
         "ab@100,700 10 | cd@111.1,700 10"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(runs("BT /F 10 Tf 100 700 Td " + row.content + " ET"), row.runs) << row.name;
        EXPECT_EQ(omitted(Omission::text), row.omitted) << row.name;
    }
}

TEST_F(TextTest, HostsThatHoldNoText) {
    extension_.version = 3;
    EXPECT_EQ(runs("BT /F 10 Tf (ab) Tj (cd) Tj ET"), "");
    EXPECT_EQ(omitted(Omission::text), 2);
}

} // namespace
} // namespace corvane
