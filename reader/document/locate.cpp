#include "reader/document/locate.h"

#include "filters/token/character.h"
#include "objects/symbol.h"
#include "reader/document/header_search.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace corvane {

namespace {

/// Bytes at the front in which the header may stand.
constexpr std::size_t headerReach = 1024;

/// Bytes at the end in which the last number is looked for.
constexpr std::size_t tailLength = 256;

/// Bytes at the end in which "startxref" is looked for: what readers accept behind "%%EOF".
constexpr std::size_t tailReach = 1024;

constexpr std::string_view headerMark = "%PDF-";

std::string_view bytesFrom(DocumentCache& cache, std::int32_t position, std::span<char> buffer) {
    Filter& file = *cache.fileChain.top();
    seekFilter(file, position);
    return {buffer.data(), readFilter(file, std::as_writable_bytes(buffer))};
}

std::int32_t parseOffset(std::string_view digits) {
    std::int32_t offset = 0;
    if (digits.size() > 10 || !integerSymbol(digits, offset)) {
        failException(Exception::structure);
    }
    return offset;
}

/// The last run of decimal digits.
std::string_view lastNumber(std::string_view tail) {
    const auto last = std::find_if(tail.rbegin(), tail.rend(), isDigit);
    const auto first = std::find_if_not(last, tail.rend(), isDigit);
    // A run that begins with the tail may have lost digits.
    if (first == tail.rend()) {
        failException(Exception::structure);
    }
    const auto length = static_cast<std::size_t>(first - last);
    return tail.substr(static_cast<std::size_t>(tail.rend() - first), length);
}

/// The number behind the last "startxref", or nothing.
std::string_view numberBehindStartxref(std::string_view tail) {
    constexpr std::string_view word = "startxref";
    const std::size_t at = tail.rfind(word);
    if (at == std::string_view::npos) {
        return {};
    }
    tail.remove_prefix(at + word.size());
    tail.remove_prefix(static_cast<std::size_t>(
        std::find_if_not(tail.begin(), tail.end(), isSpace) - tail.begin()));
    const auto end = std::find_if_not(tail.begin(), tail.end(), isDigit);
    return tail.substr(0, static_cast<std::size_t>(end - tail.begin()));
}

} // namespace

std::int32_t shortestFile() {
    return rules().findsStartxref ? 0 : static_cast<std::int32_t>(tailLength);
}

void locateHeader(DocumentCache& cache) {
    std::array<char, headerReach> buffer{};
    std::string_view front = bytesFrom(cache, 0, buffer);
    std::size_t at = front.find(headerMark);
    if (at == std::string_view::npos) {
        if (!rules().searchesHeader) {
            return;
        }
        cache.mends.note(Mend::header);
        const std::int32_t begin = searchHeader(*cache.fileChain.top()).value_or(0);
        cache.headerOffset = begin;
        front = bytesFrom(cache, begin, buffer);
        if (!front.starts_with(headerMark)) {
            return;
        }
        at = 0;
    } else if (rules().modernHeader) {
        cache.headerOffset = static_cast<std::int32_t>(at);
    }
    const std::string_view rest = front.substr(at + headerMark.size());
    const auto end =
        std::find_if(rest.begin(), rest.end(), [](char c) { return !isDigit(c) && c != '.'; });
    cache.version =
        rest.substr(0, std::min<std::size_t>(8, static_cast<std::size_t>(end - rest.begin())));
}

std::int32_t locateSection(DocumentCache& cache, std::int32_t fileLength) {
    Filter& file = *cache.fileChain.top();
    if (fileLength < shortestFile()) {
        failException(Exception::io);
    }
    std::array<char, tailReach> buffer{};
    const std::size_t reach = rules().findsStartxref ? tailReach : tailLength;
    const auto length = std::min(reach, static_cast<std::size_t>(fileLength));
    seekFilter(file, fileLength - static_cast<std::int32_t>(length));
    const std::span<char> wanted = std::span(buffer).first(length);
    if (readFilter(file, std::as_writable_bytes(wanted)) != length) {
        failException(Exception::io);
    }
    const std::string_view tail(buffer.data(), length);
    if (rules().findsStartxref) {
        if (const std::string_view number = numberBehindStartxref(tail); !number.empty()) {
            return parseOffset(number);
        }
    }
    return parseOffset(lastNumber(tail.substr(length - std::min(length, tailLength))));
}

} // namespace corvane
