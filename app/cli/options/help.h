// What people are told of the program as a whole; `--help` and the manual page say the same.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace corvane {

struct HelpRow {
    std::string_view term;
    std::string_view meaning;
};

/// What the program does: one sentence.
std::string_view programSummary();

/// What to know before the first save: a paragraph each.
std::span<const std::string_view> programNotes();

/// Variables of the environment.
std::span<const HelpRow> variableRows();

/// Exit statuses.
std::span<const HelpRow> statusRows();

/// Whole command lines, and what each does.
std::span<const HelpRow> exampleRows();

/// What `--help` prints.
std::string usageText();

} // namespace corvane
