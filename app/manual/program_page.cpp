#include "app/manual/program_page.h"

#include "app/cli/options/help.h"
#include "app/cli/options/option_table.h"
#include "app/manual/roff.h"

#include <algorithm>
#include <span>

namespace corvane {

namespace {

bool isPlaceholder(std::string_view word) {
    return !word.empty() && word.front() >= 'A' && word.front() <= 'Z';
}

/// Words to type are bold, words to replace italic, brackets and bars neither.
std::string synopsis(std::string_view words) {
    std::string roff;
    while (!words.empty()) {
        const std::string_view word = words.substr(0, words.find(' '));
        words.remove_prefix(std::min(words.size(), word.size() + 1));
        const std::size_t begin = std::min(word.find_first_not_of('['), word.size());
        const std::size_t dots = word.find("...");
        const std::size_t end = std::max(std::min(dots, word.find(']')), begin);
        const std::string_view core = word.substr(begin, end - begin);
        roff += (roff.empty() ? "" : " ") + roffText(word.substr(0, begin)) +
                (core == "|"           ? roffText(core)
                 : isPlaceholder(core) ? roffItalic(core)
                                       : roffBold(core)) +
                roffText(word.substr(std::min(end, word.size())));
    }
    return roff;
}

std::string commandLine(const CommandRow& row) {
    return synopsis("corvane " + std::string(row.name) + " " + std::string(row.operands));
}

/// "open, edit", for an option that does not go with every command.
std::string commandsOf(const OptionRow& option) {
    std::string names;
    Commands named = 0;
    for (const CommandRow& row : commandRows()) {
        if ((option.commands & only(row.command) & ~named) != 0) {
            names += (names.empty() ? "" : ", ") + std::string(row.name);
            named |= only(row.command);
        }
    }
    return names;
}

void addRows(RoffPage& page, std::string_view title, std::span<const HelpRow> rows) {
    page.addSection(title);
    for (const HelpRow& row : rows) {
        page.addTerm(roffBold(row.term), roffText(row.meaning));
    }
}

/// The summary as `man -f` shows it: neither a capital nor a full stop.
std::string purpose() {
    std::string text(programSummary());
    text.front() = static_cast<char>(text.front() - 'A' + 'a');
    text.pop_back();
    return text;
}

} // namespace

std::string programPage(std::string_view date) {
    RoffPage page("corvane", 1, date);
    page.addName("corvane", purpose());
    page.addSection("Synopsis");
    page.addParagraph(synopsis("corvane COMMAND [FILE...] [OPTION...]"));
    page.addSection("Description");
    page.addParagraph(roffText(programSummary()));
    for (const std::string_view note : programNotes()) {
        page.addParagraph(roffText(note));
    }
    page.addSection("Commands");
    for (const CommandRow& row : commandRows()) {
        page.addTerm(commandLine(row), roffText(row.purpose));
    }
    page.addSection("Options");
    for (const OptionRow& row : optionRows()) {
        const std::string value = row.value.empty() ? "" : " " + roffItalic(row.value);
        const std::string commands =
            row.commands == everyCommand ? "" : " (" + roffText(commandsOf(row)) + ")";
        page.addTerm(roffBold(row.name) + value + commands, roffText(row.purpose));
    }
    addRows(page, "Environment", variableRows());
    addRows(page, "Exit status", statusRows());
    addRows(page, "Examples", exampleRows());
    page.addSection("See also");
    page.addParagraph("\\fBcorvane\\-svg\\fR(5), what the SVG holds and what is read of any SVG.");
    page.addParagraph("More pages are in " + roffItalic("share/doc/corvane") +
                      " of the folder that Corvane is installed in, such as " +
                      roffItalic("/usr/share/doc/corvane") + ".");
    return page.text();
}

} // namespace corvane
