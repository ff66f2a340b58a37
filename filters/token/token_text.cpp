// Tokens whose bytes differ from what is written: names with #xx, strings, hexadecimal digits.
#include "filters/token/token.h"

#include "filters/coding/hex.h"
#include "filters/token/character.h"
#include "runtime/rules.h"

#include <algorithm>

namespace corvane {

namespace {

/// A string is charged to the zone in steps of this many bytes.
constexpr std::size_t chargeStep = 1U << 20;

} // namespace

void TokenFilter::append(char c) {
    if (assembled_.size() % chargeStep == chargeStep - 1) {
        charge_.resize(static_cast<std::int64_t>(2 * (assembled_.size() + chargeStep)));
    }
    assembled_ += c;
}

TokenType TokenFilter::readName() {
    start_ = position_;
    bytes_ = regularRun();
    if (!rules().escapedNames || bytes_.find('#') == std::string_view::npos) {
        return TokenType::literal;
    }
    assembled_.clear();
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (bytes_[i] == '#' && i + 2 < bytes_.size()) {
            const std::uint8_t high = hexDigit(static_cast<std::uint8_t>(bytes_[i + 1]));
            const std::uint8_t low = hexDigit(static_cast<std::uint8_t>(bytes_[i + 2]));
            if ((high | low) <= 15) {
                append(static_cast<char>(high << 4 | low));
                i += 2;
                continue;
            }
        }
        append(bytes_[i]);
    }
    bytes_ = assembled_;
    return TokenType::literal;
}

/// A string, behind its opening parenthesis. Most hold no escape and lie in one block: they are not
/// copied.
TokenType TokenFilter::readText() {
    start_ = position_;
    const auto plain = [](char c) { return c != ')' && c != '(' && c != '\\' && c != '\r'; };
    const char* const begin = buffer_.data() + position_;
    const char* const held = buffer_.data() + fill_;
    const char* const stop = std::find_if_not(begin, held, plain);
    if (stop != held && *stop == ')') {
        bytes_ = {begin, static_cast<std::size_t>(stop - begin)};
        position_ += bytes_.size() + 1;
        return TokenType::text;
    }
    assembled_.clear();
    for (std::int64_t depth = 1; depth > 0;) {
        start_ = position_;
        if (position_ == fill_ && !more()) {
            endsInString_ = true;
            break;
        }
        const char c = buffer_[position_++];
        switch (c) {
        case '(':
            ++depth;
            append(c);
            break;
        case ')':
            if (--depth > 0) {
                append(c);
            }
            break;
        case '\\':
            readEscape();
            break;
        case '\r':
            // Every end of line in a string counts as one line feed.
            start_ = position_;
            if ((position_ < fill_ || more()) && peek() == '\n') {
                ++position_;
            }
            append('\n');
            break;
        default:
            append(c);
        }
    }
    bytes_ = assembled_;
    return TokenType::text;
}

/// What follows a backslash: a letter, up to three octal digits, or an end of line, which counts
/// for nothing. Before any other byte the backslash is ignored.
void TokenFilter::readEscape() {
    start_ = position_;
    if (position_ == fill_ && !more()) {
        return;
    }
    const char c = buffer_[position_++];
    constexpr std::string_view letters = "nrtbf";
    constexpr std::string_view meanings = "\n\r\t\b\f";
    if (const std::size_t which = letters.find(c); which != std::string_view::npos) {
        append(meanings[which]);
        return;
    }
    if (c == '\n') {
        return;
    }
    start_ = position_;
    if (c == '\r') {
        if ((position_ < fill_ || more()) && peek() == '\n') {
            ++position_;
        }
        return;
    }
    const auto isOctal = [](char digit) { return digit >= '0' && digit <= '7'; };
    if (!isOctal(c)) {
        append(c);
        return;
    }
    int value = c - '0';
    for (int i = 0; i < 2; ++i) {
        start_ = position_;
        if ((position_ == fill_ && !more()) || !isOctal(peek())) {
            break;
        }
        value = value * 8 + (buffer_[position_++] - '0');
    }
    append(static_cast<char>(value & 0xFF));
}

/// The next run of bytes of a hexadecimal string, or its end.
TokenType TokenFilter::readHexPiece() {
    for (;;) {
        start_ = position_;
        tokenStart_ = tokenEnd();
        if (position_ == fill_ && !more()) {
            inHex_ = false;
            endsInString_ = true;
            return TokenType::hexClose;
        }
        if (!isSpace(peek())) {
            break;
        }
        ++position_;
    }
    if (peek() == '>') {
        ++position_;
        inHex_ = false;
        return TokenType::hexClose;
    }
    // A run may end with the block: pieces are joined again by whoever closes the string.
    while (position_ < fill_ && peek() != '>' && !isSpace(peek())) {
        ++position_;
    }
    bytes_ = {buffer_.data() + start_, position_ - start_};
    return TokenType::text;
}

} // namespace corvane
