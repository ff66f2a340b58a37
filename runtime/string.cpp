#include "runtime/string.h"

#include "host/resources.h"
#include "host/utilities.h"
#include "runtime/decimal.h"
#include "runtime/exception.h"

#include <algorithm>
#include <limits>

namespace corvane {

namespace {

constexpr std::size_t longestPrefixed = std::numeric_limits<std::uint8_t>::max();

std::string_view withoutBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

/// Makes `to` longer by `count` bytes, where it has room for them.
void lengthen(std::span<std::uint8_t> to, std::size_t count) {
    const std::size_t length = prefixedBytes(to).size() + count;
    if (length > longestPrefixed || length >= to.size()) {
        failException(Exception::range);
    }
    to[0] = static_cast<std::uint8_t>(length);
}

} // namespace

void copyString(std::span<char> to, std::string_view from) {
    if (from.size() >= to.size()) {
        failException(Exception::range);
    }
    std::copy(from.begin(), from.end(), to.begin());
    to[from.size()] = '\0';
}

std::string_view viewString(std::span<const char> text) {
    const std::string_view all(text.data(), text.size());
    return all.substr(0, all.find('\0'));
}

std::size_t countString(std::span<const char> text) {
    return viewString(text).size();
}

int compareString(std::string_view a, std::string_view b) {
    const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (left == a.end() && right == b.end()) {
        return 0;
    }
    const auto code = [](std::string_view text, std::string_view::iterator place) {
        return place == text.end() ? 0 : static_cast<signed char>(*place);
    };
    return code(a, left) < code(b, right) ? -1 : 1;
}

bool leftString(std::string_view prefix, std::string_view text) {
    return text.starts_with(prefix);
}

std::optional<std::string_view> advanceString(char character, std::string_view text) {
    const std::size_t place = text.find(character);
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    return text.substr(place + 1);
}

QuotedText quotedString(std::string_view text) {
    const std::string_view opened = advanceString('"', text).value_or(std::string_view());
    return {.text = opened.substr(0, opened.find('"')), .rest = advanceString('"', opened)};
}

void mapString(std::span<char> text, char from, char to) {
    std::replace(text.begin(), text.end(), from, to);
}

TextNumber integerString(std::string_view text) {
    text = withoutBlanks(text);
    const Decimal decimal = takeInteger(text);
    if (decimal.empty()) {
        return {};
    }
    return {.value = integerFromDecimal(decimal), .rest = text};
}

TextNumber fixedString(std::string_view text) {
    text = withoutBlanks(text);
    const Decimal decimal = takeDecimal(text);
    if (decimal.empty()) {
        return {};
    }
    return {.value = fixedFromDecimal(decimal, FixDiv), .rest = text};
}

void getString(std::span<std::uint8_t, 256> text, std::int16_t list, std::int16_t index) {
    GetIndString(text.data(), list, index);
}

std::span<const std::uint8_t> prefixedBytes(std::span<const std::uint8_t> text) {
    if (text.empty() || text[0] >= text.size()) {
        failException(Exception::range);
    }
    return text.subspan(1, text[0]);
}

void pstrcpy(std::span<std::uint8_t> to, std::span<const std::uint8_t> from) {
    const auto bytes = prefixedBytes(from);
    if (bytes.size() >= to.size()) {
        failException(Exception::range);
    }
    to[0] = static_cast<std::uint8_t>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), to.begin() + 1);
}

void pstrcat(std::span<std::uint8_t> to, std::span<const std::uint8_t> from) {
    const auto bytes = prefixedBytes(from);
    lengthen(to, bytes.size());
    std::copy(bytes.begin(), bytes.end(), to.begin() + 1 + to[0] - std::ssize(bytes));
}

void pstrinsert(std::span<std::uint8_t> to, std::span<const std::uint8_t> from) {
    const auto bytes = prefixedBytes(from);
    lengthen(to, bytes.size());
    const auto end = to.begin() + 1 + to[0];
    std::copy_backward(to.begin() + 1, end - std::ssize(bytes), end);
    std::copy(bytes.begin(), bytes.end(), to.begin() + 1);
}

} // namespace corvane
