// What a terminal shows while the program works.
#include "tests/app/cli/saving.h"
#include "tests/support/pdf_builder.h"

#include <algorithm>
#include <regex>

namespace corvane {
namespace {

class Terminal : public Saving {
protected:
    /// All that the program shows on a terminal.
    std::string shown(std::vector<std::string> words) const {
        auto shown = process(std::move(words));
        shown.onTerminal = true;
        const auto outcome = test::run(shown);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return outcome.errors;
    }
};

/// The lines that took one another's place.
std::vector<std::string> linesOf(std::string shown) {
    const std::string erase = "\r\x1B[K";
    std::vector<std::string> lines;
    for (std::size_t at = 0; (at = shown.find(erase)) != std::string::npos;) {
        lines.push_back(shown.substr(0, at));
        shown.erase(0, at + erase.size());
    }
    lines.push_back(shown);
    return lines;
}

TEST_F(Terminal, ShowsHowFarALargePageIs) {
    // Each part of the work takes longer than the line waits before it appears.
    const int paths = test::underAddressSanitizer ? 60'000 : 400'000;
    std::string content;
    for (int i = 0; i < paths; ++i) {
        content += std::to_string(i % 700) + " 20 m 300 " + std::to_string(i % 500) + " l S\n";
    }
    folder_.add("a.pdf", test::PdfBuilder::onePage(content).bytes());

    struct Row {
        std::vector<std::string> words;
        std::vector<const char*> wanted; ///< each fits a whole line
    };
    const char* const percent = " [0-9]+ %(, [0-9.,]+ % a second, ([0-9]+:)?[0-9]+ (s|min) left)?";
    const std::string reading = std::string("corvane: reading") + percent;
    const std::string artwork = std::string("corvane: reading the artwork") + percent;
    const std::string saving = std::string("corvane: saving") + percent;
    for (const Row& row :
         {Row{{"open", "a.pdf", "-o", "a.svg"}, {reading.c_str()}},
          Row{{"save", "a.svg", "a.pdf", "--force"}, {artwork.c_str(), saving.c_str()}}}) {
        const std::string all = shown(row.words);
        const auto lines = linesOf(all);
        for (const char* const wanted : row.wanted) {
            EXPECT_TRUE(std::ranges::any_of(lines,
                                            [&](const std::string& line) {
                                                return std::regex_match(line, std::regex(wanted));
                                            }))
                << wanted << " is not in " << all;
        }
        EXPECT_TRUE(lines.back().starts_with("corvane: ")) << "the result stays: " << all;
    }
    EXPECT_EQ(shown({"open", "a.pdf", "-o", "b.svg", "--quiet"}), "");
}

TEST_F(Terminal, ArtworkOnItIsNotDisturbed) {
    folder_.add("a.pdf", example("two-pages.pdf"));
    const std::string all = shown({"open", "a.pdf", "--page", "1", "-o", "-"});
    EXPECT_FALSE(test::holds(all, "writing")) << all;
}

} // namespace
} // namespace corvane
