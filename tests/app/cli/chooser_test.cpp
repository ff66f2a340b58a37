#include "app/cli/terminal/chooser.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <unistd.h>

namespace corvane {
namespace {

TEST(Chooser, AsksUntilTheAnswerIsAPage) {
    struct Row {
        const char* typed;
        std::optional<std::int32_t> page;
        int questions;
    };
    const std::array rows{
        Row{"7\n", 7, 1},
        Row{"\n", 3, 1},
        Row{" 12 \r\n", 12, 1},
        Row{"0\n13\nx\n7x\n-1\n99999999999\n5\n", 5, 7},
        Row{"q\n", std::nullopt, 1},
        Row{"Q\n", std::nullopt, 1},
        Row{"", std::nullopt, 1},
    };
    for (const Row& row : rows) {
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        ASSERT_GE(write(ends[1], row.typed, std::strlen(row.typed)), 0);
        close(ends[1]);
        LineSource answers(ends[0]);
        std::ostringstream prompt;
        EXPECT_EQ(choosePage(answers, prompt, "Page to open", 1, 12, 3), row.page) << row.typed;
        close(ends[0]);
        int questions = 0;
        for (std::size_t at = 0; (at = prompt.str().find("1 to 12", at)) != std::string::npos;
             ++at) {
            ++questions;
        }
        EXPECT_EQ(questions, row.questions) << row.typed;
    }
}

TEST(PageList, ShowsSizesAndTitlesOfTheFirstPages) {
    struct Proxies final : PageProxies {
        PageProxy page(std::int32_t number) override {
            PageProxy proxy;
            proxy.width = number == 2 ? 0 : 594.6;
            proxy.height = 842;
            proxy.title = number == 1 ? "A\x1B[1mB" : "";
            return proxy;
        }
    } proxies;
    const std::string text = pageList(1, 2, proxies);
    EXPECT_TRUE(text.starts_with("  page 1, 595 x 842 points, A")) << text;
    EXPECT_EQ(text.find('\x1B'), std::string::npos);
    EXPECT_TRUE(text.ends_with("  page 2\n")) << text;
    EXPECT_TRUE(pageList(1, 5000, proxies).ends_with("  page 40, 595 x 842 points\n  ...\n"));
}

} // namespace
} // namespace corvane
