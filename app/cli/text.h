// Bytes that others chose (file names, titles) as text that is safe to print.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// `bytes` for a terminal: printable UTF-8 as it is; control characters, marks that reorder text
/// or break lines, and bytes that are not UTF-8 as \xNN, byte by byte.
std::string terminalText(std::string_view bytes);

/// Two lower-case hexadecimal digits for each byte.
std::string hexadecimalText(std::string_view bytes);

/// Without blanks at its ends.
std::string_view trimmedLine(std::string_view line);

/// "1,234,567".
std::string grouped(std::int64_t number);

/// "1234.5": one decimal.
std::string decimal(double number);

/// "one, two, three".
std::string joined(const std::vector<std::string>& parts);

/// "1 page", "2 pages", "1,234 pages".
std::string counted(std::int64_t count, const std::string& noun);

/// A file name for people to copy into a shell: as it is, or quoted.
std::string shellWord(std::string_view name);

} // namespace corvane
