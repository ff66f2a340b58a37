#include "app/cli/terminal/progress.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace corvane {
namespace {

using Clock = ProgressLine::Clock;

Clock::time_point time;

/// A terminal in memory.
class Progress : public testing::Test {
protected:
    Progress() { time = Clock::time_point{}; }
    ~Progress() override {
        std::fclose(terminal_);
        std::free(text_); // NOLINT: the C library made it
    }

    ProgressLine line(const char* label) const {
        return {terminal_, label, [] { return time; }};
    }

    /// What was written since the last call.
    std::string written() {
        std::fflush(terminal_);
        const std::string all(text_, size_);
        const std::string last = all.substr(seen_);
        seen_ = all.size();
        return last;
    }

private:
    char* text_ = nullptr;
    std::size_t size_ = 0;
    std::size_t seen_ = 0;
    std::FILE* terminal_ = open_memstream(&text_, &size_);
};

TEST_F(Progress, IsDrawnRarelyAndTakenOffAgain) {
    {
        ProgressLine reading = line("reading");
        reading.update(1, 2);
        EXPECT_EQ(written(), "") << "quick work shows nothing";
        time += ProgressLine::interval;
        for (int i = 0; i < 1000; ++i) {
            reading.update(5, 10);
        }
        reading.update(1, 0);
        EXPECT_EQ(written(), "\r\x1B[Kreading 50 %");
    }
    EXPECT_EQ(written(), "\r\x1B[K");
}

TEST_F(Progress, OfLongWorkTellsRateAndTimeLeft) {
    ProgressLine work = line("corvane:");
    time += 2 * ProgressLine::longWork;
    work.count(1100, 2200, "page");
    EXPECT_EQ(written(), "\r\x1B[Kcorvane: 1,100 of 2,200 pages, 550 a second, 2 s left");
    time += 2 * ProgressLine::longWork;
    work.count(4, std::nullopt, "file");
    EXPECT_EQ(written(), "\r\x1B[Kcorvane: 4 files, 1 a second");
    work.update(10, 50);
    EXPECT_EQ(written(), "") << "not so soon";
    time += ProgressLine::longWork;
    work.update(10, 50);
    EXPECT_EQ(written(), "\r\x1B[Kcorvane: 20 %, 4.0 % a second, 20 s left");
    time += 90 * ProgressLine::longWork;
    work.update(20, 50);
    EXPECT_EQ(written(), "\r\x1B[Kcorvane: 40 %, 0.4 % a second, 2:23 min left");
    work.update(1, 50);
    time += ProgressLine::longWork;
    work.update(25, 50);
    EXPECT_EQ(written(), "\r\x1B[Kcorvane: 50 %, 50 % a second, 1 s left") << "of another work";
}

} // namespace
} // namespace corvane
