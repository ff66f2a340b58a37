#include "app/cli/files/hidden_file.h"

#include "app/cli/files/output.h"
#include "tests/support/process.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class Hidden : public ::testing::Test {
protected:
    OutputTarget target() const {
        return outputTarget((folder_.path() / "out.pdf").string(), "/", true);
    }

    /// Leaves what a process leaves that is killed while it writes.
    void writeAndDie(bool isVacated) const {
        const pid_t child = fork();
        if (child == 0) {
            OutputFile file(target());
            file.write("half");
            if (isVacated) {
                file.vacate();
                const fs::path path = file.hiddenPath();
                folder_.add(path.filename(), "half");
                folder_.add("._" + path.filename().string(), "fork");
            }
            raise(SIGKILL);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(WTERMSIG(status), SIGKILL);
    }

    const test::TemporaryFolder folder_;
};

TEST_F(Hidden, TheNextOutputTakesAwayWhatAKilledProcessLeft) {
    for (const bool isVacated : {false, true}) {
        writeAndDie(isVacated);
        EXPECT_EQ(folder_.names().size(), isVacated ? 3U : 1U);
        {
            OutputFile next(target());
            EXPECT_EQ(folder_.names(), Names{fs::path(next.hiddenPath()).filename()});
            next.commit(next.write("whole"));
        }
        EXPECT_EQ(folder_.names(), Names{"out.pdf"});
        fs::remove(folder_.path() / "out.pdf");
    }
}

TEST_F(Hidden, FilesInUseStay) {
    OutputFile written(target());
    OutputFile vacated(target());
    vacated.vacate();
    const std::string made = fs::path(vacated.hiddenPath()).filename();
    folder_.add(made, "new");
    folder_.add("._" + made, "fork");
    removeAbandoned(target().path);
    EXPECT_EQ(folder_.names().size(), 4U);
    written.commit(written.write("one"));
    EXPECT_EQ(test::fileBytes(target().path), "one");
    vacated.commit({});
    EXPECT_EQ(test::fileBytes(target().path), "new");
}

TEST_F(Hidden, WhatNobodyOfOursMadeStays) {
    const std::string name = ".corvane-unfinished-";
    for (const std::string& similar :
         {name, name + "abcde", name + "abcdefg", name + "abc-ef", name + "abcdef.pdf",
          "._" + name + "abcdef.pdf", "x" + name + "abcdef", std::string(".corvane-abcdef")}) {
        folder_.add(similar, "work");
    }
    const std::string work = folder_.add("work", "work");
    fs::create_symlink("work", folder_.path() / (name + "symlnk"));
    fs::create_hard_link(work, folder_.path() / (name + "harder"));
    fs::create_directory(folder_.path() / (name + "folder"));
    const Names before = folder_.names();
    removeAbandoned(target().path);
    EXPECT_EQ(folder_.names(), before);
    folder_.add(name + "abcdeF", "of ours, as far as anybody can tell");
    removeAbandoned(target().path);
    EXPECT_EQ(folder_.names(), before);
}

} // namespace
} // namespace corvane
