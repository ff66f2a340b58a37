#include "reader/document/unfinished.h"

#include "filters/token/character.h"
#include "reader/document/update_mark.h"
#include "reader/syntax/file_bytes.h"
#include "runtime/budget.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

namespace corvane {

namespace {

/// Bytes at the end in which a finished file has its end.
constexpr std::int32_t tailReach = 1024;

constexpr std::string_view endWord = "startxref";
constexpr std::string_view endMark = "%%EOF";

/// Bytes in which an end has its number and its mark.
constexpr std::size_t endReach = 64;

/// Bytes of the last lines of a finished file.
constexpr std::int32_t endLength = 128;

constexpr std::int32_t searchBlock = 65536;

std::string_view withoutSpace(std::string_view text) {
    text.remove_prefix(
        static_cast<std::size_t>(std::ranges::find_if_not(text, isSpace) - text.begin()));
    return text;
}

/// The number of an end, of which `text` is what stands behind "startxref"; nothing where it is not
/// finished.
std::optional<std::int32_t> finishedEnd(std::string_view text) {
    text = withoutSpace(text.substr(0, endReach));
    std::int32_t number = 0;
    const auto [behind, error] = std::from_chars(text.begin(), text.end(), number);
    if (error != std::errc() || number < 0) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(behind - text.begin()));
    return withoutSpace(text).starts_with(endMark) ? std::optional(number) : std::nullopt;
}

bool beginsLine(std::string_view text, std::size_t at) {
    return at > 0 && (text[at - 1] == '\n' || text[at - 1] == '\r');
}

/// Whether a finished end stands on a line of its own in the last bytes, from `from` on.
bool endsFinished(DocumentCache& cache, std::int32_t from) {
    const std::int32_t begin = std::max(from - 1, 0);
    const std::string tail = bytesOfFile(cache, begin, cache.wholeLength - begin);
    for (std::size_t at = tail.rfind(endWord); at != std::string::npos;
         at = at == 0 ? std::string::npos : tail.rfind(endWord, at - 1)) {
        if (beginsLine(tail, at) &&
            finishedEnd(std::string_view(tail).substr(at + endWord.size()))) {
            return true;
        }
    }
    return false;
}

/// Whether the file's last line is a finished end: somebody wrote it to the end, however damaged it
/// is.
bool endsWithEnd(DocumentCache& cache) {
    const std::string tail = bytesOfFile(cache, cache.wholeLength - endLength, endLength);
    const std::size_t word = tail.rfind(endWord);
    const std::size_t mark = tail.rfind(endMark);
    return word != std::string::npos && mark != std::string::npos && beginsLine(tail, word) &&
           finishedEnd(std::string_view(tail).substr(word + endWord.size())) &&
           withoutSpace(std::string_view(tail).substr(mark + endMark.size())).empty();
}

/// Whether a section may stand at `offset`: its keyword, or an object that holds it.
bool isSection(DocumentCache& cache, std::int32_t offset) {
    const std::string bytes =
        bytesOfFile(cache, std::int64_t{offset} + cache.headerOffset, endReach);
    const std::string_view text = withoutSpace(bytes);
    return text.starts_with("xref") || (!text.empty() && isDigit(text.front()));
}

/// Whether any end behind `position` leads to a section: somebody finished what stands there.
bool isFinishedBehind(DocumentCache& cache, std::int64_t position) {
    std::int32_t looked = 0;
    for (; position < cache.wholeLength; position += searchBlock) {
        const std::string bytes = bytesOfFile(
            cache, position, searchBlock + static_cast<std::int32_t>(endWord.size() + endReach));
        for (std::size_t at = bytes.find(endWord); at < static_cast<std::size_t>(searchBlock);
             at = bytes.find(endWord, at + 1)) {
            const auto offset = finishedEnd(std::string_view(bytes).substr(at + endWord.size()));
            // So many ends are no page of ours.
            if (++looked > budget::updateEnds || (offset && isSection(cache, *offset))) {
                return true;
            }
        }
    }
    return false;
}

/// Where the file ends, if what stands behind it was cut short.
std::optional<std::int32_t> unfinishedStart(DocumentCache& cache, bool doubtful) {
    if (const auto start = brokenMark(cache)) {
        return start;
    }
    const std::int32_t tail = std::max(0, cache.wholeLength - tailReach);
    auto place = lastUpdate(cache, tail, cache.wholeLength);
    if (doubtful ? endsWithEnd(cache) : endsFinished(cache, place ? place->line : tail)) {
        return std::nullopt;
    }
    if (!place) {
        place = lastUpdate(cache, 0, tail);
    }
    if (!place || isFinishedBehind(cache, place->line)) {
        return std::nullopt;
    }
    return place->start;
}

} // namespace

bool passUnfinished(DocumentCache& cache, bool doubtful) {
    const auto start = unfinishedStart(cache, doubtful);
    if (!start || *start >= cache.fileLength) {
        return false;
    }
    cache.fileLength = *start;
    return true;
}

} // namespace corvane
