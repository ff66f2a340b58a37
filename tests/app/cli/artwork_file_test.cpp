#include "app/cli/artwork_file.h"

#include "app/cli/program.h"
#include "tests/support/process.h"

#include <array>
#include <csignal>
#include <ctime>
#include <gtest/gtest.h>

namespace corvane {
namespace {

/// Processor time of this process, in seconds: how busy the machine is does not count.
double spent() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Sends SIGINT when this process has worked that long.
class InterruptAfter {
public:
    explicit InterruptAfter(double seconds) {
        struct sigevent event {};
        event.sigev_notify = SIGEV_SIGNAL;
        event.sigev_signo = SIGINT;
        EXPECT_EQ(timer_create(CLOCK_PROCESS_CPUTIME_ID, &event, &timer_), 0);
        struct itimerspec when {};
        when.it_value.tv_sec = static_cast<time_t>(seconds);
        when.it_value.tv_nsec =
            static_cast<long>((seconds - static_cast<double>(when.it_value.tv_sec)) * 1e9) + 1;
        EXPECT_EQ(timer_settime(timer_, 0, &when, nullptr), 0);
    }
    ~InterruptAfter() { timer_delete(timer_); }
    InterruptAfter(const InterruptAfter&) = delete;
    InterruptAfter& operator=(const InterruptAfter&) = delete;

private:
    timer_t timer_{};
};

TEST(ArtworkFile, CtrlCEndsTheReadingOfALongOne) {
    std::string svg = "<svg xmlns='http://www.w3.org/2000/svg'>";
    for (int i = 0; i < 200'000; ++i) {
        svg += "<path d='M1 2L30 40C5 6 7 8 9 10'/>";
    }
    const test::TemporaryFolder folder;
    const std::string artwork = folder.add("a.svg", svg + "</svg>");
    const std::string pdf = (folder.path() / "new.pdf").string();

    double start = spent();
    {
        Document document;
        ProgressLine silent(nullptr, "");
        readArtwork(artwork, document, {".", {}, false}, silent);
    }
    const double whole = spent() - start;

    start = spent();
    const InterruptAfter interrupt(whole / 4);
    EXPECT_EQ(runProgram(std::array{"save", artwork.c_str(), pdf.c_str()}), 130);
    EXPECT_LT(spent() - start, whole * 3 / 4);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.svg"});
}

} // namespace
} // namespace corvane
