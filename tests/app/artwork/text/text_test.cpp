// Text through the table: fonts, lines, runs.
#include "tests/app/artwork/host_table.h"

#include "app/artwork/geometry/transform_art.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {
namespace {

struct TextTest : testing::Test {
    TextTest() {
        EXPECT_EQ(host(slot::addFont, &facts, &font), HostError::none);
        run.font = font;
        run.size = 12 * fixedOne;
        run.text = "a\xC3\xA9z";
        text = makeText();
    }

    Art makeText() {
        return host.make(ArtKind::text, Placement::inside,
                         host.document.layerArt(host.document.firstLayer()));
    }
    HostError add() { return host(slot::addTextRun, text, &run); }
    TextRun read(Art art, std::int32_t index) {
        TextRun found;
        EXPECT_EQ(host(slot::getTextRun, art, index, &found), HostError::none);
        return found;
    }

    HostTable host;
    FontFacts facts{.family = "Corvane 1 Times-Roman", .realFamily = "Times", .isPageFont = true};
    Font font = Font::null;
    TextRun run;
    Art text = Art::null;
};

TEST_F(TextTest, fontsAreOneByFamilyWeightAndSlant) {
    Font again = Font::null;
    FontFacts other = facts;
    other.realFamily = "";
    ASSERT_EQ(host(slot::addFont, &other, &again), HostError::none);
    EXPECT_EQ(again, font);
    other.italic = true;
    ASSERT_EQ(host(slot::addFont, &other, &again), HostError::none);
    EXPECT_NE(again, font);
    ASSERT_EQ(host(slot::getFontFacts, font, &other), HostError::none);
    EXPECT_EQ(other.realFamily, "Times");
    EXPECT_EQ(host(slot::getFontFacts, static_cast<Font>(9), &other), HostError::failed);

    const std::array<std::byte, 3> file{};
    EXPECT_EQ(host(slot::setFontFile, font, 1, file.data(), 3), HostError::none);
    EXPECT_EQ(host.document.fonts().faceCount(font), 2);
    EXPECT_EQ(host.document.fonts().file(font, 1).size(), 3U);
    EXPECT_TRUE(host.document.fonts().file(font, 0).empty());
    EXPECT_EQ(host(slot::setFontFile, font, FontTable::mostFaces, file.data(), 3),
              HostError::failed);
    EXPECT_EQ(host(slot::setFontFile, font, 0, file.data(), -1), HostError::failed);
    for (const FontFacts& wrong :
         {FontFacts{}, FontFacts{.family = "a\n"}, FontFacts{.family = "a", .weight = 0},
          FontFacts{.family = "Corvane 1 a 2", .isPageFont = true}}) {
        EXPECT_EQ(host(slot::addFont, &wrong, &again), HostError::failed) << wrong.family;
    }
    other = {.family = "Arial"};
    ASSERT_EQ(host(slot::addFont, &other, &again), HostError::none);
    EXPECT_EQ(host(slot::setFontFile, again, 0, file.data(), 3), HostError::failed);
}

TEST_F(TextTest, whatHasNoMeaningIsRefusedAndChangesNothing) {
    const std::vector<TextPiece> inACharacter{{2, 5, 0}};
    const std::vector<TextPiece> descending{{3, 5, 0}, {1, 5, 0}};
    const std::vector<TextPiece> atTheEnd{{4, 5, 0}};
    const std::vector<TextPiece> before{{-1, 5, 0}};
    const std::vector<TextPiece> noFace{{0, 0, -1}};
    const std::vector<std::function<void()>> faults{
        [&] { run.text = ""; },
        [&] { run.text = std::string_view("a\0b", 3); },
        [&] { run.text = "a\nb"; },
        [&] { run.text = "a\xC2\x85"; },
        [&] { run.text = "a\xC3"; },
        [&] { run.text = "\xED\xA0\x80"; },
        [&] { run.pieces = inACharacter; },
        [&] { run.pieces = descending; },
        [&] { run.pieces = atTheEnd; },
        [&] { run.pieces = before; },
        [&] { run.pieces = noFace; },
        [&] { run.font = Font::null; },
        [&] { run.size = 0; },
        [&] { run.style.cap = 3; },
        [&] {
            run.source = {5, 4, 0};
        },
    };
    const TextRun good = run;
    for (std::size_t i = 0; i < faults.size(); ++i) {
        run = good;
        faults[i]();
        EXPECT_EQ(add(), HostError::failed) << i;
    }
    std::int32_t count = -1;
    ASSERT_EQ(host(slot::getTextRunCount, text, &count), HostError::none);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(host(slot::getTextRun, text, 0, &run), HostError::failed);
    EXPECT_EQ(host(slot::addTextRun, text, nullptr), HostError::failed);
}

TEST_F(TextTest, piecesThatChangeNothingAreLeftOut) {
    const std::vector<TextPiece> pieces{{0, 0, 0}, {1, 7, 0}, {3, 0, 0}};
    run.pieces = pieces;
    ASSERT_EQ(add(), HostError::none);
    const TextRun found = read(text, 0);
    ASSERT_EQ(found.pieces.size(), 1U);
    EXPECT_EQ(found.pieces[0], pieces[1]);
}

/// The run that was the first moves on; a copy of the line stays as it was.
TEST_F(TextTest, runsComeBeforeOthers) {
    const std::vector<TextPiece> pieces{{0, 7, 0}, {1, 9, 0}};
    for (const std::string_view letters : {"moved", "kept"}) {
        run.text = letters;
        run.pieces = {};
        ASSERT_EQ(add(), HostError::none);
    }
    Art copy = Art::null;
    ASSERT_EQ(host(slot::duplicateArt, text, Placement::inFront, text, &copy), HostError::none);
    const TextLine line{.matrix = {.tx = -5}};
    const auto addBefore = [&](std::string_view letters, Fixed gap) {
        run.text = letters;
        run.pieces = pieces;
        return host(slot::addTextRunBefore, text, &line, &run, gap);
    };
    ASSERT_EQ(addBefore("second", 3), HostError::none);
    ASSERT_EQ(addBefore("first", -2), HostError::none);
    run.size = 0;
    EXPECT_EQ(addBefore("without a size", 1), HostError::failed);
    TextLine found;
    ASSERT_EQ(host(slot::getTextLine, text, &found), HostError::none);
    EXPECT_EQ(found.matrix, line.matrix);
    const std::vector<std::pair<std::string_view, std::vector<TextPiece>>> runs{
        {"first", pieces},
        {"second", {{0, 5, 0}, {1, 9, 0}}},
        {"moved", {{0, 3, 0}}},
        {"kept", {}}};
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const TextRun each = read(text, static_cast<std::int32_t>(i));
        EXPECT_EQ(each.text, runs[i].first);
        EXPECT_TRUE(std::ranges::equal(each.pieces, runs[i].second)) << i;
    }
    EXPECT_EQ(read(copy, 0).text, "moved");
    EXPECT_TRUE(read(copy, 0).pieces.empty());
}

