// What is left of a text that was edited.
#include "writer/patch/text/letter_matches.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

/// What is the same, each stretch with its places.
std::string matches(std::string_view was, std::string_view is, std::int64_t work = 1000) {
    std::string text;
    for (const LetterMatch& match : matchLetters(was, is, work)) {
        EXPECT_EQ(was.substr(match.was, match.length), is.substr(match.is, match.length));
        text += std::to_string(match.was) + ">" + std::to_string(match.is) + "[" +
                std::string(was.substr(match.was, match.length)) + "]";
    }
    return text;
}

TEST(LetterMatches, EndsByLettersAndWhatLiesBetweenByWords) {
    EXPECT_EQ(matches("draft", "draft"), "0>0[draft]");
    EXPECT_EQ(matches("draft", "drafts"), "0>0[draft]");
    EXPECT_EQ(matches("draft", "drift"), "0>0[dr]3>3[ft]");
    EXPECT_EQ(matches("aaa", "aa"), "0>0[aa]") << "ends do not overlap";
    EXPECT_EQ(matches("", "new"), "");
    EXPECT_EQ(matches("the old north quay opens", "a new north quay is open"), "8>6[north quay ]");
    EXPECT_EQ(matches("one two three", "six two nine"), "4>4[two ]12>11[e]");
    EXPECT_EQ(matches("one two three", "six two nine", 3), "12>11[e]") << "too much work";
}

TEST(LetterMatches, CharactersStayWhole) {
    EXPECT_EQ(matches("\u00E4b", "\u00E5b"), "2>2[b]") << "the same first byte";
    EXPECT_EQ(matches("a\u00E4", "a\u0164"), "0>0[a]") << "the same last byte";
}

} // namespace
} // namespace corvane
