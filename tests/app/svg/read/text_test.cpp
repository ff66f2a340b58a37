// Text that this program wrote comes back as it was; that of others becomes lines and runs.
#include "app/svg/text/font_names.h"

#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace corvane::test {
namespace {

Art frontArt(const Document& document) {
    return document.firstChild(document.layerArt(document.firstLayer()));
}

/// Pages of random text.
class TextPage {
public:
    explicit TextPage(unsigned seed) : random_(seed) {
        for (const FontFacts& facts :
             {FontFacts{.family = "Corvane 0A1B Times-Roman",
             .realFamily = "Times New Roman",
             .generic = GenericFamily::serif,
             .isPageFont = true},
              FontFacts{.family = "Corvane 2 O'Brien \\ \"x\"",
              .weight = 700,
              .italic = true,
              .isPageFont = true},
              FontFacts{.family = "serif", .generic = GenericFamily::serif},
              FontFacts{.family = "Comic, 2", .weight = 250}}) {
            fonts_.push_back(art_.document.addFont(facts));
        }
        std::vector<PathStyle> styles{filled(), stroked(2.3), {}, filled(fixed(.33))};
        styles[1].fillPaint = 1;
        styles[1].dashCount = 2;
        styles[1].dash[0] = fixed(1.7);
        styles[1].dash[1] = fixed(.4);
        styles.push_back(stroked(0));
        styles_ = styles;
    }

    ArtBuilder& make(int lines) {
        for (int i = 0; i < lines; ++i) {
            addLine();
        }
        return art_;
    }

private:
    int below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    double real(double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random_);
    }

    std::string letters() {
        static const std::vector<std::string> characters{"a",
                                                         "b",
                                                         " ",
                                                         " ",
                                                         "W",
                                                         "&",
                                                         "<",
                                                         "\"",
                                                         "'",
                                                         "]",
                                                         "\xC3\xA9",
                                                         "\xC2\xA0",
                                                         "\xE7\xB8\xA6",
                                                         "\xF0\x9F\x98\x80",
                                                         "\xCC\x81"};
        std::string text;
        for (int i = below(9); i >= 0; --i) {
            text +=
                characters[static_cast<std::size_t>(below(static_cast<int>(characters.size())))];
        }
        return text;
    }

    Point point() { return {fixed(real(-300, 300)), fixed(real(-300, 300))}; }

    void addLine() {
        const Art text = art_.document.make(ArtKind::text, Placement::inside, art_.layerArt());
        TextLine line;
        if (below(2) == 0) {
            const double turn = real(-3, 3);
            line.matrix = {fixed(real(.2, 2) * std::cos(turn)), fixed(std::sin(turn)),
                           fixed(-std::sin(turn)), fixed(std::cos(turn))};
        }
        line.matrix.tx = fixed(real(-300, 300));
        line.matrix.ty = fixed(real(-300, 300));
        line.isVertical = below(5) == 0;
        if (!line.isVertical) {
            line.anchor = static_cast<TextAnchor>(below(3));
            line.order = static_cast<TextOrder>(below(3));
            line.length = below(3) == 0 ? fixed(real(.01, 200)) : 0;
            line.stretchesLetters = line.length != 0 && below(2) == 0;
        }
        std::vector<Segment> path;
        if (!line.isVertical && below(4) == 0) {
            for (int i = 2 + below(3); i >= 0; --i) {
                path.push_back({point(), point(), point(), 0});
            }
            line.path = path;
            line.isPathClosed = below(2) == 0;
            line.pathStart = below(2) == 0 ? fixed(real(-9, 99)) : 0;
            line.matrix = {fixedOne, 0, 0, below(2) == 0 ? fixedOne : -fixedOne};
        }
        art_.document.setTextLine(text, line);
        for (int i = below(4); i >= 0; --i) {
            addRun(text);
        }
    }

