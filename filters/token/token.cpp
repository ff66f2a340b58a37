#include "filters/token/token.h"

#include "filters/token/character.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cstring>

namespace corvane {

namespace {

/// Bytes of every block but the first: a page's content is long.
constexpr std::size_t laterBlock = 65536;

/// Ends every run behind the bytes held: a delimiter that is no part of a number or a word.
constexpr char sentinel = '(';

std::int32_t entryToken(Filter& filter, Operation operation, std::byte* buffer,
                        std::int32_t* argument) {
    auto& token = static_cast<TokenFilter&>(filter);
    switch (operation) {
    case Operation::read:
        return *argument = token.read(buffer, *argument);
    case Operation::seek:
        return *argument = token.seek(*argument);
    case Operation::mark:
        return *argument = token.mark();
    case Operation::nextToken:
        return *argument = static_cast<std::int32_t>(token.readToken());
    case Operation::streamData:
        token.skipToStreamData();
        return 0;
    case Operation::skipSpace:
        token.skipSpaceByte();
        return 0;
    case Operation::write:
        failException(Exception::io);
    default:
        return 0;
    }
}

} // namespace

TokenFilter::TokenFilter() : Filter(entryToken), buffer_(1, sentinel) {}

std::unique_ptr<TokenFilter> setupToken() {
    return std::make_unique<TokenFilter>();
}

/// Reads a block behind what is held, keeping the bytes from `start_` on. False at the end of the
/// data.
bool TokenFilter::more() {
    if (ended_) {
        return false;
    }
    const std::size_t kept = fill_ - start_;
    if (kept > longestToken) {
        // Past what was held, so that whoever goes on does not meet the same token again.
        start_ = fill_;
        position_ = fill_;
        failException(Exception::range);
    }
    std::memmove(buffer_.data(), buffer_.data() + start_, kept);
    origin_ += static_cast<std::int64_t>(start_);
    position_ -= start_;
    start_ = 0;
    fill_ = kept;
    struct Ending {
        TokenFilter& tokens;
        ~Ending() { tokens.buffer_[tokens.fill_] = sentinel; }
    };
    const Ending ending{*this}; // also where the filter below raises, having written something
    buffer_.resize(std::max(buffer_.size(), kept + block_ + 1));
    const std::span<char> room = std::span(buffer_).subspan(kept, block_);
    const std::size_t count = readFilter(*next, std::as_writable_bytes(room));
    block_ = laterBlock;
    ended_ = count == 0;
    fill_ += count;
    return !ended_;
}

char TokenFilter::peek() {
    return buffer_[position_];
}

TokenType TokenFilter::readToken() {
    if (inHex_) {
        return readHexPiece();
    }
    for (;;) {
        while (isSpace(buffer_[position_])) {
            ++position_;
        }
        start_ = position_;
        tokenStart_ = tokenEnd();
        const char c = buffer_[position_];
        switch (characterClass(c)) {
        case CharacterClass::digit:
        case CharacterClass::sign:
        case CharacterClass::point:
            return readNumberToken();
        case CharacterClass::regular:
            bytes_ = regularRun();
            return TokenType::keyword;
        default:
            break;
        }
        if (position_ == fill_) {
            if (!more()) {
                return TokenType::end;
            }
            continue;
        }
        ++position_;
        switch (c) {
        case '/':
            return readName();
        case '(':
            return readText();
        case '[':
            return TokenType::arrayOpen;
        case ']':
            return TokenType::arrayClose;
        case '{':
            return TokenType::procedureOpen;
        case '}':
            return TokenType::procedureClose;
        case '%':
            skipComment();
            break;
        case '<':
        case '>':
            if (position_ == fill_) {
                more();
            }
            if (position_ < fill_ && peek() == c) {
                ++position_;
                return c == '<' ? TokenType::dictionaryOpen : TokenType::dictionaryClose;
            }
            if (c == '<') {
                inHex_ = true;
                return TokenType::hexOpen;
            }
            break;
        default:
            break;
        }
    }
}

void TokenFilter::skipComment() {
    for (;;) {
        while (position_ < fill_ && peek() != '\n' && peek() != '\r') {
            ++position_;
        }
        start_ = position_;
        if (position_ < fill_ || !more()) {
            return;
        }
    }
}

/// The regular characters from `position_` on, which is left behind them.
std::string_view TokenFilter::regularRun() {
    std::size_t length = position_ - start_;
    for (;;) {
        std::size_t at = start_ + length;
        while (isRegular(buffer_[at])) {
            ++at;
        }
        length = at - start_;
        if (at < fill_ || !more()) {
            break;
        }
    }
    const std::size_t begin = position_;
    position_ = start_ + length;
    return {buffer_.data() + begin, position_ - begin};
}

TokenType TokenFilter::readNumberToken() {
    for (;;) {
        const char* const begin = buffer_.data() + position_;
        const auto length = static_cast<std::size_t>(readNumber(begin, number_) - begin);
        if (position_ + length < fill_ || !more()) {
            position_ += length;
            return number_.real ? TokenType::fixed : TokenType::integer;
        }
    }
}

std::int32_t TokenFilter::mark() {
    return markFilter(*next) - static_cast<std::int32_t>(readAhead());
}

std::int32_t TokenFilter::seek(std::int32_t position) {
    inHex_ = false;
    const std::int32_t held = markFilter(*next) - static_cast<std::int32_t>(fill_);
    if (position >= held && position <= held + static_cast<std::int32_t>(fill_)) {
        position_ = static_cast<std::size_t>(position - held);
        return position;
    }
    forget();
    ended_ = false;
    const std::int32_t reached = seekFilter(*next, position);
    origin_ += reached - held;
    return reached;
}

void TokenFilter::forget() {
    start_ = 0;
    position_ = 0;
    fill_ = 0;
    buffer_[0] = sentinel;
}

std::int32_t TokenFilter::read(std::byte* to, std::int32_t count) {
    const auto wanted = static_cast<std::size_t>(std::max(count, 0));
    const std::size_t held = std::min(wanted, fill_ - position_);
    std::memcpy(to, buffer_.data() + position_, held);
    position_ += held;
    if (held == wanted || ended_) {
        return static_cast<std::int32_t>(held);
    }
    // What is read past the bytes held is not held: none is, from here on.
    origin_ += static_cast<std::int64_t>(fill_);
    forget();
    const std::size_t further = readFilter(*next, {to + held, wanted - held});
    origin_ += static_cast<std::int64_t>(further);
    return static_cast<std::int32_t>(held + further);
}

void TokenFilter::giveBack(std::span<const std::byte> bytes) {
    // Not by seeking: the chain below may decode, and so be unable to go back.
    if (position_ < bytes.size()) {
        const std::size_t missing = bytes.size() - position_;
        buffer_.insert(buffer_.begin(), missing, sentinel);
        fill_ += missing;
        origin_ -= static_cast<std::int64_t>(missing);
        position_ = bytes.size();
    }
    position_ -= bytes.size();
    start_ = position_;
    std::memcpy(buffer_.data() + position_, bytes.data(), bytes.size());
}

std::string_view TokenFilter::ahead(std::size_t count) {
    start_ = position_;
    while (fill_ - position_ < count && more()) {
    }
    return {buffer_.data() + position_, fill_ - position_};
}

std::string_view TokenFilter::aheadOfSpace(std::size_t count) {
    std::string_view bytes = ahead(count);
    while (!bytes.empty() && isSpace(bytes.front())) {
        skip(1);
        bytes = ahead(count);
    }
    return bytes;
}

void TokenFilter::skipToStreamData() {
    const auto atByte = [this] {
        start_ = position_;
        return position_ < fill_ || more();
    };
    while (atByte() && (peek() == ' ' || peek() == '\t')) {
        ++position_;
    }
    if (atByte() && peek() == '\r') {
        ++position_;
    }
    if (atByte() && peek() == '\n') {
        ++position_;
    }
}

void TokenFilter::skipSpaceByte() {
    start_ = position_;
    if ((position_ < fill_ || more()) && isSpace(peek())) {
        ++position_;
    }
}

} // namespace corvane
