#include "output/primitives.h"

#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <span>

namespace corvane {

namespace {

constexpr std::size_t scratchSize = 512;
constexpr std::int32_t widest = 255;

} // namespace

void stringOutput(Filter& stream, std::string_view text) {
    std::array<char, scratchSize> scratch;
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, scratchSize);
        std::replace_copy(piece.begin(), piece.end(), scratch.begin(), '\r', '\n');
        writeFilter(stream, std::as_bytes(std::span(scratch).first(piece.size())));
        text.remove_prefix(piece.size());
    }
}

void integerOutput(Filter& stream, std::int32_t value) {
    std::array<char, std::numeric_limits<std::int32_t>::digits10 + 3> text; // sign, space
    char* end = std::to_chars(text.begin(), text.end(), value).ptr;
    *end++ = ' ';
    stringOutput(stream, {text.begin(), end});
}

void paddedOutput(Filter& stream, std::int32_t value, std::int32_t width) {
    if (value < 0 || width < 0 || width > widest) {
        failException(Exception::type);
    }
    std::array<char, widest> text;
    for (auto place = static_cast<std::size_t>(width); place-- > 0; value /= 10) {
        text[place] = static_cast<char>('0' + value % 10);
    }
    stringOutput(stream, {text.data(), static_cast<std::size_t>(width)});
}

} // namespace corvane
