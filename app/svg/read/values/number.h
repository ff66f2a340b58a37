// Numbers in the text of attributes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace corvane {

inline constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
inline constexpr bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}
inline constexpr bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Whether `text` is the word `small`, in letters of any case.
constexpr bool isWord(std::string_view text, std::string_view small) {
    if (text.size() != small.size()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if ((c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c) != small[i]) {
            return false;
        }
    }
    return true;
}

namespace detail {

inline constexpr int exactPowers = 23;

constexpr std::array<double, exactPowers> makePowersOfTen() {
    std::array<double, exactPowers> powers{};
    double power = 1;
    for (double& entry : powers) {
        entry = power;
        power *= 10;
    }
    return powers;
}
inline constexpr std::array<double, exactPowers> powersOfTen = makePowersOfTen();

/// The number that [`first`, `end`) spells, correctly rounded; beyond a double, the largest power
/// of ten or 0.
double longNumber(const char* first, const char* end);

} // namespace detail

/// Reads a text from its front. At the end of the text it stays there.
class TextCursor {
public:
    explicit TextCursor(std::string_view text)
        : at_(text.data()), end_(text.data() + text.size()) {}

    bool atEnd() const { return at_ == end_; }
    char peek() const { return at_ == end_ ? '\0' : *at_; }
    void skip() {
        if (at_ != end_) {
            ++at_;
        }
    }
    bool take(char c) {
        const bool met = at_ != end_ && *at_ == c;
        at_ += met ? 1 : 0;
        return met;
    }
    void skipBlanks() {
        while (at_ != end_ && isBlank(*at_)) {
            ++at_;
        }
    }
    /// Blanks with a comma among them.
    void skipSeparator() {
        skipBlanks();
        if (take(',')) {
            skipBlanks();
        }
    }
    std::string_view rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }
    /// What was read since the rest was `before`.
    std::string_view since(std::string_view before) const {
        return before.substr(0, static_cast<std::size_t>(at_ - before.data()));
    }
    std::string_view takeLetters() {
        const std::string_view before = rest();
        while (at_ != end_ && isLetter(*at_)) {
            ++at_;
        }
        return since(before);
    }
    /// Up to `c`, which is skipped, or the end.
    std::string_view takeUntil(char c) {
        const std::string_view before = rest();
        const std::size_t place = before.find(c);
        at_ = place == std::string_view::npos ? end_ : at_ + place;
        const std::string_view taken = since(before);
        skip();
        return taken;
    }

    /// A number as SVG and CSS write it, exactly rounded. Where there is none nothing is read.
    bool number(double& value);

private:
    bool exponentAt(const char* at) const {
        if (at == end_ || (*at != 'e' && *at != 'E')) {
            return false;
        }
        ++at;
        if (at != end_ && (*at == '+' || *at == '-')) {
            ++at;
        }
        return at != end_ && isDigit(*at); // not the unit "em"
    }
    bool longNumber(const char* first, const char* at, bool negative, double& value);

    const char* at_;
    const char* end_;
};

inline bool TextCursor::number(double& value) {
    const char* at = at_;
    const bool negative = at != end_ && *at == '-';
    if (at != end_ && (*at == '-' || *at == '+')) {
        ++at;
    }
    const char* const first = at;
    std::uint64_t digits = 0;
    for (; at != end_ && isDigit(*at); ++at) {
        digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
    }
    auto count = at - first;
    std::ptrdiff_t decimals = 0;
    if (at != end_ && *at == '.') {
        const char* const point = ++at;
        for (; at != end_ && isDigit(*at); ++at) {
            digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
        }
        decimals = at - point;
        count += decimals;
    }
    if (count == 0) {
        return false;
    }
    constexpr std::uint64_t exact = std::uint64_t{1} << 53;
    if (count > 18 || digits > exact || exponentAt(at)) {
        return longNumber(first, at, negative, value);
    }
    const double size =
        static_cast<double>(digits) / detail::powersOfTen[static_cast<std::size_t>(decimals)];
    value = negative ? -size : size;
    at_ = at;
    return true;
}

} // namespace corvane
