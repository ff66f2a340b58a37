// The real program, plug-in included, on real files: opening pages and saving them.
#pragma once

#include "tests/support/drawing.h"
#include "tests/support/process.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

class Saving : public ::testing::Test {
protected:
    /// The program in the test's folder, at a fixed date.
    test::Process process(std::vector<std::string> words) const {
        words.insert(words.begin(), (test::buildFolder() / "corvane").string());
        test::Process process;
        process.words = std::move(words);
        process.environment = {{"SOURCE_DATE_EPOCH", "1795000000"}};
        process.folder = folder_.path();
        return process;
    }

    test::Outcome run(std::vector<std::string> words) const {
        return test::run(process(std::move(words)));
    }

    /// The SVG of a page, as it is told to standard output.
    std::string artwork(const std::string& pdf, int page) const {
        const auto outcome =
            run({"open", pdf, "--page", std::to_string(page), "-o", "-", "--quiet"});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return outcome.output;
    }

    /// Saves `svg` into `pdf`, whatever the page lacks or was.
    void save(const std::string& svg, const std::string& pdf, int page) const {
        auto saving = process({"save", "-", pdf, "--page", std::to_string(page), "--force"});
        saving.input = svg;
        const auto outcome = test::run(saving);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
    }

    std::string bytes(const std::string& name) const {
        return test::fileBytes(folder_.path() / name);
    }

    /// A file of the examples folder.
    static std::string example(const std::string& name) {
        return test::fileBytes(test::sourceFolder() / "examples" / name);
    }

    /// Whether another reader finds the file in order; true where there is none installed.
    bool isValid(const std::string& name) const {
        if (!test::isInstalled("qpdf")) {
            return true;
        }
        test::Process check;
        check.words = {"/usr/bin/env", "qpdf", "--check", name};
        check.folder = folder_.path();
        const auto outcome = test::run(check);
        EXPECT_EQ(outcome.status, 0) << outcome.output << outcome.errors;
        return outcome.status == 0;
    }

    const test::TemporaryFolder folder_;
};

/// `text` with its first `from` become `to`.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

/// An SVG without what says which bytes of the file it was read from: a save changes that.
inline std::string drawing(std::string svg) {
    for (const std::string name : {"digest", "artwork", "source", "clip-source"}) {
        const std::string attribute = " data-" + name + "=\"";
        for (auto at = svg.find(attribute); at != std::string::npos; at = svg.find(attribute, at)) {
            svg.erase(at, svg.find('"', at + attribute.size()) + 1 - at);
        }
    }
    return svg;
}

/// What our SVG of one layer ends in.
inline const std::string endOfLayer = " </g>\n</svg>";

/// An SVG of ours with one line more, which is hardly seen, in front of everything.
inline std::string withLine(const std::string& svg) {
    return replaced(svg, endOfLayer,
                    "<path d=\"M1 1H3\" fill=\"none\" stroke=\"#000000\"/>\n" + endOfLayer);
}

} // namespace corvane