    void addRun(Art text) {
        TextRun run;
        const auto font = static_cast<std::size_t>(below(4));
        run.font = fonts_[font];
        run.size = below(3) == 0 ? fixed(12) : fixed(real(.01, 100));
        run.rise = below(3) == 0 ? fixed(real(-9, 9)) : 0;
        const bool isColumn = art_.document.textLine(text).isVertical; // its spacing is shifts
        run.spacing = !isColumn && below(3) == 0 ? fixed(real(-1, 3)) : 0;
        const std::string letters = this->letters();
        run.text = letters;
        std::vector<TextPiece> pieces;
        const bool turns = art_.document.textLine(text).path.empty();
        for (std::size_t i = 0; i < letters.size(); ++i) {
            if ((letters[i] & 0xC0) != 0x80 && below(3) == 0) {
                pieces.push_back({static_cast<std::int32_t>(i),
                                  below(4) == 0 ? 0 : fixed(real(-2, 30)), font < 2 ? below(3) : 0,
                                  turns && below(4) == 0 ? fixed(real(-180, 180)) : 0});
            }
        }
        run.pieces = pieces;
        run.style = styles_[static_cast<std::size_t>(below(static_cast<int>(styles_.size())))];
        if (below(2) == 0) {
            run.source = {below(1000), 1000 + below(1000), below(5000)};
        }
        art_.document.addTextRun(text, run);
    }

    std::mt19937 random_;
    ArtBuilder art_;
    std::vector<Font> fonts_;
    std::vector<PathStyle> styles_;
};

void expectSameText(const Document& document, Art text, const Document& other, Art again) {
    const TextLine line = document.textLine(text);
    EXPECT_EQ(line.matrix, other.textLine(again).matrix);
    const TextLine readLine = other.textLine(again);
    EXPECT_EQ(line.isVertical, readLine.isVertical);
    EXPECT_EQ(line.anchor, readLine.anchor);
    EXPECT_EQ(line.order == TextOrder::rightToLeft, readLine.order == TextOrder::rightToLeft);
    EXPECT_EQ(line.length, readLine.length);
    EXPECT_EQ(line.stretchesLetters, readLine.stretchesLetters);
    EXPECT_EQ(line.pathStart, readLine.pathStart);
    EXPECT_EQ(line.isPathClosed, readLine.isPathClosed);
    ASSERT_EQ(line.path.size(), readLine.path.size());
    for (std::size_t i = 0; i < line.path.size(); ++i) {
        EXPECT_EQ(line.path[i].anchor, readLine.path[i].anchor);
    }
    ASSERT_EQ(document.textRunCount(text), other.textRunCount(again));
    for (std::int32_t i = 0; i < document.textRunCount(text); ++i) {
        const TextRun run = document.textRun(text, i);
        const TextRun read = other.textRun(again, i);
        const FontFacts font = document.fonts().facts(run.font);
        const FontFacts readFont = other.fonts().facts(read.font);
        EXPECT_EQ(font.family, readFont.family);
        EXPECT_EQ(font.realFamily, readFont.realFamily);
        EXPECT_EQ(font.generic, readFont.generic);
        EXPECT_EQ(font.isPageFont, readFont.isPageFont);
        EXPECT_EQ(run.size, read.size);
        EXPECT_EQ(run.rise, read.rise);
        EXPECT_EQ(run.spacing, read.spacing);
        EXPECT_EQ(run.text, read.text);
        EXPECT_TRUE(std::ranges::equal(run.pieces, read.pieces)) << run.text;
        EXPECT_EQ(run.style.lineWidth, read.style.lineWidth);
        if (run.source.end != 0) {
            EXPECT_EQ(run.source, read.source);
        }
    }
}

TEST(TextRoundTrip, randomLinesComeBackExactly) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        TextPage page(seed);
        const ArtBuilder& art = page.make(12);
        const std::string written = art.svg();
        const ReadArt read(written);
        ASSERT_TRUE(read.reading.ignored.empty()) << read.reading.ignored.begin()->first;
        ASSERT_TRUE(read.svg() == written) << seed;
        Art again = frontArt(read.document);
        for (Art text = frontArt(art.document); text != Art::null;
             text = art.document.nextSibling(text)) {
            expectSameText(art.document, text, read.document, again);
            again = read.document.nextSibling(again);
        }
        EXPECT_EQ(again, Art::null);
        if (HasFailure()) {
            FAIL() << "seed " << seed;
        }
    }
}

