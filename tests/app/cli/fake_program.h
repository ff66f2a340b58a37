// The real program with a plug-in that acts a part (tests/support/fake_plugin.cpp).
#pragma once

#include "tests/support/process.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

class FakeProgram : public ::testing::Test {
protected:
    /// The program in the test's folder, with the plug-in in the part `part`.
    test::Process process(const std::string& part, std::vector<std::string> words) const {
        words.insert(words.begin(), (test::buildFolder() / "corvane").string());
        test::Process process;
        process.words = std::move(words);
        process.environment = {
            {"CORVANE_PLUGIN", (test::buildFolder() / "fake-plugin.so").string()},
            {"CORVANE_FAKE", part}};
        process.folder = folder_.path();
        return process;
    }

    test::Outcome run(const std::string& part, std::vector<std::string> words) const {
        return test::run(process(part, std::move(words)));
    }

    const test::TemporaryFolder folder_;
    const std::string pdf_ = folder_.add("in.pdf", "%PDF-1.4 of a kind");
};

} // namespace corvane
