#include "app/svg/text/line_order.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

constexpr auto right = TextOrder::leftToRight;
constexpr auto left = TextOrder::rightToLeft;

Fixed ems(double number) {
    return static_cast<Fixed>(number * fixedOne);
}

TextRun run(std::string_view text, std::span<const TextPiece> pieces = {}, double size = 10,
            double spacing = 0) {
    return {.size = ems(size), .spacing = ems(spacing), .text = text, .pieces = pieces};
}

/// The runs in their order: their numbers, and their letters with shifts in thousandths and faces.
std::string written(const OrderedLine& line) {
    std::string all;
    for (const OrderedRun& each : line.runs) {
        all += (all.empty() ? "" : " + ") + std::to_string(each.run) + ":";
        std::size_t start = 0;
        for (const TextPiece& piece : each.pieces) {
            const auto end = static_cast<std::size_t>(piece.start);
            all += each.text.substr(start, end - start) + "{" +
                   std::to_string(piece.shift * 1000LL / fixedOne) +
                   (piece.face != 0 ? "/" + std::to_string(piece.face) : "") + "}";
            start = end;
        }
        all += each.text.substr(start);
    }
    return all;
}

/// As the line was given, so that others can be compared with it.
std::string written(std::span<const TextRun> runs) {
    OrderedLine line;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        line.runs.push_back({.run = i,
                             .text = std::string(runs[i].text),
                             .pieces = {runs[i].pieces.begin(), runs[i].pieces.end()}});
    }
    return written(line);
}

TEST(LineOrder, LinesAreReadAndStandAgain) {
    const TextPiece kerned[] = {{.start = 2, .shift = ems(0.25)}};
    const TextPiece first[] = {{.start = 0, .shift = ems(0.5)}};
    const TextPiece faces[] = {{.start = 2, .shift = ems(0.25), .face = 1}, {.start = 4}};
    const TextPiece marks[] = {{.start = 4, .face = 1}, {.start = 6}};
    struct Row {
        const char* name;
        std::vector<TextRun> standing;
        TextOrder order;
        const char* read;
    };
    const Row rows[] = {
        {"a word", {run("\u05D1\u05D0")}, left, "0:\u05D0\u05D1"},
        // What a shift moves apart is apart from both sides.
        {"kerned", {run("\u05D2\u05D1\u05D0", kerned)}, left, "0:\u05D0\u05D1{-250}\u05D2"},
        {"moved", {run("\u05D1\u05D0", first)}, left, "0:{500}\u05D0\u05D1"},
        {"faces", {run("\u05D2\u05D1\u05D0", faces)}, left, "0:\u05D0{0/1}\u05D1{-250}\u05D2"},
        {"a mark of a letter's glyph, and one of its own",
         {run("\u05D2\u05BC\u05B0\u05D1", marks)},
         left,
         "0:\u05D1{0/1}\u05B0{0}\u05D2\u05BC"},
        {"runs, numbers, brackets",
         {run("(\u05D1) "), run("12"), run(" \u05D0")},
         left,
         "2:\u05D0  + 1:12 + 0: (\u05D1)"},
        {"sizes, and a number that is moved",
         {run("\u05D1 "), run("12", first, 20), run(" \u05D0")},
         left,
         "2:\u05D0  + 1:12 + 0:{-1000} \u05D1"},
        {"a word within others",
         {run("ab "), run("\u05D1\u05D0"), run(" cd")},
         right,
         "0:ab  + 1:\u05D0\u05D1 + 2: cd"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto read = asRead(row.standing);
        ASSERT_TRUE(read);
        EXPECT_EQ(read->order, row.order);
        EXPECT_EQ(written(*read), row.read);
        std::vector<TextRun> runs;
        for (const OrderedRun& each : read->runs) {
            runs.push_back(row.standing[each.run]);
            runs.back().text = each.text;
            runs.back().pieces = each.pieces;
        }
        const auto seen = asSeen(runs, read->order);
        ASSERT_TRUE(seen);
        std::vector<TextRun> again;
        for (const OrderedRun& each : seen->runs) {
            again.push_back(runs[each.run]);
            again.back().text = each.text;
            again.back().pieces = each.pieces;
        }
        EXPECT_EQ(written(again), written(row.standing));
    }
}

/// A page that shows the right end first says how the line runs, whatever most of its letters are.
TEST(LineOrder, WhatIsShownFirstIsReadFirst) {
    std::vector<TextRun> standing{run("abcd "), run("\u05D1\u05D0")};
    standing[0].source.ordinal = 4;
    standing[1].source.ordinal = 5;
    EXPECT_EQ(asRead(standing)->order, right);
    std::swap(standing[0].source.ordinal, standing[1].source.ordinal);
    const auto read = asRead(standing);
    EXPECT_EQ(read->order, left);
    EXPECT_EQ(written(*read), "1:\u05D0\u05D1 + 0: abcd");
}

TEST(LineOrder, OtherLinesStayAsTheyStand) {
    const TextPiece turned[] = {{.start = 0, .turn = ems(90)}};
    const std::vector<TextRun> rows[] = {
        {run("ab 12")},
        {run("\u05B8")},
        {run("\u05D1\u05D0", turned)},
        {run("\u05D1\u200F\u05D0")},        // programs may leave out what nobody sees
        {run("\u05D1\u0301\u05D0")},        // the mark would be of one with the other letter
        {run("\u05D1\u05D0", {}, 10, 1)},   // programs put the room on either side
        {run("12"), run("3 \u05D1\u05D0")}, // the second run would be divided
    };
    for (const auto& standing : rows) {
        EXPECT_FALSE(asRead(standing)) << written(standing);
    }
    EXPECT_FALSE(asSeen(rows[0], TextOrder::visual));
    const std::vector<TextRun> divided{run("1"), run("2\u05D0")};
    EXPECT_FALSE(asSeen(divided, left));
}

} // namespace
} // namespace corvane
