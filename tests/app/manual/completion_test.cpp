// Completions, in the shells that they are for: lines are typed with a tab at their end.
#include "tests/support/process.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;

struct Row {
    std::string typed; ///< behind the program's name
    std::string made;  ///< words of the line once it is complete, each in <>
};

const std::vector<Row> rows{
    {"op", "<open>"},
    {"open --im", "<open><--images>"},
    {"save --im", "<save><--images>"},
    {"--qu", "<--quiet>"},
    {"open --page 2 --pro", "<open><--page><2><--profile>"},
    {"--profile or", "<--profile><original>"},
    {"edit --text ex", "<edit><--text><exact>"},
    {"open --text=fl", "<open><--text=flow>"},
    {"open --images em", "<open><--images><embed>"},
    {"open -o harb", "<open><-o><harbour.svg>"},
    {"info my", "<info><my page.pdf>"},
    {"info CA", "<info><CAPS.PDF>"},
    {"save harbour.s", "<save><harbour.svg>"},
    {"save harbour.svg harbour.p", "<save><harbour.svg><harbour.pdf>"},
    {"log --password-file not", "<log><--password-file><notes.txt>"},
    {"log --password-file=not", "<log><--password-file=notes.txt>"},
    // Options that go with other commands, and behind the end of the options.
    {"open --dr", "<open><--dr>"},
    {"check -- --p", "<check><--><--p>"},
};

class Completion : public ::testing::Test {
protected:
    Completion() {
        for (const char* name :
             {"my page.pdf", "CAPS.PDF", "notes.txt", "harbour.pdf", "harbour.svg"}) {
            folder_.add(name, "");
        }
    }

    /// What the program would have been given, line by line, by a shell that reads `start` first.
    std::string typed(std::vector<std::string> words, const std::string& name,
                      const std::string& start) const {
        folder_.add(name, start + "\ncorvane() { printf '<%s>' \"$@\"; echo; }\n");
        test::Process shell;
        shell.words = std::move(words);
        shell.folder = folder_.path();
        shell.onTerminal = true;
        shell.timeout = std::chrono::seconds(60);
        shell.environment = {{"TERM", "dumb"}, {"ZDOTDIR", folder_.path().string()}};
        for (const Row& row : rows) {
            shell.input += "corvane " + row.typed + "\t\n";
        }
        shell.input += "exit\n";
        return test::run(shell).output;
    }

    static std::string wanted() {
        std::string text;
        for (const Row& row : rows) {
            text += row.made + "\n";
        }
        return text;
    }

    const fs::path manual_ = test::buildFolder() / "manual";
    const test::TemporaryFolder folder_;
};

TEST_F(Completion, OfBash) {
    const auto rules = folder_.path() / "rules";
    const std::string load = ". '" + (manual_ / "corvane.bash").string() + "'";
    EXPECT_EQ(typed({"/bin/bash", "--noprofile", "--rcfile", rules.string(), "-i"}, "rules", load),
              wanted());
}

TEST_F(Completion, OfBashOffersNoFilesThatTheCommandCannotRead) {
    test::Process shell;
    shell.words = {"/bin/bash", "-c",
                   ". '" + (manual_ / "corvane.bash").string() +
                       "'; COMP_WORDS=(corvane save ''); COMP_CWORD=2; _corvane; echo "
                       "\"${COMPREPLY[@]}\"; COMP_WORDS=(corvane check ''); _corvane; echo "
                       "\"${COMPREPLY[@]}\""};
    shell.folder = folder_.path();
    shell.environment = {{"LC_ALL", "C"}};
    const std::string output = test::run(shell).output;
    const std::string check = output.substr(output.find('\n'));
    EXPECT_TRUE(holds(output, "harbour.svg") && !holds(output, "notes.txt")) << output;
    EXPECT_TRUE(holds(check, "CAPS.PDF") && !holds(check, "harbour.svg")) << check;
}

TEST_F(Completion, OfZsh) {
    const fs::path zsh = "/usr/bin/zsh";
    if (!fs::exists(zsh)) {
        GTEST_SKIP() << "zsh is not installed";
    }
    EXPECT_EQ(typed({zsh.string(), "-i"}, ".zshrc",
                    "fpath=('" + manual_.string() +
                        "' $fpath)\nautoload -Uz compinit; compinit -u -D\nunsetopt beep"),
              wanted());
}

TEST_F(Completion, OfFish) {
    const fs::path fish = "/usr/bin/fish";
    if (!fs::exists(fish)) {
        GTEST_SKIP() << "fish is not installed";
    }
    std::string script = "source '" + (manual_ / "corvane.fish").string() + "'\n";
    for (const Row& row : rows) {
        script += "echo '" + row.typed + ":' (complete -C 'corvane " + row.typed +
                  "' | string split -f1 \\t)[1]\n";
    }
    test::Process shell;
    shell.words = {fish.string(), "--no-config", "-c", script};
    shell.folder = folder_.path();
    shell.environment = {{"HOME", folder_.path().string()}};
    const std::string output = test::run(shell).output;
    for (const Row& row : rows) {
        const std::string last = row.made.substr(row.made.rfind('<') + 1);
        const std::string word = last.substr(0, last.size() - 1);
        const std::string offered = row.typed.ends_with(word) ? "" : " " + word;
        EXPECT_TRUE(holds(output, row.typed + ":" + offered + "\n")) << row.typed << "\n" << output;
    }
}

} // namespace
} // namespace corvane
