#include "app/manual/markdown.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace corvane {

namespace {

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string_view::npos
               ? std::string_view()
               : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

/// The cells of "| a | b |"; a bar within code ends none.
std::vector<std::string_view> cellsOf(std::string_view row) {
    std::vector<std::string_view> cells;
    std::size_t start = 1;
    bool isCode = false;
    for (std::size_t i = 1; i < row.size(); ++i) {
        isCode ^= row[i] == '`';
        if (row[i] == '|' && !isCode) {
            cells.push_back(trimmed(row.substr(start, i - start)));
            start = i + 1;
        }
    }
    if (start != row.size()) {
        throw MarkdownError("a row of a table does not end in |");
    }
    return cells;
}

/// Marks that mean something within a line, or would in HTML.
constexpr std::string_view specialMarks = "`*[\\<&";

/// What begins a line of Markdown that is not among what is shown.
bool isForeign(std::string_view line) {
    static constexpr std::array<std::string_view, 9> marks{"####", ">",  "* ", "+ ", "```",
                                                           "~~~",  "![", "<",  " "};
    for (const std::string_view mark : marks) {
        if (line.starts_with(mark)) {
            return true;
        }
    }
    const std::size_t digits = line.find_first_not_of("0123456789");
    return line.starts_with("---") || line.starts_with("===") ||
           (digits != 0 && digits != std::string_view::npos &&
            line.substr(digits).starts_with(". "));
}

/// One walk over the lines of a page.
class Converter {
public:
    explicit Converter(RoffPage& page) : page_(page) {}

    void takeLine(std::string_view line) {
        const bool goesOn = isItem_ && line.starts_with("  ") && !line.starts_with("  - ");
        if (line.empty()) {
            endBlock();
        } else if (line.front() == '|') {
            if (!text_.empty()) {
                endBlock();
            }
            takeRow(line);
        } else if (line.starts_with("- ")) {
            endBlock();
            isItem_ = true;
            text_ = line.substr(2);
        } else if (isForeign(goesOn ? line.substr(2) : line) || line.back() == ' ') {
            throw MarkdownError("this Markdown is not read");
        } else if (line.front() == '#') {
            endBlock();
            takeHeading(line);
        } else {
            if (isItem_ && !goesOn) {
                throw MarkdownError("the second line of an item begins with two blanks");
            }
            if (columns_ != 0) {
                throw MarkdownError("an empty line is missing behind a table");
            }
            text_ += (text_.empty() ? "" : " ") + std::string(trimmed(line));
        }
    }

    /// Shows what was gathered: a paragraph, an item, the end of a table.
    void endBlock() {
        if (!text_.empty()) {
            const std::string roff = inlineRoff(text_);
            if (isItem_) {
                page_.addItem(roff);
            } else {
                page_.addParagraph(roff);
            }
        }
        text_.clear();
        isItem_ = false;
        columns_ = 0;
        hasRule_ = false;
    }

private:
    void takeHeading(std::string_view line) {
        const std::size_t rank = line.find_first_not_of('#');
        if (rank == std::string_view::npos || line[rank] != ' ') {
            throw MarkdownError("a heading has a blank behind its marks");
        }
        const std::string_view title = line.substr(rank + 1);
        if (rank == 1) {
            page_.addSection(title);
        } else if (rank == 2) {
            page_.addSubsection(title);
        } else {
            page_.addParagraph(roffBold(title));
        }
    }

    /// A row is a term and what it means: the other cells. So is the head, in italics.
    void takeRow(std::string_view line) {
        const auto cells = cellsOf(line);
        const bool isHead = columns_ == 0;
        if (cells.size() < 2 || (!isHead && cells.size() != columns_)) {
            throw MarkdownError("a row has one cell, or other cells than the head of its table");
        }
        if (isHead && line.find_first_of(specialMarks) != std::string_view::npos) {
            throw MarkdownError("marks in the head of a table");
        }
        if (!isHead && !hasRule_) {
            if (std::ranges::any_of(cells, [](auto cell) { return cell != "---"; })) {
                throw MarkdownError("the second row of a table is |---|---|");
            }
            hasRule_ = true;
            return;
        }
        const auto shown = isHead ? roffItalic : inlineRoff;
        std::string meaning;
        for (const std::string_view cell : std::span(cells).subspan(1)) {
            meaning += (meaning.empty() || cell.empty() ? "" : "; ") + shown(cell);
        }
        page_.addTerm(shown(cells[0]), meaning);
        columns_ = cells.size();
    }