/// Copies share their runs with the original until either gets more.
TEST_F(TextTest, copiesAndOriginalsGrowApart) {
    std::string letters;
    for (int i = 0; i < 3; ++i) {
        letters = std::string(1, static_cast<char>('a' + i));
        run.text = letters;
        ASSERT_EQ(add(), HostError::none);
    }
    const TextLine line{.matrix = {.tx = 5}, .isVertical = true};
    ASSERT_EQ(host(slot::setTextLine, text, &line), HostError::none);
    Art copy = Art::null;
    ASSERT_EQ(host(slot::duplicateArt, text, Placement::inFront, text, &copy), HostError::none);
    run.text = "original";
    ASSERT_EQ(add(), HostError::none);
    const Art original = text;
    text = copy;
    run.text = "copy";
    ASSERT_EQ(add(), HostError::none);
    EXPECT_EQ(read(original, 3).text, "original");
    EXPECT_EQ(read(copy, 3).text, "copy");
    EXPECT_EQ(read(copy, 2).text, "c");
    ASSERT_EQ(host(slot::disposeArt, original), HostError::none);
    EXPECT_EQ(read(copy, 0).text, "a");
    TextLine told;
    ASSERT_EQ(host(slot::getTextLine, copy, &told), HostError::none);
    EXPECT_EQ(told.matrix.tx, 5);
    EXPECT_TRUE(told.isVertical);
    const Art next = makeText(); // in the place that the original had
    EXPECT_EQ(host.document.textRunCount(next), 0);
}

TEST_F(TextTest, stretchingGoesIntoTheSizes) {
    run.rise = -fixedOne;
    run.style.strokePaint = 1;
    ASSERT_EQ(add(), HostError::none);
    transformArt(host.document, text, {0, 2, -2, 0, 10, 0});
    const TextRun found = read(text, 0);
    EXPECT_EQ(found.size, 24 * fixedOne);
    EXPECT_EQ(found.rise, -2 * fixedOne);
    EXPECT_EQ(found.style.lineWidth, 2 * fixedOne);
    EXPECT_EQ(host.document.textLine(text).matrix,
              (Matrix{0, fixedOne, -fixedOne, 0, 10 * fixedOne, 0}));
}

