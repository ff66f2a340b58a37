#include "writer/patch/show_bytes.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ShowBytes, TakesOperandsApart) {
    const auto array = showBytes("3 [(a\\)(b)) -1.5 <41 42>%]\n] TJ");
    ASSERT_TRUE(array);
    EXPECT_EQ(array->elements, (std::vector<std::string_view>{"(a\\)(b))", "-1.5", "<41 42>"}));
    const auto quotes = showBytes("1 2 (x) \"");
    ASSERT_TRUE(quotes);
    EXPECT_EQ(quotes->before, (std::vector<std::string_view>{"1", "2"}));
}

/// Their tokens are not the elements that were shown.
TEST(ShowBytes, LeavesOtherElementsAlone) {
    for (const std::string_view bytes :
         {"[(a) [1 (c)] (b)] TJ", "[(a) << /K 1 >> (b)] TJ", "[(a) /n (b)] TJ", "[(a) true] TJ",
          "(a) ] TJ", "1 (a) \"", "1 Tj", "TJ", ""}) {
        EXPECT_FALSE(showBytes(bytes)) << bytes;
    }
}

} // namespace
} // namespace corvane
