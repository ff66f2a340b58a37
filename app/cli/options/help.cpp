#include "app/cli/options/help.h"

#include "app/cli/options/option_table.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr std::array noteTable{
    std::string_view("Saving only appends: what was changed or removed can still be read in the "
                     "file's old bytes. So deleting is no redaction."),
    std::string_view("A file whose name begins with - goes after --."),
};

constexpr std::array variableTable{
    HelpRow{"CORVANE_PASSWORD", "the password of an encrypted PDF, where no option gives one; "
                                "without any it is asked for on a terminal"},
    HelpRow{"CORVANE_EDITOR", "the command that starts your vector editor, such as inkscape"},
    HelpRow{"CORVANE_PLUGIN", "the plug-in to load, in place of the program's own"},
    HelpRow{"CORVANE_ZONE_MB", "limit of the plug-in's memory, 1 to 4000 MiB (1024)"},
    HelpRow{"CORVANE_ART_MB", "limit of the artwork's memory, MiB (2048)"},
    HelpRow{"SOURCE_DATE_EPOCH", "seconds since 1970: the date of updates, in place of today's"},
};

constexpr std::array statusTable{
    HelpRow{"0", "done, also with warnings"},
    HelpRow{"1", "failed, of many files any; standard error says why"},
    HelpRow{"2", "bad usage"},
    HelpRow{"130", "cancelled"},
};

constexpr std::array exampleTable{
    HelpRow{"corvane edit report.pdf --page 2",
            "open page 2 in your vector editor; each save there is a save into the PDF"},
    HelpRow{"corvane serve report.pdf", "the same in your browser, for any page"},
    HelpRow{"corvane open report.pdf --page 2 -o page2.svg",
            "the first of three steps that do the same: make an SVG of the page; then change it "
            "with any editor"},
    HelpRow{"corvane save page2.svg report.pdf", "the last step: save it back"},
    HelpRow{"corvane revert report.pdf", "take that save off again, to the byte"},
    HelpRow{"corvane open report.pdf --pages 1- -o art/{stem}-{page}.svg --jobs 4",
            "make an SVG of every page, with four processes"},
};

constexpr std::size_t lineWidth = 80;  ///< of a terminal
constexpr std::size_t termColumn = 24; ///< where meanings begin

/// Where the first word ends; what stands in brackets is one.
std::size_t wordEnd(std::string_view words) {
    const std::size_t blank = words.find(' ');
    const std::size_t bracket = words.starts_with("[") ? words.find(']') : std::string_view::npos;
    return bracket == std::string_view::npos ? blank : words.find(' ', bracket);
}

/// `words` in lines of which the first begins with `start`, the others with `indent` blanks.
std::string wrapped(std::string start, std::string_view words, std::size_t indent) {
    std::string text;
    std::string line = std::move(start);
    bool hasWord = false;
    while (!words.empty()) {
        const std::string_view word = words.substr(0, wordEnd(words));
        words.remove_prefix(std::min(words.size(), word.size() + 1));
        if (hasWord && line.size() + 1 + word.size() > lineWidth) {
            text += line + "\n";
            line.assign(indent, ' ');
            hasWord = false;
        }
        line += (hasWord ? " " : "") + std::string(word);
        hasWord = true;
    }
    return text + line + "\n";
}

std::string termLines(std::string_view term, std::string_view meaning) {
    std::string start = "  " + std::string(term) + " ";
    start.resize(std::max(start.size(), termColumn), ' ');
    return wrapped(std::move(start), meaning, termColumn);
}

std::string termSection(std::string_view title, std::span<const HelpRow> rows) {
    std::string text = "\n" + std::string(title) + ":\n";
    for (const HelpRow& row : rows) {
        text += termLines(row.term, row.meaning);
    }
    return text;
}

} // namespace

std::string_view programSummary() {
    return "Opens a page of a PDF as editable artwork (SVG), and saves it back.";
}

std::span<const std::string_view> programNotes() {
    return noteTable;
}

std::span<const HelpRow> variableRows() {
    return variableTable;
}

std::span<const HelpRow> statusRows() {
    return statusTable;
}

std::span<const HelpRow> exampleRows() {
    return exampleTable;
}

std::string usageText() {
    std::string text = std::string(programSummary()) + "\n\n";
    for (const CommandRow& row : commandRows()) {
        text += wrapped("  corvane " + std::string(row.name) + " ", row.operands, 15) +
                wrapped("      ", row.purpose, 6);
    }
    text += "\nOptions:\n";
    for (const OptionRow& row : optionRows()) {
        const std::string value = row.value.empty() ? "" : " " + std::string(row.value);
        text += termLines(std::string(row.name) + value, row.purpose);
    }
    text += termSection("Environment", variableRows()) + termSection("Exit status", statusRows());
    for (const std::string_view paragraph : programNotes()) {
        text += "\n" + wrapped("", paragraph, 0);
    }
    return text;
}

} // namespace corvane
