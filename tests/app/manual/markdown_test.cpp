#include "app/manual/markdown.h"

#include <gtest/gtest.h>
#include <string>

namespace corvane {
namespace {

/// Without the title line.
std::string converted(std::string_view markdown) {
    RoffPage page("page", 5, "2000-01-01");
    const std::size_t title = page.text().size();
    addMarkdown(page, markdown, "page.md");
    return page.text().substr(title);
}

TEST(Markdown, BecomesAManualPage) {
    struct Row {
        const char* markdown;
        const char* roff;
    };
    const Row rows[] = {
        {"# One page\n\nFirst.\n\nSecond.\n", ".SH ONE PAGE\nFirst.\n.PP\nSecond.\n"},
        {"## Two\n### Three\n", ".SS Two\n\\fBThree\\fR\n"},
        {"one\ntwo\n", ".PP\none two\n"},
        {"- one\n  more\n- two", ".IP \\(bu 2\none more\n.IP \\(bu 2\ntwo\n"},
        {"| a | b |\n|---|---|\n| `x|y` | is *it* |\n\nText",
         ".TP\n\\fIa\\fR\n\\fIb\\fR\n.TP\n\\fBx|y\\fR\nis \\fIit\\fR\n.PP\nText\n"},
        {"| a | b | c |\n|---|---|---|\n| 1 | 2 | 3 |\n| 4 | | 5 |",
         ".TP\n\\fIa\\fR\n\\fIb\\fR; \\fIc\\fR\n.TP\n1\n2; 3\n.TP\n4\n5\n"},
        {"`data-x`, **bold** and *a line\nbreak*",
         ".PP\n\\fBdata\\-x\\fR, \\fBbold\\fR and \\fIa line break\\fR\n"},
        // What roff would take for its own.
        {".5 'x' \"y\" ~^", ".PP\n\\&.5 \\(aqx\\(aq \\(dqy\\(dq \\(ti\\(ha\n"},
        {"`a\\b*[<`", ".PP\n\\fBa\\eb*[<\\fR\n"},
        {"1 < 2 & 3", ".PP\n1 < 2 & 3\n"},
        // Other pages are named, this one is not.
        {"[colours](#colours), [svg.md](svg.md#a)", ".PP\ncolours, svg.md\n"},
        {"[`x` here](text.md#a), [text.md](text.md)",
         ".PP\n\\fBx\\fR here (\\fItext.md\\fR), text.md\n"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(converted(row.markdown), row.roff);
    }
}

TEST(Markdown, LongLinesAreFilled) {
    std::string words = "a word";
    for (int i = 0; i < 30; ++i) {
        words += " .and more";
    }
    const std::string roff = converted(words);
    EXPECT_EQ(roff.find("\n.and"), std::string::npos) << "a line that would be a request";
    const std::string term = converted("| a | b |\n|---|---|\n| " + words + " | is |");
    EXPECT_NE(term.find(" \\\n"), std::string::npos) << "a term is one line for roff";
    EXPECT_TRUE(term.ends_with("more\nis\n"));
}

TEST(Markdown, WhatCannotBeShownIsRefused) {
    struct Row {
        const char* markdown;
        const char* wanted;
    };
    const Row rows[] = {
        {"text\n\n#### Deep", "page.md:3: this Markdown is not read"},
        {"> quoted", "not read"},
        {"1. first", "not read"},
        {"* star", "not read"},
        {"```", "not read"},
        {"    code", "not read"},
        {"- item\n    deeper", "not read"},
        {"![picture](a.png)", "not read"},
        {"---", "not read"},
        {"hard break  \nmore", "page.md:1: "},
        {"- item\nlazy", "page.md:2: the second line of an item"},
        {"- item\n  - within", "not read"},
        {"#Title", "a heading has a blank"},
        {"| a |", "one cell"},
        {"| a | b |\n|---|---|\n| c | d | e |", "page.md:3: a row has"},
        {"| a | b", "does not end in |"},
        {"| a | b |\n| c | d |", "page.md:2: the second row"},
        {"| `a` | b |", "marks in the head"},
        {"| a | b |\n|---|---|\ntext", "an empty line is missing"},
        {"some `code", "no `"},
        {"a **bold", "no **"},
        {"**", "nothing behind **"},
        {"a [b] c", "no )"},
        {"**a `b`**", "marks within"},
        {"a\\*b", "a backslash"},
        {"line<br>line", "HTML"},
        {"a &amp; b", "HTML"},
    };
    for (const Row& row : rows) {
        try {
            ADD_FAILURE() << row.markdown << " was read: " << converted(row.markdown);
        } catch (const MarkdownError& error) {
            EXPECT_NE(std::string(error.what()).find(row.wanted), std::string::npos)
                << row.markdown << ": " << error.what();
        }
    }
}

} // namespace
} // namespace corvane
