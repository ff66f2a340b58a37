#include "reader/document/header_search.h"

#include "filters/token/character.h"
#include "runtime/budget.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

constexpr std::size_t searchBlock = 65536;

/// Bytes of a block that are searched again with the next: a word may be cut, and one byte before
/// it counts.
constexpr std::size_t overlap = 16;

/// Place of the first header: "%PDF-1." or "%PDF-2.".
std::size_t findHeader(std::string_view bytes) {
    constexpr std::string_view mark = "%PDF-";
    for (std::size_t at = bytes.find(mark); at != std::string_view::npos;
         at = bytes.find(mark, at + 1)) {
        const std::string_view version = bytes.substr(at + mark.size(), 2);
        if (version == "1." || version == "2.") {
            return at;
        }
    }
    return std::string_view::npos;
}

/// Place of the first head of an object: "obj" behind a number.
std::size_t findObject(std::string_view bytes) {
    constexpr std::string_view word = " obj";
    std::size_t at = bytes.find(word);
    while (at != std::string_view::npos && (at == 0 || !isDigit(bytes[at - 1]))) {
        at = bytes.find(word, at + 1);
    }
    return at;
}

bool holdsTrailer(std::string_view bytes) {
    return bytes.find("trailer") != std::string_view::npos ||
           bytes.find("startxref") != std::string_view::npos;
}

} // namespace

std::optional<std::int32_t> searchHeader(Filter& file) {
    std::vector<char> buffer(overlap + searchBlock);
    std::size_t kept = 0;
    bool hasObject = false;
    std::optional<std::int32_t> begin;
    seekFilter(file, 0);
    for (std::int32_t position = 0; position < budget::headerBytes;) {
        const std::span<char> room = std::span(buffer).subspan(kept);
        const std::size_t count = readFilter(file, std::as_writable_bytes(room));
        const std::string_view bytes(buffer.data(), kept + count);
        const std::size_t object = hasObject ? 0 : findObject(bytes);
        if (const std::size_t header = findHeader(bytes); !begin && header < object) {
            begin = position - static_cast<std::int32_t>(kept) + static_cast<std::int32_t>(header);
        }
        hasObject = object != std::string_view::npos;
        if (hasObject && holdsTrailer(bytes)) {
            return begin.value_or(0);
        }
        if (count == 0) {
            break;
        }
        position += static_cast<std::int32_t>(count);
        kept = std::min(overlap, bytes.size());
        std::ranges::copy(bytes.substr(bytes.size() - kept), buffer.begin());
    }
    return std::nullopt;
}

} // namespace corvane