    RoffPage& page_;
    std::string text_; ///< of the paragraph or item at hand
    bool isItem_ = false;
    std::size_t columns_ = 0; ///< of the table at hand; 0: there is none
    bool hasRule_ = false;
};

/// Reads what stands between marks, from the left to the right.
class InlineReader {
public:
    explicit InlineReader(std::string_view text) : rest_(text) {}

    std::string read() {
        std::string roff;
        while (!rest_.empty()) {
            const std::size_t mark = rest_.find_first_of(specialMarks);
            roff += roffText(rest_.substr(0, mark));
            rest_.remove_prefix(std::min(mark, rest_.size()));
            if (!rest_.empty()) {
                roff += takeMarked();
            }
        }
        return roff;
    }

private:
    std::string takeMarked() {
        if (rest_.front() == '\\') {
            throw MarkdownError("a backslash outside of code");
        }
        if (rest_.front() == '<' || rest_.front() == '&') {
            return takeBare();
        }
        if (rest_.front() == '[') {
            return takeLink();
        }
        const std::string_view mark =
            rest_.starts_with("**") ? rest_.substr(0, 2) : rest_.substr(0, 1);
        const std::string_view inside = takeBetween(mark, mark);
        if (mark != "`" && inside.find_first_of(specialMarks) != std::string_view::npos) {
            throw MarkdownError("marks within bold or italic text");
        }
        return mark == "*" ? roffItalic(inside) : roffBold(inside);
    }

    /// A mark that HTML would read something into only where a name follows.
    std::string takeBare() {
        const char next = rest_.size() > 1 ? rest_[1] : ' ';
        if ((next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z') || next == '/' ||
            next == '!' || next == '#') {
            throw MarkdownError("HTML outside of code");
        }
        std::string roff = roffText(rest_.substr(0, 1));
        rest_.remove_prefix(1);
        return roff;
    }

    /// Other pages are named behind the text, unless it is their name; this page is not.
    std::string takeLink() {
        const std::string_view text = takeBetween("[", "]");
        const std::string_view target = takeBetween("(", ")");
        const std::string_view file = target.substr(0, target.find('#'));
        const bool isHere = file.empty() || file == "svg.md" || file == "svg-reading.md";
        const std::string shown = InlineReader(text).read();
        return isHere || file == text ? shown : shown + " (" + roffItalic(file) + ")";
    }

    std::string_view takeBetween(std::string_view open, std::string_view close) {
        const std::size_t end =
            rest_.starts_with(open) ? rest_.find(close, open.size()) : std::string_view::npos;
        if (end == std::string_view::npos || end == open.size()) {
            throw MarkdownError("nothing behind " + std::string(open) + ", or no " +
                                std::string(close));
        }
        const std::string_view inside = rest_.substr(open.size(), end - open.size());
        rest_.remove_prefix(end + close.size());
        return inside;
    }

    std::string_view rest_;
};

} // namespace

std::string inlineRoff(std::string_view text) {
    return InlineReader(text).read();
}

void addMarkdown(RoffPage& page, std::string_view markdown, const std::string& file) {
    Converter converter(page);
    for (int number = 1; !markdown.empty(); ++number) {
        const std::string_view line = markdown.substr(0, markdown.find('\n'));
        markdown.remove_prefix(std::min(markdown.size(), line.size() + 1));
        try {
            converter.takeLine(line);
            if (markdown.empty()) {
                converter.endBlock();
            }
        } catch (const MarkdownError& error) {
            throw MarkdownError(file + ":" + std::to_string(number) + ": " + error.what());
        }
    }
}

} // namespace corvane
