// Which runs of a line are one element.
#include "app/svg/text/joined_runs.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

/// Runs of a page, each shown by an operator of ten bytes.
std::vector<TextRun> shown(const std::vector<std::string_view>& words) {
    std::vector<TextRun> runs;
    for (const std::string_view word : words) {
        const auto number = static_cast<std::int32_t>(runs.size());
        runs.push_back({.size = fixedOne, .text = word});
        runs.back().source = {.start = 10 * number, .end = 10 * number + 9, .ordinal = number};
    }
    return runs;
}

/// "start end: letters" of each.
std::string joined(const std::vector<TextRun>& runs) {
    std::string text;
    for (const JoinedRun& each : joinedRuns(runs)) {
        const TextRun run = each.whole();
        text += std::to_string(run.source.start) + " " + std::to_string(run.source.end) + ": " +
                std::string(run.text) + "; ";
    }
    return text;
}

TEST(JoinedRuns, WhatLooksTheSameAndFollowsInThePage) {
    EXPECT_EQ(joined(shown({"d", "r", "aft"})), "0 29: draft; ");
    EXPECT_EQ(joined(shown({"d", "\u05D0", "t"})), "0 9: d; 10 19: \u05D0; 20 29: t; ");

    std::vector<TextRun> runs = shown({"a", "b", "c", "d"});
    runs[1].size *= 2;
    EXPECT_EQ(joined(runs), "0 9: a; 10 19: b; 20 39: cd; ");
    runs = shown({"a", "b", "c", "d"});
    runs[2].style.fillPaint = 1;
    EXPECT_EQ(joined(runs), "0 19: ab; 20 29: c; 30 39: d; ");
    runs = shown({"a", "b", "c", "d"});
    std::swap(runs[1].source, runs[3].source);
    EXPECT_EQ(joined(runs), "0 9: a; 30 39: b; 20 29: c; 10 19: d; ") << "shown in another order";
    runs = shown({"a", "b", "c"});
    runs[1].source = {};
    EXPECT_EQ(joined(runs), "0 9: a; 0 0: b; 20 29: c; ") << "of no page";
}

TEST(JoinedRuns, PiecesKeepTheirLetters) {
    std::vector<TextRun> runs = shown({"ab", "cd", "ef"});
    const std::vector<TextPiece> first = {{.start = 1, .shift = 7, .face = 2}};
    const std::vector<TextPiece> last = {{.start = 0, .shift = 9}};
    runs[0].pieces = first;
    runs[2].pieces = last;
    const std::vector<JoinedRun> joined = joinedRuns(runs);
    ASSERT_EQ(joined.size(), 1U);
    const std::vector<TextPiece> wanted = {
        {.start = 1, .shift = 7, .face = 2}, {.start = 2}, {.start = 4, .shift = 9}};
    EXPECT_EQ(joined[0].pieces, wanted);
}

} // namespace
} // namespace corvane
