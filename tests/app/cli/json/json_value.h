// Reads JSON, for tests: what the program prints, and the schema in docs/json.md.
#pragma once

#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

struct JsonValue {
    enum class Kind { null, boolean, number, text, array, object };
    Kind kind = Kind::null;
    bool truth = false;
    std::string text; ///< of a number: as it is written
    std::vector<JsonValue> items;
    std::map<std::string, JsonValue> members;

    const JsonValue* find(const std::string& name) const {
        const auto found = members.find(name);
        return found == members.end() ? nullptr : &found->second;
    }
    bool isWhole() const {
        return kind == Kind::number && text.find_first_not_of("-0123456789") == std::string::npos;
    }
    bool operator==(const JsonValue&) const = default;
};

/// One walk over a text. Throws where it is not JSON.
class JsonReader {
public:
    explicit JsonReader(std::string_view text) : text_(text) {}

    JsonValue whole() {
        JsonValue result = value();
        blanks();
        require(at_ == text_.size());
        return result;
    }

private:
    JsonValue value() {
        blanks();
        JsonValue result;
        if (take("null")) {
            return result;
        }
        if (take("true") || take("false")) {
            result.kind = JsonValue::Kind::boolean;
            result.truth = text_[at_ - 2] == 'u';
        } else if (peek() == '"') {
            result.kind = JsonValue::Kind::text;
            result.text = string();
        } else if (take("[")) {
            result.kind = JsonValue::Kind::array;
            list(']', [&] { result.items.push_back(value()); });
        } else if (take("{")) {
            result.kind = JsonValue::Kind::object;
            list('}', [&] {
                blanks();
                const std::string name = string();
                blanks();
                require(take(":"));
                require(result.members.emplace(name, value()).second); // none comes twice
            });
        } else {
            result.kind = JsonValue::Kind::number;
            const auto end =
                std::min(text_.find_first_not_of("+-.0123456789eE", at_), text_.size());
            result.text = text_.substr(at_, end - at_);
            char* rest = nullptr;
            std::strtod(result.text.c_str(), &rest);
            require(!result.text.empty() && *rest == '\0');
            at_ = end;
        }
        return result;
    }

    template <class Body>
    void list(char close, Body&& item) {
        blanks();
        if (take(std::string_view(&close, 1))) {
            return;
        }
        do {
            item();
            blanks();
        } while (take(","));
        require(take(std::string_view(&close, 1)));
    }

    /// Escapes but those of quotes and backslashes stay as they are.
    std::string string() {
        require(take("\""));
        std::string result;
        while (peek() != '"') {
            if (peek() == '\\' &&
                (text_.substr(at_ + 1, 1) == "\"" || text_.substr(at_ + 1, 1) == "\\")) {
                ++at_;
            }
            result += peek();
            ++at_;
        }
        ++at_;
        return result;
    }

    void blanks() { at_ = std::min(text_.find_first_not_of(" \n", at_), text_.size()); }
    char peek() const {
        require(at_ < text_.size());
        return text_[at_];
    }
    bool take(std::string_view word) {
        const bool isThere = text_.substr(at_).starts_with(word);
        at_ += isThere ? word.size() : 0;
        return isThere;
    }
    void require(bool isRight) const {
        if (!isRight) {
            throw std::runtime_error("no JSON at " + std::string(text_.substr(at_, 40)));
        }
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

} // namespace corvane::test