/// What becomes of text of other programs.
TEST(ReadText, othersTextBecomesLinesAndRuns) {
    struct Row {
        const char* body;
        const char* drawn;
    };
    const std::string font = " font-family=\"Arial,sans-serif\" font-size=\"10\"";
    const Row rows[] = {
        {"<text x='5' y='9'>  a\n  b <![CDATA[<c>]]>&amp;&#x41; </text>",
         "<text x=\"5\" y=\"9\"@>a b &lt;c&gt;&amp;A</text>"},
        {"<text x='5' y='9' xml:space='preserve'> a  b\n</text>",
         "<text x=\"5\" y=\"9\" xml:space=\"preserve\"@> a  b </text>"},
        {"<text x='5' y='9' style='white-space:pre'> a</text>",
         "<text x=\"5\" y=\"9\" xml:space=\"preserve\"@> a</text>"},
        // Places: a new x begins a new object, a new y or dy a rise, dx a piece.
        {"<text x='5 20' y='9'>ab<tspan x='40' dy='12'>c</tspan></text>",
         "<text x=\"5\" y=\"9\"@>a</text><text x=\"20\" y=\"9\"@>b</text>"
         "<text x=\"40\" y=\"21\"@>c</text>"},
        {"<text x='5' y='9' dx='1 0 2'>abc<tspan dy='-3'>d</tspan><tspan y='9'>e</tspan></text>",
         "<text x=\"6\" y=\"9\"@><tspan>ab<tspan dx=\"2\">c</tspan></tspan>"
         "<tspan dy=\"-3\">d</tspan><tspan dy=\"3\">e</tspan></text>"},
        {"<text x='5' y='9'>a<tspan baseline-shift='50%'>b</tspan></text>",
         "<text x=\"5\" y=\"9\"@><tspan>a</tspan><tspan dy=\"-5\">b</tspan></text>"},
        {"<text x='5' y='9' word-spacing='4' letter-spacing='.1em'>a b</text>",
         "<text x=\"5\" y=\"9\" xml:space=\"preserve\"@ letter-spacing=\"1\">a <tspan "
         "dx=\"4\">b</tspan></text>"},
        {"<text x='10 20' y='9' rotate='90 0'>ab</text>",
         "<text x=\"10\" y=\"9\"@><tspan rotate=\"90\">a</tspan></text>"
         "<text x=\"20\" y=\"9\"@>b</text>"},
        {"<text x='5' y='9' rotate='5 0 -7.5'>abcd<tspan rotate='1'>e</tspan></text>",
         "<text x=\"5\" y=\"9\"@><tspan rotate=\"5\">a</tspan><tspan>b</tspan>"
         "<tspan rotate=\"-7.5\">cd</tspan><tspan rotate=\"1\">e</tspan></text>"},
        // Lines along letters are those of elements around, too.
        {"<g text-decoration='underline'><text x='5' y='9'>a<tspan style='text-decoration:"
         "line-through'>b</tspan></text></g>",
         "<g><text x=\"5\" y=\"9\"@><tspan text-decoration=\"underline\">a</tspan>"
         "<tspan text-decoration=\"underline line-through\">b</tspan></text></g>"},
        {"<text x='5' y='9' style='text-decoration:overline underline 10% rgb(255, 0, 0)'>a</text>",
         "<text x=\"5\" y=\"9\"@ text-decoration=\"underline overline\""
         " text-decoration-color=\"#ff0000\" text-decoration-thickness=\"1\">a</text>"},
        {"<text x='5' y='9' fill='lime' style='text-decoration-line:underline;"
         "text-decoration-thickness:from-font'>a<tspan fill='red'>b</tspan></text>",
         "<text x=\"5\" y=\"9\"@><tspan fill=\"#00ff00\" text-decoration=\"underline\">a</tspan>"
         "<tspan fill=\"#ff0000\" text-decoration=\"underline\" text-decoration-color=\"#00ff00\">"
         "b</tspan></text>"},
        {"<text x='5' y='9' style='text-decoration:underline;text-decoration-line:none'>a</text>",
         "<text x=\"5\" y=\"9\"@>a</text>"},
        {"<text x='5' y='9' style='text-decoration-line:underline;text-decoration:none'>a</text>",
         "<text x=\"5\" y=\"9\"@>a</text>"},
        {"<text x='5' y='9' style='text-decoration:none underline'>a</text>",
         "<text x=\"5\" y=\"9\"@>a</text>"},
        {"<g fill='none' text-decoration='underline'><text x='5' y='9' fill='black'>a</text></g>",
         "<g><text x=\"5\" y=\"9\"@>a</text></g>"},
        {"<text x='5' y='9' rotate='36000.5'>a</text>",
         "<text x=\"5\" y=\"9\"@><tspan rotate=\".5\">a</tspan></text>"},
        {"<text transform='scale(2)' x='5' y='9' style='font-size:5px'>a</text>",
         "<text x=\"10\" y=\"18\"@>a</text>"},
        {"<text x='5' y='9'>a<tspan>b</tspan><tspan fill='red'>c</tspan><tspan"
         " style='font:italic bold 20px/2 \"Times New Roman\",serif'>d</tspan></text>",
         "<text x=\"5\" y=\"9\"><tspan@>ab</tspan><tspan@ fill=\"#ff0000\">c</tspan>"
         "<tspan font-family=\"'Times New Roman',serif\" font-weight=\"700\" font-style=\"italic\""
         " font-size=\"20\">d</tspan></text>"},
        {"<text x='5' y='9'>a <tspan visibility='hidden'>b</tspan></text>",
         "<text x=\"5\" y=\"9\" xml:space=\"preserve\"@><tspan>a </tspan><tspan "
         "fill=\"none\">b</tspan></text>"},
        {"<text x='5' y='9'>a<tspan display='none'>b</tspan><title>t</title></text>",
         "<text x=\"5\" y=\"9\"@>a</text>"},
        {"<text x='5' y='9' font-family='Corvane 3 Foo 2,Foo'>a</text>",
         "<text x=\"5\" y=\"9\" font-family=\"'Corvane 3 Foo',Foo,sans-serif\" font-size=\"10\">"
         "<tspan font-family=\"'Corvane 3 Foo 2',Foo,sans-serif\">a</tspan></text>"},
        {"<text x='5' y='9' style='writing-mode:tb'>a<tspan dy='2'>b</tspan></text>",
         "<text x=\"5\" y=\"9\" data-column=\"true\" text-anchor=\"middle\" "
         "xml:space=\"preserve\"@>"
         "<tspan x=\"5\" dy=\"8.8\">a</tspan><tspan x=\"5\" dy=\"12\">b</tspan></text>"},
        {"<text font-size='0'>a</text><text>  </text><text/>", ""},
    };
    for (const Row& row : rows) {
        std::string expected = row.drawn;
        for (std::size_t at = expected.find('@'); at != std::string::npos;
             at = expected.find('@')) {
            expected.replace(at, 1, font);
        }
        EXPECT_EQ(
            redrawn("<g font-family='Arial' font-size='10'>" + std::string(row.body) + "</g>"),
            expected.empty() ? "" : "<g>" + expected + "</g>")
            << row.body;
    }
}

