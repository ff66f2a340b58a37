// The recipes of docs/recipes.md do what they say, as they are written.
#include "tests/support/drawing.h"
#include "tests/support/process.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;

struct Step {
    std::string commands;
    std::optional<std::string> output; ///< what must be printed; none: anything
    std::optional<std::string>
        killedAt; ///< the program is killed when it has written so many bytes
};

struct Recipe {
    std::string title;
    std::vector<Step> steps;
};

/// Reads on to the end of a fenced block.
std::string blockOf(std::istream& lines) {
    std::string block;
    for (std::string line; std::getline(lines, line) && line != "```";) {
        block += line + "\n";
    }
    return block;
}

/// A recipe for each heading of the second level. A block of output belongs to the commands before
/// it.
std::vector<Recipe> readRecipes(const std::string& text) {
    const std::string killed = "<!-- killed after ";
    std::vector<Recipe> recipes;
    std::optional<std::string> killedAt;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("## ")) {
            recipes.push_back({line.substr(3), {}});
        } else if (line.starts_with(killed)) {
            killedAt = line.substr(killed.size(), line.find(' ', killed.size()) - killed.size());
        } else if (line == "```sh") {
            const std::string commands = blockOf(lines);
            recipes.back().steps.push_back(
                {commands, std::nullopt, std::exchange(killedAt, std::nullopt)});
        } else if (line == "```text") {
            recipes.back().steps.back().output = blockOf(lines);
        }
    }
    return recipes;
}

/// Whether `text` is `pattern`, "..." being any text.
bool isLike(const std::string& text, const std::string& pattern) {
    const std::string any = "...";
    std::size_t at = 0;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + any.size()) {
        end = pattern.find(any, begin);
        const std::string part = pattern.substr(begin, end - begin);
        const bool isLast = end == std::string::npos;
        const std::size_t found = isLast && begin > 0 ? text.rfind(part) : text.find(part, at);
        const bool isHere = found != std::string::npos && found >= at && (begin > 0 || found == 0);
        if (!isHere || (isLast && found + part.size() != text.size())) {
            return false;
        }
        at = found + part.size();
    }
    return true;
}

/// A folder with the examples, in which recipes find the program.
class Kitchen {
public:
    Kitchen() {
        for (const auto& file : fs::directory_iterator(test::sourceFolder() / "examples")) {
            if (file.path().extension() == ".pdf" || file.path().extension() == ".png") {
                fs::copy_file(file.path(), folder_.path() / file.path().filename());
            }
        }
    }

    test::Outcome run(const Step& step) const {
        test::Process process;
        process.words = {
            "/usr/bin/env", "bash", "-e", "-o", "pipefail", "-c", "exec 2>&1\n" + step.commands};
        process.folder = folder_.path();
        process.environment = {
            {"SOURCE_DATE_EPOCH", "1795000000"}, {"LC_ALL", "C.UTF-8"}, {"PATH", path(step)}};
        return test::run(process);
    }

private:
    std::string path(const Step& step) const {
        const std::string usual =
            test::buildFolder().string() + ":" + (std::getenv("PATH") ? std::getenv("PATH") : "");
        return step.killedAt ? killer(*step.killedAt) + ":" + usual : usual;
    }

    /// A folder with a program of that name that does not live to its end.
    std::string killer(const std::string& bytes) const {
        const fs::path build = test::buildFolder();
        const std::string script =
            "#!/bin/sh\nexport LD_PRELOAD='" + (build / "fault-injector.so").string() +
            "' CORVANE_FAULT=bytes CORVANE_FAULT_AT=" + bytes +
            " ASAN_OPTIONS=\"$ASAN_OPTIONS:verify_asan_link_order=0\"\nexec '" +
            (build / "corvane").string() + "' \"$@\"\n";
        const std::string name = killers_.add("corvane", script);
        fs::permissions(name, fs::perms::owner_all);
        return killers_.path().string();
    }

    test::TemporaryFolder folder_;
    test::TemporaryFolder killers_;
};

/// Whether the machine has the programs that recipes look at results with.
bool canCook(const Recipe& recipe) {
    return std::ranges::all_of(recipe.steps, [](const Step& step) {
        return std::ranges::all_of(
            std::vector<std::string>{"pdftotext", "pdffonts", "rsvg-convert"},
            [&](const std::string& program) {
                return !test::holds(step.commands, program) || test::isInstalled(program);
            });
    });
}

void cook(const Recipe& recipe) {
    SCOPED_TRACE(recipe.title);
    const Kitchen kitchen;
    for (const Step& step : recipe.steps) {
        const test::Outcome outcome = kitchen.run(step);
        if (step.killedAt) {
            EXPECT_TRUE(outcome.signal == SIGKILL || outcome.status == 128 + SIGKILL)
                << step.commands << outcome.output;
            continue;
        }
        EXPECT_EQ(outcome.status, 0) << step.commands << outcome.output;
        EXPECT_TRUE(!step.output || isLike(outcome.output, *step.output))
            << step.commands << "prints\n"
            << outcome.output;
    }
}

TEST(Recipes, OutputIsComparedToTheEnd) {
    struct Row {
        const char* pattern;
        const char* text;
        bool isLike;
    };
    for (const Row& row :
         {Row{"a b", "a b", true}, Row{"a", "ab", false}, Row{"b", "ab", false},
          Row{"a...", "ab", true}, Row{"...b", "abab", true}, Row{"...b", "abc", false},
          Row{"a...b...c", "axbyc", true}, Row{"a...b...c", "acb", false},
          Row{"ab...ba", "aba", false}, Row{"...", "", true}, Row{"a...b...", "xab", false}}) {
        EXPECT_EQ(isLike(row.text, row.pattern), row.isLike) << row.pattern << " / " << row.text;
    }
}

TEST(Recipes, DoWhatTheySay) {
    const auto recipes = readRecipes(test::fileBytes(test::sourceFolder() / "docs" / "recipes.md"));
    EXPECT_GE(recipes.size(), 6U);
    for (const Recipe& recipe : recipes) {
        EXPECT_TRUE(std::ranges::any_of(recipe.steps,
                                        [](const Step& step) { return step.output.has_value(); }))
            << recipe.title << " shows nothing";
        if (canCook(recipe)) {
            cook(recipe);
        }
    }
}

} // namespace
} // namespace corvane
