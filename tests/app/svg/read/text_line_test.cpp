// What holds for a line of text as a whole: its anchor, order and length, and what it stands on.
#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <vector>

namespace corvane::test {
namespace {

/// The lines of the only layer, from the back.
std::vector<TextLine> linesOf(const Document& document) {
    std::vector<TextLine> lines;
    for (Art art = document.lastChild(document.layerArt(document.firstLayer())); art != Art::null;
         art = document.previousSibling(art)) {
        if (document.kind(art) == ArtKind::text) {
            lines.push_back(document.textLine(art));
        }
    }
    return lines;
}

TEST(ReadTextLine, lettersInAnotherCase) {
    struct Row {
        const char* body;
        const char* letters;
    };
    for (const Row& row : {
             Row{"<text text-transform='uppercase'>a\xC3\xA9\xCF\x83 \xC3\x9F</text>",
                 "A\xC3\x89\xCE\xA3 SS"},
             Row{"<text style='text-transform:lowercase'>A\xC3\x89x</text>", "a\xC3\xA9x"},
             Row{"<text style='text-transform:capitalize'>don't be2 x-ray\xE2\x80\x99s</text>",
                 "Don't Be2 X-Ray\xE2\x80\x99s"},
             Row{"<text style='text-transform:uppercase'><tspan style='text-transform:none'>a"
                 "</tspan></text>",
                 "a"},
         }) {
        const ReadArt read(foreignSvg(row.body));
        const Document& document = read.document;
        const Art text = document.lastChild(document.layerArt(document.firstLayer()));
        EXPECT_EQ(document.textRun(text, 0).text, row.letters) << row.body;
    }
}

TEST(ReadTextLine, anchorsAndOrders) {
    constexpr auto start = TextAnchor::start;
    constexpr auto middle = TextAnchor::middle;
    constexpr auto end = TextAnchor::end;
    constexpr auto visual = TextOrder::visual;
    constexpr auto right = TextOrder::leftToRight;
    constexpr auto left = TextOrder::rightToLeft;
    struct Row {
        const char* body;
        std::vector<std::pair<TextAnchor, TextOrder>> lines;
        std::map<std::string, std::int32_t> ignored;
    };
    const std::string alef = "\xD7\x90";
    const Row rows[] = {
        {"<text text-anchor='middle'>a</text>", {{middle, right}}, {}},
        // Of the element that begins the part with a place of its own.
        {"<text x='1' text-anchor='end'>a<tspan text-anchor='start'>b</tspan>"
         "<tspan x='9' text-anchor='middle'>c</tspan><tspan x='20'>d</tspan></text>",
         {{end, right}, {middle, right}, {end, right}},
         {}},
        {"<text y='5' text-anchor='end'>a<tspan y='5'>b</tspan><tspan y='9'>c</tspan></text>",
         {{end, right}},
         {{"text-anchor", 1}}},
        {"<text direction='rtl'>a</text>", {{end, left}}, {}},
        {"<text direction='rtl' text-anchor='end'>a</text>"
         "<text direction='rtl' text-anchor='middle'>a</text>",
         {{start, left}, {middle, left}},
         {}},
        {"<text unicode-bidi='bidi-override'>a<tspan dx='1'>b</tspan></text>",
         {{start, visual}},
         {}},
        {"<text unicode-bidi='bidi-override' direction='rtl'>a</text>",
         {{end, left}},
         {{"unicode-bidi", 1}}},
        {"<text>a<tspan direction='rtl'>b</tspan></text>", {{start, right}}, {}},
        {"<text>a<tspan unicode-bidi='embed' direction='rtl'>bc</tspan></text>",
         {{start, right}},
         {{"unicode-bidi", 1}}},
    };
    for (const Row& row : rows) {
        ReadArt read(foreignSvg(row.body));
        read.reading.ignored.erase("text"); // as fonts are not of the page
        EXPECT_EQ(read.reading.ignored, row.ignored) << row.body;
        std::vector<std::pair<TextAnchor, TextOrder>> lines;
        for (const TextLine& line : linesOf(read.document)) {
            lines.emplace_back(line.anchor, line.order);
        }
        EXPECT_EQ(lines, row.lines) << row.body;
    }
    // Lines of a page stand as they are seen, unless somebody typed letters that divide a run.
    const std::string divided = "<tspan data-source='7 9 3'>1</tspan><tspan data-source='7 9 4'>2" +
                                alef + "</tspan></text>";
    const ReadArt ours(ourSvg("<text data-source='7 9 0'>a</text><text data-source='7 9 1'>" +
                              alef +
                              "</text><text data-source='7 9 2' unicode-bidi='bidi-override'>" +
                              alef + "</text><text>a</text><text direction='rtl'>" + divided));
    std::vector<TextOrder> orders;
    for (const TextLine& line : linesOf(ours.document)) {
        orders.push_back(line.order);
    }
    EXPECT_EQ(orders, (std::vector{visual, visual, visual, right, left}));
}

TEST(ReadTextLine, lengthsHoldForWholeLines) {
    struct Row {
        const char* body;
        std::vector<double> lengths;
        std::int32_t lost;
    };
    const Row rows[] = {
        {"<text transform='scale(2)' textLength='40'>a<tspan>b</tspan></text>", {80}, 0},
        {"<text><tspan x='1' textLength='10%'>a</tspan> <tspan x='9' textLength='9'>b</tspan>"
         "<tspan x='30'>c</tspan></text>",
         {30, 9, 0},
         0},
        {"<text>a<tspan textLength='9'>b</tspan></text>", {0}, 1},
        {"<text><tspan textLength='9'>b</tspan>a</text>", {0}, 1},
        {"<text x='1 5 9' textLength='9'>abc</text>", {0, 0, 0}, 1},
        {"<text textLength='9'>b<tspan textLength='5'>a</tspan></text>", {9}, 1},
        {"<text textLength='-9'>b</text>", {0}, 1},
    };
    for (const Row& row : rows) {
        const ReadArt read(foreignSvg(row.body));
        EXPECT_EQ(read.ignored("textLength"), row.lost) << row.body;
        std::vector<double> lengths;
        for (const TextLine& line : linesOf(read.document)) {
            lengths.push_back(static_cast<double>(line.length) / fixedOne);
        }
        EXPECT_EQ(lengths, row.lengths) << row.body;
    }
    const ReadArt read(
        foreignSvg("<text textLength='9' lengthAdjust='spacingAndGlyphs'>b</text><text "
                   "textLength='9'>c</text>"));
    EXPECT_TRUE(linesOf(read.document)[0].stretchesLetters);
    EXPECT_FALSE(linesOf(read.document)[1].stretchesLetters);
}

TEST(ReadTextLine, pathsAreMeasuredAndKept) {
    // The page is 200 high; its points are the paths'.
    const std::string paths = "<defs><path id='l' d='M10 50H110V90'/>"
                              "<path id='n' pathLength='14' transform='translate(0 100)'"
                              " d='M10 50H110V90'/>"
                              "<path id='c' d='M60 0A60 60 0 0 1 0 60'/><path id='point' d='M5 5'/>"
                              "<path id='two' d='M10 50H20M0 0H9'/><g id='g'/></defs>";
    struct Row {
        const char* text;
        double start;
        Point first;
        Point last;
    };
    const Row rows[] = {
        {"<textPath href='#l'>a</textPath>", 0, at(10, 150), at(110, 110)},
        {"<textPath xlink:href='#l' startOffset='25%'>a</textPath>", 35, at(10, 150), at(110, 110)},
        {"<textPath href='#l' side='right' startOffset='5'>a</textPath>", 5, at(110, 110),
         at(10, 150)},
        {"<textPath href='#n' startOffset='7'>a</textPath>", 70, at(10, 50), at(110, 10)},
        {"<textPath href='#c' startOffset='50%'>a</textPath>", 47.1239, at(60, 200), at(0, 140)},
        {"<textPath path='M0 0H9' startOffset='2'><tspan x='3' dx='1' y='40'>a</tspan></textPath>",
         6, at(0, 200), at(9, 200)},
    };
    for (const Row& row : rows) {
        const ReadArt read(foreignSvg(paths + "<text x='77' y='5'>" + row.text + "</text>"));
        const std::vector<TextLine> lines = linesOf(read.document);
        ASSERT_EQ(lines.size(), 1U) << row.text;
        EXPECT_TRUE(read.reading.ignored.empty()) << row.text;
        EXPECT_NEAR(static_cast<double>(lines[0].pathStart) / fixedOne, row.start, .02) << row.text;
        EXPECT_EQ(lines[0].path.front().anchor, row.first) << row.text;
        EXPECT_EQ(lines[0].path.back().anchor, row.last) << row.text;
        EXPECT_EQ(lines[0].matrix, (Matrix{fixedOne, 0, 0, fixedOne, 0, 0})) << row.text;
    }
    // The path takes up turns, the matrix keeps what mirrors.
    const ReadArt turned(foreignSvg(paths +
                                    "<text transform='matrix(0 2 2 0 9 9)' font-size='5'>"
                                    "<textPath href='#l' startOffset='1'>a</textPath></text>"));
    ASSERT_EQ(linesOf(turned.document).size(), 1U);
    const TextLine line = linesOf(turned.document)[0];
    EXPECT_EQ(line.matrix, (Matrix{fixedOne, 0, 0, -fixedOne, 0, 0}));
    EXPECT_EQ(line.path.front().anchor, at(109, 171));
    EXPECT_EQ(line.pathStart, 2 * fixedOne);

    const std::pair<const char*, const char*> faults[] = {
        {"<text><textPath href='#no'>a</textPath></text>", "textPath"},
        {"<text><textPath href='#g'>a</textPath></text>", "textPath"},
        {"<text><textPath href='#point'>a</textPath></text>", "textPath"},
        {"<text><textPath>a</textPath></text>", "textPath"},
        {"<text><textPath href='x.svg#l'>a</textPath></text>", "external reference"},
        {"<text><textPath href='#two'>a</textPath></text>", "textPath"},
        {"<text><textPath href='#l'>a</textPath> b</text>", "textPath"},
        {"<text><textPath href='#l'>a<textPath href='#l'>b</textPath></textPath></text>",
         "textPath"},
        {"<text transform='scale(1 2)'><textPath href='#l'>a</textPath></text>", "textPath"},
        {"<text><textPath href='#l' rotate='9'>a</textPath></text>", "rotate"},
    };
    for (const auto& [body, kind] : faults) {
        EXPECT_EQ(ReadArt(foreignSvg(paths + body)).ignored(kind), 1) << body;
    }
}

/// Many texts on one long path would be a small file that asks for much work.
TEST(ReadTextLine, oneLongPathCannotBeAskedForAgainAndAgain) {
    std::string data = "M0 0";
    for (int i = 0; i < 20'000; ++i) {
        data += "H1H0H1H0H1H0";
    }
    std::string body = "<path id='l' d='" + data + "'/>";
    for (int i = 0; i < 3000; ++i) {
        body += "<text><textPath href='#l'>a</textPath></text>";
    }
    EXPECT_THROW(ReadArt{foreignSvg(body)}, SvgError);
}

} // namespace
} // namespace corvane::test
