// Processes that do not end as they should.
#include "app/web/child.h"
#include "app/web/limits.h"
#include "tests/support/process.h"

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>

namespace corvane {
namespace {

using Cause = ChildEnd::Cause;
using std::chrono::steady_clock;

ChildWish shell(const std::string& script, int seconds = 30) {
    return {.words = {"-c", script}, .time = std::chrono::seconds(seconds)};
}

TEST(Child, EndsAsItIsTold) {
    struct Row {
        const char* script;
        int seconds;
        Cause cause;
        int status;
        int signal;
        const char* output;
    };
    for (const Row& row : {
             Row{"echo one; echo two >&2; exit 3", 30, Cause::itself, 3, 0, "one\n"},
             Row{"kill -SEGV $$", 30, Cause::itself, 0, SIGSEGV, ""},
             Row{"echo begun; sleep 60", 5, Cause::time, 0, SIGTERM, "begun\n"},
             Row{"trap '' TERM; sleep 60 & wait; sleep 60", 5, Cause::time, 0, SIGKILL, ""},
             Row{"while :; do :; done & wait", 1, Cause::time, 0, 0, ""},
             Row{"cat", 30, Cause::itself, 0, 0, ""}, // there is nothing to read
         }) {
        const auto start = steady_clock::now();
        const ChildEnd end = runChild("/bin/sh", shell(row.script, row.seconds));
        EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(40)) << row.script;
        EXPECT_EQ(end.cause, row.cause) << row.script;
        EXPECT_EQ(end.status, row.status) << row.script;
        if (row.signal != 0) {
            EXPECT_EQ(end.signal, row.signal) << row.script;
        }
        EXPECT_EQ(end.output, row.output) << row.script;
    }
    EXPECT_EQ(runChild("/no/such/program", shell("")).status, 127);
}

TEST(Child, SaysNoMoreThanIsTaken) {
    const ChildEnd end = runChild("/bin/sh", shell("yes"));
    EXPECT_EQ(end.cause, Cause::output);
    EXPECT_LE(end.output.size(), limits::output);
}

TEST(Child, GoesWhenItIsNotWanted) {
    ChildWish wish = shell("sleep 60");
    int asked = 0;
    wish.isUnwanted = [&] { return ++asked > 1; };
    const auto start = steady_clock::now();
    EXPECT_EQ(runChild("/bin/sh", wish).cause, Cause::unwanted);
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(40));
}

TEST(Child, GetsWhatIsMeantForItOnly) {
    setenv("CORVANE_PASSWORD", "another", 1);
    ChildWish wish = shell("read line; echo \"$line ${CORVANE_PASSWORD-none}\"");
    wish.password = "w\u00f6rd %41";
    EXPECT_EQ(runChild("/bin/sh", wish).output, "w\u00f6rd %41 none\n");
    unsetenv("CORVANE_PASSWORD");
    const auto open = runChild("/bin/sh", shell("ls /proc/self/fd | wc -l")).output;
    EXPECT_EQ(std::stoi(open), 4) << "three streams, and the folder that is listed";
    if (!test::underAddressSanitizer) {
        const auto memory = runChild("/bin/sh", shell("ulimit -v")).output;
        EXPECT_EQ(std::stoull(memory), limits::memory / 1024);
    }
    ChildWish writer = shell("head -c 5000 /dev/zero >full; wc -c <full");
    const test::TemporaryFolder folder;
    writer.words[1] = "cd '" + folder.path().string() + "'; " + writer.words[1];
    writer.fileSize = 1000;
    EXPECT_EQ(std::stoi(runChild("/bin/sh", writer).output), 1000);
    wish.password = std::string(5000, 'x');
    EXPECT_EQ(runChild("/bin/sh", wish).output.size(), 511U + 6U) << "more counts in no PDF";
}

} // namespace
} // namespace corvane