TEST(ReadText, whatTextCannotHoldIsCounted) {
    const std::pair<const char*, const char*> rows[] = {
        {"<text style='text-decoration:underline wavy'>a</text>", "text-decoration"},
        {"<text style='text-decoration:underline rgba(0,0,0,.5)'>a</text>", "text-decoration"},
        {"<text text-decoration='underline' style='writing-mode:tb'>ç¸¦</text>", "text-decoration"},
        {"<path id='l' d='M0 0h90'/><text text-decoration='underline'><textPath "
         "href='#l'>a</textPath>"
         "</text>",
         "text-decoration"},
        {"<linearGradient id='s'><stop/><stop offset='1' stop-color='red'/></linearGradient>"
         "<text text-decoration='underline' fill='url(#s)'><tspan fill='red'>a</tspan></text>",
         "text-decoration"},
        {"<text font-variant='small-caps'>a</text>", "font-variant"},
        {"<text style='font:small-caps 9px a'>a</text>", "font-variant"},
        {"<text style='font-variant-caps:small-caps'>a</text>", "font-variant"},
        {"<text style='font:condensed 9px a'>a</text>", "font-stretch"},
        {"<text style='font-feature-settings:\"smcp\"'>a</text>", "font-feature-settings"},
        {"<text style='text-transform:full-width'>a</text>", "text-transform"},
        {"<text dominant-baseline='reset-size'>a</text>", "dominant-baseline"},
        {"<text><tspan alignment-baseline='middle'>a</tspan></text>", "alignment-baseline"},
        {"<text style='writing-mode:vertical-rl'>ab</text>", "text-orientation"},
        {"<text style='white-space:pre'>a\nb</text>", "white-space"},
        {"<text x='1' style='shape-inside:url(#r)'>a</text>", "shape-inside"},
        {"<text x='1' y='2' style='inline-size:9'>a</text>", "inline-size"},
        {"<text>a<tref href='#p'/></text>", "tref"},
        {"<text>a<altGlyph>b</altGlyph></text>", "altGlyph"},
        {"<text>a<switch><tspan>b</tspan></switch></text>", "switch"},
        {"<flowRoot><flowPara>a</flowPara></flowRoot>", "flowRoot"},
        {"<text transform='scale(0)'>a</text>", "transform"},
    };
    for (const auto& [body, kind] : rows) {
        EXPECT_EQ(ReadArt(foreignSvg(body)).ignored(kind), 1) << body;
    }
    EXPECT_TRUE(
        ReadArt(foreignSvg("<style>@font-face{src:url(data:,)}</style>")).reading.ignored.empty());
}

