#include "app/cli/terminal/chooser.h"

#include "app/cli/terminal/progress.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
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

TEST(Progress, IsDrawnRarelyAndTakenOffAgain) {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* terminal = open_memstream(&text, &size);
    {
        ProgressLine line(terminal, "reading");
        line.update(1, 2);
        std::fflush(terminal);
        EXPECT_EQ(size, 0U) << "quick work shows nothing";
        std::this_thread::sleep_for(ProgressLine::interval);
        for (int i = 0; i < 1000; ++i) {
            line.update(5, 10);
        }
        line.update(1, 0);
    }
    std::fclose(terminal);
    EXPECT_EQ(std::string(text, size), "\r\x1B[Kreading 50 %\r\x1B[K");
    std::free(text); // NOLINT: the C library made it

    terminal = open_memstream(&text, &size);
    {
        ProgressLine line(terminal, "corvane:");
        std::this_thread::sleep_for(ProgressLine::longWork + ProgressLine::interval);
        line.count(1100, 2200, "page");
        std::this_thread::sleep_for(ProgressLine::interval);
        line.count(3, std::nullopt, "file");
        std::this_thread::sleep_for(ProgressLine::interval);
        line.update(1, 50);
        std::this_thread::sleep_for(ProgressLine::interval);
        line.update(45, 50);
    }
    std::fclose(terminal);
    const std::string shown(text, size);
    std::free(text); // NOLINT: the C library made it
    EXPECT_TRUE(shown.starts_with("\r\x1B[Kcorvane: 1,100 of 2,200 pages, ")) << shown;
    EXPECT_NE(shown.find(" a second, 2 s left\r\x1B[Kcorvane: 3 files, "), std::string::npos)
        << shown;
    const std::regex rates("[^]*corvane: 2 %, [0-9]\\.[0-9] % a second, [0-9:]+ (s|min) left[^]*"
                           "corvane: 90 %, [0-9]{1,2}(\\.[0-9])? % a second, 1 s left[^]*");
    EXPECT_TRUE(std::regex_match(shown, rates)) << shown;

    ProgressLine silent(nullptr, "reading");
    std::this_thread::sleep_for(ProgressLine::interval);
    silent.update(1, 2);
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