TEST_F(TextTest, aLineThatHasNoMeaningIsRefused) {
    const std::array<Segment, 2> path{};
    const std::array<TextLine, 6> faults{{
        {.anchor = static_cast<TextAnchor>(3)},
        {.order = static_cast<TextOrder>(3)},
        {.length = -1},
        {.path = std::span(path).first(1)},
        {.path = {static_cast<const Segment*>(nullptr), 2}},
        {.path = {path.data(), std::size_t{1} << 40}},
    }};
    for (const TextLine& fault : faults) {
        EXPECT_EQ(host(slot::setTextLine, text, &fault), HostError::failed) << &fault - &faults[0];
    }
    TextLine told{.anchor = TextAnchor::end};
    ASSERT_EQ(host(slot::getTextLine, text, &told), HostError::none);
    EXPECT_EQ(told.anchor, TextAnchor::start);
}

/// A line keeps a path of its own, which its copies have too, and which goes where the line goes.
TEST_F(TextTest, aLineOnAPathTakesItAlong) {
    constexpr Fixed one = fixedOne;
    std::array<Segment, 2> path{{{{0, 0}, {0, 0}, {3 * one, 0}, 0}, {{6 * one, one}, {}, {}, 0}}};
    const TextLine line{.anchor = TextAnchor::middle,
                        .order = TextOrder::rightToLeft,
                        .length = 5 * one,
                        .stretchesLetters = true,
                        .path = path,
                        .isPathClosed = true,
                        .pathStart = one};
    ASSERT_EQ(host(slot::setTextLine, text, &line), HostError::none);
    path = {};
    ASSERT_EQ(add(), HostError::none);
    Art copy = Art::null;
    ASSERT_EQ(host(slot::duplicateArt, text, Placement::inFront, text, &copy), HostError::none);
    transformArt(host.document, copy, {0, 2, -2, 0, 10, 0}); // enlarged, and turned to the left
    TextLine moved;
    ASSERT_EQ(host(slot::getTextLine, copy, &moved), HostError::none);
    EXPECT_EQ(moved.anchor, TextAnchor::middle);
    EXPECT_EQ(moved.order, TextOrder::rightToLeft);
    EXPECT_TRUE(moved.stretchesLetters && moved.isPathClosed);
    EXPECT_EQ(moved.length, 10 * one);
    EXPECT_EQ(moved.pathStart, 2 * one);
    EXPECT_EQ(moved.matrix, (Matrix{one, 0, 0, one, 0, 0})); // the path turns the letters
    ASSERT_EQ(moved.path.size(), 2U);
    EXPECT_EQ(moved.path[0].out, (Point{10 * one, 6 * one}));
    EXPECT_EQ(moved.path[1].anchor, (Point{8 * one, 12 * one}));
    EXPECT_EQ(read(copy, 0).size, 24 * one);

    transformArt(host.document, copy, {-1, 0, 0, 1, 0, 0}); // in a mirror letters stay mirrored
    EXPECT_EQ(host.document.textLine(copy).matrix, (Matrix{one, 0, 0, -one, 0, 0}));
    const std::span<const Segment> original = host.document.textLine(text).path;
    ASSERT_EQ(original.size(), 2U);
    EXPECT_EQ(original[1].anchor, (Point{6 * one, one}));
}

TEST_F(TextTest, aTileCannotHoldTextInItsOwnPattern) {
    Pattern pattern{.tile = host.document.makeArtwork(),
                    .right = 1,
                    .top = 1,
                    .stepX = 1,
                    .stepY = 1,
                    .matrix = {}};
    run.style.fill.kind = ColourKind::pattern;
    run.style.fill.source = host.document.addPattern(pattern);
    ASSERT_EQ(add(), HostError::none);
    EXPECT_EQ(host(slot::reorderArt, text, Placement::inside, pattern.tile), HostError::failed);
    text = host.make(ArtKind::text, Placement::inside, pattern.tile);
    EXPECT_EQ(add(), HostError::failed);
}

TEST(Text, aPageOfLinesIsCheapAndCharged) {
    HostTable host;
    Document& document = host.document;
    const Font font = document.addFont({.family = "Times"});
    const std::int64_t before = document.budget().used();
    constexpr std::int32_t lines = 60'000;
    for (std::int32_t i = 0; i < lines; ++i) {
        const Art text = document.make(ArtKind::text, Placement::inside,
                                       document.layerArt(document.firstLayer()));
        document.setTextLine(text, {.matrix = {.tx = i}});
        document.addTextRun(
            text,
            {.font = font, .size = fixedOne, .text = "some forty letters of one line in a page"});
    }
    EXPECT_GT(document.budget().used() - before, lines * 150);
    EXPECT_LT(document.budget().used() - before, lines * 350);
    HostTable small(3'000'000);
    const Art text = small.make(ArtKind::text, Placement::inside,
                                small.document.layerArt(small.document.firstLayer()));
    const std::string letters(4'000'000, 'a');
    const TextRun run{
        .font = small.document.addFont({.family = "Times"}), .size = fixedOne, .text = letters};
    EXPECT_EQ(small(slot::addTextRun, text, &run), HostError::failed);
}

} // namespace
} // namespace corvane
