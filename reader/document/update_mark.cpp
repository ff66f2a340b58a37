#include "reader/document/update_mark.h"

#include "filters/token/character.h"
#include "reader/syntax/file_bytes.h"

#include <algorithm>
#include <charconv>

namespace corvane {

namespace {

constexpr std::string_view opening = "%Corvane update of a file of ";
constexpr std::string_view closing = " bytes\n";
constexpr std::size_t lengthDigits = 10;
constexpr std::size_t markLength = opening.size() + lengthDigits + closing.size();
static_assert(markLength == updateMarkLength);

/// Bytes of a broken line from which on it is taken for ours; fewer may be anybody's.
constexpr std::size_t tellingLength = 8;

constexpr std::int32_t searchBlock = 65536;

/// The length that a line at the front of `text` names; negative: there is no such line.
std::int64_t namedLength(std::string_view text) {
    if (!text.starts_with(opening) || text.size() < markLength ||
        text.substr(opening.size() + lengthDigits, closing.size()) != closing) {
        return -1;
    }
    const std::string_view digits = text.substr(opening.size(), lengthDigits);
    if (!std::ranges::all_of(digits, isDigit)) {
        return -1;
    }
    std::int64_t length = -1;
    std::from_chars(digits.begin(), digits.end(), length);
    return length;
}

/// Lines begin in this block of the file, and may reach behind it.
std::string blockAt(DocumentCache& cache, std::int32_t position, std::int32_t end) {
    constexpr auto overlap = static_cast<std::int64_t>(markLength);
    return bytesOfFile(cache, position, end - position + overlap);
}

} // namespace

std::string updateMark(std::int32_t formerLength) {
    const std::string digits = std::to_string(formerLength);
    std::string mark(opening);
    mark.append(lengthDigits - digits.size(), '0').append(digits).append(closing);
    return mark;
}

std::optional<std::int32_t> updateAt(DocumentCache& cache, std::int32_t position) {
    const std::int64_t length = namedLength(bytesOfFile(cache, position, markLength));
    const bool behindLineFeed =
        length == position - 1 && bytesOfFile(cache, position - 1, 1) == "\n";
    if (length != position && !behindLineFeed) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(length);
}

std::optional<UpdatePlace> lastUpdate(DocumentCache& cache, std::int32_t first, std::int32_t end) {
    while (end > first) {
        const std::int32_t begin = std::max(first, end - searchBlock);
        const std::string bytes = blockAt(cache, begin, end);
        for (std::size_t at = bytes.rfind(opening); at != std::string::npos;
             at = at == 0 ? std::string::npos : bytes.rfind(opening, at - 1)) {
            const std::int32_t line = begin + static_cast<std::int32_t>(at);
            if (const auto start = updateAt(cache, line)) {
                return UpdatePlace{line, *start};
            }
        }
        end = begin;
    }
    return std::nullopt;
}

std::optional<std::int32_t> updateBefore(DocumentCache& cache, std::int64_t position) {
    const std::int64_t line = position - static_cast<std::int64_t>(markLength);
    return line < 0 || line >= cache.wholeLength ? std::nullopt
                                                 : updateAt(cache, static_cast<std::int32_t>(line));
}

std::optional<std::int32_t> brokenMark(DocumentCache& cache) {
    constexpr std::int32_t reach = markLength + 1;
    const std::int32_t from = std::max(0, cache.wholeLength - reach);
    const std::string bytes = bytesOfFile(cache, from, reach);
    const std::size_t lineEnd = bytes.find_last_of("\r\n");
    if (lineEnd == std::string::npos || bytes.size() - lineEnd <= tellingLength) {
        return std::nullopt;
    }
    const std::string_view line = std::string_view(bytes).substr(lineEnd + 1);
    const std::int32_t position = from + static_cast<std::int32_t>(lineEnd) + 1;
    if (updateMark(position).starts_with(line)) {
        return position;
    }
    if (bytes[lineEnd] == '\n' && updateMark(position - 1).starts_with(line)) {
        return position - 1;
    }
    return std::nullopt;
}

} // namespace corvane
