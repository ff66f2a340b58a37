// What the manual page, `--help` and the completions say is what the tables hold.
#include "app/cli/options/arguments.h"
#include "app/cli/options/help.h"
#include "app/cli/options/option_table.h"
#include "app/manual/completion.h"
#include "app/manual/program_page.h"
#include "app/manual/roff.h"
#include "tests/support/process.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace corvane {
namespace {

using test::holds;

std::variant<Arguments, Question, UsageError> parsed(const std::vector<std::string>& words) {
    std::vector<const char*> pointers(words.size());
    std::ranges::transform(words, pointers.begin(), &std::string::c_str);
    return parseArguments(pointers);
}

TEST(Manual, NamesAllThatThereIsEverywhere) {
    const std::string page = programPage("2000-01-01");
    const std::string usage = usageText();
    const std::string bash = bashCompletion();
    std::string bashWords = bash;
    std::ranges::replace(bashWords, '\'', ' ');
    const std::string zsh = zshCompletion();
    const std::string fish = fishCompletion();
    for (const CommandRow& row : commandRows()) {
        const std::string name(row.name);
        EXPECT_TRUE(holds(page, roffBold("corvane") + " " + roffBold(name))) << name;
        EXPECT_TRUE(holds(usage, "  corvane " + name + " ")) << name;
        EXPECT_TRUE(holds(bash, "        " + name + ")\n")) << name;
        EXPECT_TRUE(holds(zsh, "        " + name + ")\n")) << name;
        EXPECT_TRUE(holds(fish, "__fish_use_subcommand -a " + name + " -d ")) << name;
    }
    for (const OptionRow& row : optionRows()) {
        const std::string name(row.name);
        const bool isLong = name.starts_with("--");
        EXPECT_TRUE(holds(page, ".TP\n" + roffBold(name))) << name;
        EXPECT_TRUE(holds(usage, "\n  " + name + " ")) << name;
        EXPECT_TRUE(holds(bashWords, " " + name + " ")) << name;
        EXPECT_TRUE(holds(zsh, "'" + name + (isLong && !row.value.empty() ? "=[" : "["))) << name;
        EXPECT_TRUE(holds(fish, (isLong ? " -l " + name.substr(2) : " -s " + name.substr(1)) + " "))
            << name;
    }
    for (const auto rows : {variableRows(), statusRows()}) {
        for (const HelpRow& row : rows) {
            EXPECT_TRUE(holds(page, ".TP\n" + roffBold(row.term) + "\n")) << row.term;
            EXPECT_TRUE(holds(usage, "\n  " + std::string(row.term) + " ")) << row.term;
        }
    }
}

TEST(Manual, HelpFitsATerminal) {
    std::istringstream usage(usageText());
    for (std::string line; std::getline(usage, line);) {
        EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST(Manual, ExamplesAreCommandLines) {
    for (const HelpRow& row : exampleRows()) {
        std::istringstream line{std::string(row.term)};
        std::vector<std::string> words;
        for (std::string word; line >> word;) {
            words.push_back(word);
        }
        ASSERT_EQ(words.front(), "corvane");
        words.erase(words.begin());
        EXPECT_TRUE(std::holds_alternative<Arguments>(parsed(words))) << row.term;
    }
}

TEST(Manual, WordsOfTheTableAreThoseThatTheProgramTakes) {
    for (const OptionRow& row : optionRows()) {
        const Offer offer = valueOffer(row);
        const auto takes = [&](std::string_view word) {
            return std::holds_alternative<Arguments>(
                parsed({"open", "a.pdf", std::string(row.name), std::string(word)}));
        };
        for (const std::string_view word : offer.words) {
            EXPECT_TRUE(takes(word)) << row.name << " " << word;
        }
        EXPECT_TRUE(offer.words.empty() || offer.folders || !takes("neither")) << row.name;
    }
}

TEST(Manual, PagesAreSoundForMandoc) {
    for (const char* page : {"corvane.1", "corvane-svg.5"}) {
        test::Process lint;
        lint.words = {"/usr/bin/mandoc", "-T", "lint",
                      (test::buildFolder() / "manual" / page).string()};
        const auto outcome = test::run(lint);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.output + outcome.errors, "");
    }
}

} // namespace
} // namespace corvane
