#include "app/cli/report/json.h"

#include "app/cli/text.h"
#include "host/utf8.h"

#include <array>
#include <charconv>
#include <cmath>

namespace corvane {

JsonWriter& JsonWriter::name(std::string_view text) {
    separate();
    appendText(text);
    result_ += ':';
    needsComma_ = false;
    return *this;
}

JsonWriter& JsonWriter::text(std::string_view value) {
    separate();
    appendText(value);
    return *this;
}

JsonWriter& JsonWriter::integer(std::int64_t value) {
    separate();
    result_ += std::to_string(value);
    return *this;
}

JsonWriter& JsonWriter::real(double value) {
    if (!std::isfinite(value)) {
        return null();
    }
    separate();
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    result_.append(digits.data(), end);
    return *this;
}

JsonWriter& JsonWriter::boolean(bool value) {
    separate();
    result_ += value ? "true" : "false";
    return *this;
}

JsonWriter& JsonWriter::null() {
    separate();
    result_ += "null";
    return *this;
}

JsonWriter& JsonWriter::open(char bracket) {
    separate();
    result_ += bracket;
    needsComma_ = false;
    return *this;
}

JsonWriter& JsonWriter::close(char bracket) {
    result_ += bracket;
    needsComma_ = true;
    return *this;
}

void JsonWriter::separate() {
    if (needsComma_) {
        result_ += ',';
    }
    needsComma_ = true;
}

void JsonWriter::appendText(std::string_view value) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    result_ += '"';
    while (!value.empty()) {
        const std::size_t length = decodeCharacter(value).length;
        const char first = value.front();
        if (length == 0) {
            result_ += replacement;
        } else if (first == '"' || first == '\\') {
            result_ += '\\';
            result_ += first;
        } else if (length == 1 && (static_cast<unsigned char>(first) < 0x20 || first == '\x7F')) {
            result_ += "\\u00";
            result_ += hexadecimalText(value.substr(0, 1));
        } else {
            result_ += value.substr(0, length);
        }
        value.remove_prefix(length == 0 ? 1 : length);
    }
    result_ += '"';
}

} // namespace corvane
