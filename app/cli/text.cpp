#include "app/cli/text.h"

#include "host/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace corvane {

namespace {

void appendHexadecimal(std::string& text, char byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    const unsigned value = static_cast<unsigned char>(byte);
    text += digits[value >> 4];
    text += digits[value & 0xF];
}

bool isPrintable(char32_t code) {
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool breaksLine = code == 0x2028 || code == 0x2029;
    const bool reorders = code == 0x061C || code == 0x200E || code == 0x200F ||
                          (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return !isControl && !breaksLine && !reorders;
}

bool isPlain(char c) {
    constexpr std::string_view signs = "_-./+,:@%=";
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return isLetter || (c >= '0' && c <= '9') || signs.find(c) != std::string_view::npos;
}

} // namespace

std::string terminalText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto [code, length] = decodeCharacter(bytes);
        const std::string_view character = bytes.substr(0, std::max<std::size_t>(length, 1));
        if (length != 0 && isPrintable(code)) {
            text += character;
        } else {
            for (const char byte : character) {
                text += "\\x";
                appendHexadecimal(text, byte);
            }
        }
        bytes.remove_prefix(character.size());
    }
    return text;
}

std::string hexadecimalText(std::string_view bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char byte : bytes) {
        appendHexadecimal(text, byte);
    }
    return text;
}

std::string_view trimmedLine(std::string_view line) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = line.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return line.substr(first, line.find_last_not_of(blanks) - first + 1);
}

std::string grouped(std::int64_t number) {
    std::string text = std::to_string(number);
    const std::size_t sign = number < 0 ? 1 : 0;
    for (std::size_t end = text.size(); end > sign + 3; end -= 3) {
        text.insert(end - 3, 1, ',');
    }
    return text;
}

std::string decimal(double number) {
    std::array<char, 400> digits{}; // a double has up to 309 before the point
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                   std::chars_format::fixed, 1);
    return {digits.data(), end.ptr};
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() ? "" : ", ") + part;
    }
    return text;
}

std::string counted(std::int64_t count, const std::string& noun) {
    return grouped(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string shellWord(std::string_view name) {
    // What begins with - would be an option.
    std::string path = (name.starts_with("-") ? "./" : "") + std::string(name);
    if (!path.empty() && std::ranges::all_of(path, isPlain)) {
        return path;
    }
    std::string word = "'";
    for (const char c : path) {
        word += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return word + "'";
}

} // namespace corvane
