// Runs `corvane` on bad files under hard limits and sees to it that it keeps its manners.
#pragma once

#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <regex>
#include <string>
#include <vector>

namespace corvane::test {

/// The command under the limits of every test on bad input: 2 minutes and 1 GiB of addresses, of
/// which zone and artwork may take a quarter each.
inline Process hostileProcess(const TemporaryFolder& folder, std::vector<std::string> words) {
    constexpr std::uint64_t gibibyte = std::uint64_t{1} << 30;
    Process process;
    process.words = std::move(words);
    process.words.insert(process.words.begin(), (buildFolder() / "corvane").string());
    process.environment = {{"CORVANE_ZONE_MB", "256"}, {"CORVANE_ART_MB", "256"}};
    process.folder = folder.path();
    if constexpr (underAddressSanitizer) {
        process.timeout = std::chrono::minutes(5); // for the checks, not for the program
    } else {
        process.addressSpace = gibibyte;
    }
    return process;
}

/// The code of the one error that the program names, 0 where it did what it was asked. Whatever
/// else it did fails the test: a signal, a hang, an exit status other than 0 and 1, a failure
/// without a code and a sentence.
inline int answerOf(const Outcome& outcome) {
    EXPECT_FALSE(outcome.timedOut);
    EXPECT_EQ(outcome.signal, 0) << outcome.errors;
    EXPECT_TRUE(outcome.status == 0 || outcome.status == 1) << outcome.status << '\n'
                                                            << outcome.errors;
    if (outcome.status == 0) {
        return 0;
    }
    static const std::regex sentence("(^|\n)corvane: [^\n]*error ([0-9]+): [^\n]{10,}\n$");
    std::smatch found;
    EXPECT_TRUE(std::regex_search(outcome.errors, found, sentence)) << outcome.errors;
    return found.empty() ? -1 : std::stoi(found[2].str());
}

/// Opens `page` of a file of these bytes and answers as `answerOf`. A failure must leave nothing
/// behind, a success a whole SVG, and the PDF must be what it was.
inline int openHostile(const std::string& bytes, int page = 1,
                       const std::string& profile = "extended") {
    const TemporaryFolder folder;
    const std::string file = folder.add("in.pdf", bytes);
    const int code =
        answerOf(run(hostileProcess(folder, {"open", "in.pdf", "--page", std::to_string(page),
                                             "--profile", profile, "-o", "out.svg", "--quiet"})));
    if (code == 0) {
        std::vector<std::string> names = folder.names();
        std::erase(names, "out-images");
        EXPECT_EQ(names, (std::vector<std::string>{"in.pdf", "out.svg"}));
        EXPECT_TRUE(fileBytes(folder.path() / "out.svg").ends_with("</svg>\n"));
    } else {
        EXPECT_EQ(folder.names(), std::vector<std::string>{"in.pdf"});
    }
    EXPECT_EQ(fileBytes(file), bytes);
    return code;
}

} // namespace corvane::test
