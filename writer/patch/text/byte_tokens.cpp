#include "writer/patch/text/byte_tokens.h"

#include "filters/token/character.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>

namespace corvane {

namespace {

/// Takes one token after the other off some bytes of content.
class Lexer {
public:
    explicit Lexer(std::string_view bytes) : bytes_(bytes) {}

    /// Empty at the end.
    std::string_view next() {
        skipBlank();
        if (at_ == bytes_.size()) {
            return {};
        }
        const std::size_t start = at_;
        switch (bytes_[at_]) {
        case '(':
            passString();
            break;
        case '<':
            passHexadecimal();
            break;
        case '[':
        case ']':
        case '>':
        case '{':
        case '}':
        case ')':
            ++at_;
            break;
        default:
            ++at_; // a solidus begins a name
            passRegular();
        }
        return bytes_.substr(start, at_ - start);
    }

private:
    void skipBlank() {
        while (at_ < bytes_.size() && (isSpace(bytes_[at_]) || bytes_[at_] == '%')) {
            if (bytes_[at_] == '%') {
                at_ = std::min(bytes_.find_first_of("\r\n", at_), bytes_.size());
            } else {
                ++at_;
            }
        }
    }

    void passRegular() {
        while (at_ < bytes_.size() && !isSpace(bytes_[at_]) &&
               std::string_view("()<>[]{}/%").find(bytes_[at_]) == std::string_view::npos) {
            ++at_;
        }
    }

    void passString() {
        std::size_t depth = 0;
        for (; at_ < bytes_.size(); ++at_) {
            const char c = bytes_[at_];
            if (c == '\\') {
                ++at_;
            } else if (c == '(') {
                ++depth;
            } else if (c == ')' && --depth == 0) {
                break;
            }
        }
        at_ = std::min(at_ + 1, bytes_.size());
    }

    void passHexadecimal() {
        ++at_;
        if (at_ < bytes_.size() && bytes_[at_] == '<') {
            ++at_; // a dictionary
            return;
        }
        const std::size_t end = bytes_.find('>', at_);
        at_ = end == std::string_view::npos ? bytes_.size() : end + 1;
    }

    std::string_view bytes_;
    std::size_t at_ = 0;
};

} // namespace

std::vector<std::string_view> tokensOf(std::string_view bytes) {
    std::vector<std::string_view> tokens;
    Lexer lexer(bytes);
    for (std::string_view token = lexer.next(); !token.empty(); token = lexer.next()) {
        tokens.push_back(token);
    }
    return tokens;
}

bool isName(std::string_view token, std::string_view name) {
    if (!token.starts_with('/')) {
        return false;
    }
    constexpr int hexadecimal = 16;
    std::string decoded;
    for (std::size_t i = 1; i < token.size(); ++i) {
        unsigned byte = 0;
        const char* const digits = token.data() + i + 1;
        const bool isEscaped =
            token[i] == '#' && i + 2 < token.size() &&
            std::from_chars(digits, digits + 2, byte, hexadecimal).ptr == digits + 2;
        decoded += isEscaped ? static_cast<char>(byte) : token[i];
        i += isEscaped ? 2 : 0;
    }
    return decoded == name;
}

} // namespace corvane
