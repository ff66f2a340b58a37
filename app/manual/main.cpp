// Writes the manual pages and the completions into a folder:
//
//     make-manual FOLDER YYYY-MM-DD docs/svg.md docs/svg-reading.md
#include "app/manual/completion.h"
#include "app/manual/markdown.h"
#include "app/manual/program_page.h"

#include <cstddef>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <span>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace corvane;

void write(const fs::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        throw std::runtime_error(path.string() + " cannot be written");
    }
}

std::string svgPage(std::string_view date, std::span<char*> files) {
    RoffPage page("corvane-svg", 5, date);
    page.addName("corvane-svg", "the SVG that corvane writes of a page, and what it reads of any");
    for (const char* const name : files) {
        std::ifstream file(name, std::ios::binary);
        std::ostringstream text;
        if (!(text << file.rdbuf())) {
            throw std::runtime_error(std::string(name) + " cannot be read");
        }
        addMarkdown(page, text.str(), name);
    }
    page.addSection("See also");
    page.addParagraph("\\fBcorvane\\fR(1)");
    return page.text();
}

} // namespace

int main(int argc, char** argv) {
    const std::span words(argv, static_cast<std::size_t>(argc));
    if (words.size() < 4) {
        std::fputs("usage: make-manual FOLDER YYYY-MM-DD PAGE.md...\n", stderr);
        return 2;
    }
    try {
        const fs::path folder = words[1];
        write(folder / "corvane.1", programPage(words[2]));
        write(folder / "corvane-svg.5", svgPage(words[2], words.subspan(3)));
        write(folder / "corvane.bash", bashCompletion());
        write(folder / "_corvane", zshCompletion());
        write(folder / "corvane.fish", fishCompletion());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make-manual: %s\n", error.what());
        return 1;
    }
}
