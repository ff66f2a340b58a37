#include "writer/patch/show_bytes.h"

#include "filters/character.h"

#include <algorithm>
#include <cstddef>

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

std::vector<std::string_view> tokensOf(std::string_view bytes) {
    std::vector<std::string_view> tokens;
    Lexer lexer(bytes);
    for (std::string_view token = lexer.next(); !token.empty(); token = lexer.next()) {
        tokens.push_back(token);
    }
    return tokens;
}

bool isString(std::string_view token) {
    return token.front() == '(' || (token.front() == '<' && token != "<<");
}

/// What is one token and one element: others may be of several tokens.
bool isElement(std::string_view token) {
    constexpr std::string_view startsOfNumbers = "+-.0123456789";
    return isString(token) || startsOfNumbers.find(token.front()) != std::string_view::npos;
}

} // namespace

std::optional<ShowBytes> showBytes(std::string_view bytes) {
    std::vector<std::string_view> tokens = tokensOf(bytes);
    if (tokens.size() < 2) {
        return std::nullopt;
    }
    ShowBytes show{.word = tokens.back(), .before = {}, .elements = {}};
    tokens.pop_back();
    if (show.word == "TJ") {
        const auto open = std::ranges::find(tokens.rbegin(), tokens.rend(), "[");
        if (tokens.back() != "]" || open == tokens.rend()) {
            return std::nullopt;
        }
        show.elements.assign(open.base(), tokens.end() - 1);
        return std::ranges::all_of(show.elements, isElement) ? std::optional(show) : std::nullopt;
    }
    const std::size_t numbers = show.word == "\"" ? 2 : 0;
    if ((show.word != "Tj" && show.word != "'" && show.word != "\"") || !isString(tokens.back()) ||
        tokens.size() < 1 + numbers) {
        return std::nullopt;
    }
    show.elements.push_back(tokens.back());
    show.before.assign(tokens.end() - 1 - static_cast<std::ptrdiff_t>(numbers), tokens.end() - 1);
    return show;
}

} // namespace corvane
