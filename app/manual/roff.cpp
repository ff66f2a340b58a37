#include "app/manual/roff.h"

#include <algorithm>

namespace corvane {

namespace {

/// Marks of ASCII that roff reads as another character, or would set as one.
std::string_view escaped(char mark) {
    switch (mark) {
    case '\\':
        return "\\e";
    case '-':
        return "\\-";
    case '"':
        return "\\(dq";
    case '\'':
        return "\\(aq";
    case '`':
        return "\\(ga";
    case '^':
        return "\\(ha";
    case '~':
        return "\\(ti";
    default:
        return {};
    }
}

constexpr std::size_t lineWidth = 78; ///< mandoc -T lint wants less than 80

std::string heading(std::string_view title) {
    std::string text(title);
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c; });
    return roffText(text);
}

} // namespace

std::string roffText(std::string_view text) {
    std::string roff;
    for (const char mark : text) {
        const std::string_view name = escaped(mark);
        roff += name.empty() ? std::string_view(&mark, 1) : name;
    }
    return roff;
}

std::string roffBold(std::string_view text) {
    return "\\fB" + roffText(text) + "\\fR";
}

std::string roffItalic(std::string_view text) {
    return "\\fI" + roffText(text) + "\\fR";
}

RoffPage::RoffPage(std::string_view name, int section, std::string_view date) {
    addLine(".TH " + heading(name) + " " + std::to_string(section) + " " + std::string(date) +
            " \"Corvane " CORVANE_VERSION "\"");
}

void RoffPage::addName(std::string_view name, std::string_view purpose) {
    addSection("Name");
    addFilled(roffText(name) + " \\- " + roffText(purpose));
}

void RoffPage::addSection(std::string_view title) {
    addLine(".SH " + heading(title));
    behindHeading_ = true;
}

void RoffPage::addSubsection(std::string_view title) {
    addLine(".SS " + roffText(title));
    behindHeading_ = true;
}

void RoffPage::addParagraph(std::string_view roff) {
    if (!behindHeading_) {
        addLine(".PP");
    }
    addFilled(roff);
}

/// A term is one line for roff: where it is long, its line ends are hidden.
void RoffPage::addTerm(std::string_view termRoff, std::string_view roff) {
    addLine(".TP");
    addFilled(termRoff, " \\");
    addFilled(roff);
}

void RoffPage::addItem(std::string_view roff) {
    addLine(".IP \\(bu 2");
    addFilled(roff);
}

void RoffPage::addLine(std::string_view line) {
    text_ += line;
    text_ += '\n';
    behindHeading_ = false;
}

/// roff takes a line that begins with a dot or an apostrophe for a request.
void RoffPage::addFilled(std::string_view roff, std::string_view lineEnd) {
    std::string line;
    while (!roff.empty()) {
        const std::string_view word = roff.substr(0, roff.find(' '));
        roff.remove_prefix(std::min(roff.size(), word.size() + 1));
        if (!line.empty() && line.size() + 1 + word.size() + lineEnd.size() > lineWidth) {
            addLine(line + std::string(lineEnd));
            line.clear();
        }
        line += line.empty() ? (word.starts_with('.') ? "\\&" : "") : " ";
        line += word;
    }
    addLine(line);
}

} // namespace corvane
