// Text in the language of manual pages: man(7).
#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// `text` as roff shows it, character for character.
std::string roffText(std::string_view text);
/// The same in bold, or italic.
std::string roffBold(std::string_view text);
std::string roffItalic(std::string_view text);

/// A manual page under construction. What it takes as `roff` has been escaped.
class RoffPage {
public:
    /// `section` is that of the manual; `date` is YYYY-MM-DD.
    RoffPage(std::string_view name, int section, std::string_view date);

    /// What `man -f` tells of the page.
    void addName(std::string_view name, std::string_view purpose);
    void addSection(std::string_view title);
    void addSubsection(std::string_view title);
    void addParagraph(std::string_view roff);
    void addTerm(std::string_view termRoff, std::string_view roff);
    void addItem(std::string_view roff);

    const std::string& text() const { return text_; }

private:
    void addLine(std::string_view line);
    /// `lineEnd` stands behind each line but the last.
    void addFilled(std::string_view roff, std::string_view lineEnd = {});

    std::string text_;
    bool behindHeading_ = false; ///< where a paragraph begins anyway
};

} // namespace corvane
