// Names of many files from one pattern.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// Whether `text` holds one of the words that `filledName` replaces.
bool isPattern(std::string_view text);

/// `pattern` with {stem} as the PDF's name without its folder and ".pdf", {folder} as its folder,
/// "." where it has none, and {page} as the page. All else stays as it is.
std::string filledName(std::string_view pattern, std::string_view file, std::int32_t page);

} // namespace corvane
