// The token filter: turns the bytes of the chain below it into tokens of PDF syntax.
//
// It reads ahead in blocks and scans them through a table of character classes. Its own position
// stays exact: mark, seek and read (operations 3, 2 and 0) act just behind the last token, so that
// image data can be read through it and a stream's first byte be found. Unlinking drops the
// read-ahead: take the mark before, if the place is needed.
//
// Tokens longer than `longestToken` (strings excepted) raise `range`. Nothing else in the bytes
// raises: an unclosed string ends with the data, a stray ")" or ">" is skipped. Source: PDF
// Reference, 3.1 and 3.2.
#pragma once

#include "filters/filter.h"
#include "filters/token/number.h"
#include "runtime/memory.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

enum class TokenType : std::int32_t {
    end = 0, ///< no more data
    hexOpen = 1,
    hexClose = 2,
    arrayOpen = 3,
    integer = 4,
    fixed = 5,
    arrayClose = 6,
    keyword = 7,
    literal = 8, ///< a name, its slash removed and its #xx decoded
    text = 9,    ///< a string without parentheses and escapes, or a run of hexadecimal digits
    procedureOpen = 10,
    procedureClose = 11,
    dictionaryOpen = 12,
    dictionaryClose = 13,
};
inline constexpr std::int32_t tokenTypes = 15;

/// Bytes of a name, number or keyword. Real ones stay below 128.
inline constexpr std::size_t longestToken = 1U << 20;

class TokenFilter : public Filter {
public:
    TokenFilter();

    /// Reads the next token.
    TokenType readToken();

    /// Of a keyword, literal or text; valid until the next call.
    std::string_view bytes() const { return bytes_; }
    /// Of an integer or fixed.
    const Number& number() const { return number_; }

    /// Bytes of the data below in front of the last token and behind it, counted from where the
    /// filter was linked. Over a decoder, `mark` tells the place in the file instead.
    std::int64_t tokenStart() const { return tokenStart_; }
    std::int64_t tokenEnd() const { return origin_ + static_cast<std::int64_t>(position_); }

    /// Whether the data ended within a string.
    bool endsInString() const { return endsInString_; }

    std::int32_t mark();
    /// Bytes read from below that are behind the last token.
    std::size_t readAhead() const { return fill_ - position_; }
    std::int32_t seek(std::int32_t position);
    std::int32_t read(std::byte* to, std::int32_t count);
    void giveBack(std::span<const std::byte> bytes) override;
    /// At least `count` bytes behind the last token, fewer at the end of the data, not yet gone
    /// past.
    std::string_view ahead(std::size_t count);
    /// As `ahead`, having gone past white space.
    std::string_view aheadOfSpace(std::size_t count);
    /// Goes past bytes that `ahead` gave.
    void skip(std::size_t count) { position_ += count; }
    /// After "stream": goes past blanks and the end of line (CR LF, LF or a lone CR).
    void skipToStreamData();
    /// After "ID": goes past one white-space byte, if one is there.
    void skipSpaceByte();

private:
    bool more();
    void forget();
    char peek();
    void skipComment();
    std::string_view regularRun();
    TokenType readNumberToken();
    TokenType readName();
    TokenType readText();
    void readEscape();
    TokenType readHexPiece();
    void append(char c);

    std::vector<char> buffer_; ///< one byte larger than what it holds: the sentinel
    std::int64_t origin_ = 0;  ///< bytes of the data below in front of the buffer
    std::int64_t tokenStart_ = 0;
    std::size_t start_ = 0;    ///< first byte that must be kept
    std::size_t position_ = 0; ///< next byte to scan
    std::size_t fill_ = 0;     ///< bytes held
    std::size_t block_ = 512;  ///< bytes to read next; few at first: an object read alone is short
    bool ended_ = false;
    bool inHex_ = false;
    bool endsInString_ = false;
    Number number_;
    std::string_view bytes_;
    std::string assembled_; ///< a token whose bytes differ from what is written
    ZoneCharge charge_;     ///< of `assembled_`
};

/// A token filter; links on any readable chain.
std::unique_ptr<TokenFilter> setupToken();

} // namespace corvane