/// As Inkscape writes text: styles with all that they leave as it is, lines that it broke itself.
TEST(ReadText, nothingIsLostOfWhatAnEditorWrites) {
    const ReadArt read(foreignSvg(
        "<text xml:space='preserve' style='font-style:normal;font-variant:normal;font-weight:bold;"
        "font-stretch:normal;font-size:10px;line-height:1.25;font-family:Corvane;"
        "-inkscape-font-specification:\"Arial, Bold\";font-variant-ligatures:normal;"
        "font-variant-caps:normal;font-variant-numeric:normal;font-feature-settings:normal;"
        "text-decoration:none;text-decoration-line:none;text-transform:none;text-align:center;"
        "letter-spacing:0px;writing-mode:lr-tb;direction:ltr;text-orientation:auto;"
        "dominant-baseline:auto;baseline-shift:baseline;text-anchor:middle;white-space:pre;"
        "shape-inside:url(#rect1);shape-padding:0;inline-size:0' x='5' y='9'>"
        "<tspan x='5' y='9'>one \n</tspan><tspan x='5' y='21' sodipodi:role='line'>two"
        "<tspan style='font-size:65%;baseline-shift:super'>2</tspan></tspan></text>"
        "<switch><flowRoot><flowPara>a</flowPara></flowRoot><text x='1' y='9'>b</text></switch>"));
    EXPECT_TRUE(read.reading.ignored.empty());
    const Art first = read.document.nextSibling(read.document.nextSibling(frontArt(read.document)));
    EXPECT_EQ(read.document.textRun(first, 0).text, "one ");
}

/// What an editor makes of our own: properties in a style, a line of its own, another transform.
TEST(ReadText, sourcesOutliveAnEditor) {
    const ReadArt read(ourSvg(
        "<text transform='scale(2)' x='5' y='9' id='p5' xml:space='preserve'"
        " style='font-size:6px;font-family:Arial'><tspan sodipodi:role='line' id='tspan9' x='5'"
        " y='9'>a<tspan dx='3'>b</tspan></tspan></text>"
        "<text x='5' y='9' font-family='Arial' data-source='7 9 8'><tspan>a</tspan>"
        "<tspan id='p20' fill='red'>b</tspan></text>"));
    const Document& document = read.document;
    const Art second = frontArt(document);
    const Art first = document.nextSibling(second);
    ASSERT_EQ(document.textRunCount(first), 1);
    const TextRun run = document.textRun(first, 0);
    EXPECT_EQ(run.size, 12 * fixedOne);
    EXPECT_EQ(run.source.ordinal, 4);
    ASSERT_EQ(run.pieces.size(), 1U);
    EXPECT_EQ(run.pieces[0], (TextPiece{1, fixedOne / 2, 0}));
    ASSERT_EQ(document.textRunCount(second), 2);
    EXPECT_EQ(document.textRun(second, 0).source, (ArtSource{7, 9, 8}));
    EXPECT_EQ(document.textRun(second, 1).source.ordinal, 19);
}

TEST(FontNames, facesHaveFamiliesOfTheirOwn) {
    const std::string family = "Corvane 1 Foo";
    for (const std::int32_t face : {0, 1, 8, 4095}) {
        const std::string name = familyOfFace(family, face);
        EXPECT_EQ(faceOfFamily(name).family, family);
        EXPECT_EQ(faceOfFamily(name).face, face);
    }
    for (const char* const other : {"Foo 2", "Corvane 2", "Corvane 1 Foo 1", "Corvane 1 Foo 02",
                                    "Corvane 1 Foo 4097", "Corvane 1 Foo "}) {
        EXPECT_EQ(faceOfFamily(other).face, 0) << other;
    }
}

} // namespace
} // namespace corvane::test
