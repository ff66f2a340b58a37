// Pages of docs/ as sections of a manual page.
#pragma once

#include "app/manual/roff.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace corvane {

/// Markdown that a manual page cannot show as it is meant.
struct MarkdownError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Adds `markdown` to `page`: headings of three ranks, paragraphs, lists of one rank, tables;
/// in them code, bold, italic and links. Raises `MarkdownError`, which names `file` and
/// the line, for all else, so that nothing is shown wrongly.
void addMarkdown(RoffPage& page, std::string_view markdown, const std::string& file);

/// A piece of text with code, bold, italic and links, as roff.
std::string inlineRoff(std::string_view text);

} // namespace corvane
