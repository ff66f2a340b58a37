// Command lines as words, without a shell.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Takes a line apart as a shell does: blanks divide it, '...' and "..." keep them, a backslash
/// keeps the character behind it, within "..." only a backslash or a quote. Nothing is expanded.
/// None where a quote has no end.
std::optional<std::vector<std::string>> commandWords(std::string_view line);

} // namespace corvane
