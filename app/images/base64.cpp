#include "app/images/base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace corvane {

namespace {

constexpr std::string_view digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t noDigit = 64;

constexpr std::array<std::uint8_t, 256> digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(noDigit);
    for (std::size_t i = 0; i < digits.size(); ++i) {
        values[static_cast<unsigned char>(digits[i])] = static_cast<std::uint8_t>(i);
    }
    return values;
}();

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool staysInPath(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           std::string_view("-._~/").find(c) != std::string_view::npos;
}

} // namespace

void Base64Writer::flush() {
    std::uint32_t three = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        three = three << 8 | (i < count_ ? std::to_integer<std::uint32_t>(held_[i]) : 0);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        text_ += i > count_ ? '=' : digits[three >> (18 - 6 * i) & 63];
    }
    count_ = 0;
}

void Base64Writer::add(std::span<const std::byte> bytes) {
    for (const std::byte byte : bytes) {
        held_[count_++] = byte;
        if (count_ == 3) {
            flush();
        }
    }
}

void Base64Writer::end() {
    if (count_ != 0) {
        flush();
    }
}

std::optional<std::vector<std::byte>> fromBase64(std::string_view text) {
    std::vector<std::byte> bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t held = 0;
    int bits = 0;
    std::size_t at = 0;
    for (; at < text.size() && text[at] != '='; ++at) {
        const std::uint8_t value = digitValues[static_cast<unsigned char>(text[at])];
        if (value == noDigit) {
            if (isBlank(text[at])) {
                continue;
            }
            return std::nullopt;
        }
        held = (held << 6 | value) & 0xFFFFFF;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes.push_back(static_cast<std::byte>(held >> bits & 0xFF));
        }
    }
    const bool endsWell =
        std::ranges::all_of(text.substr(at), [](char c) { return c == '=' || isBlank(c); });
    return endsWell ? std::optional(std::move(bytes)) : std::nullopt;
}

std::string escapedPath(std::string_view path) {
    constexpr std::string_view hexDigits = "0123456789ABCDEF";
    std::string text;
    for (const char c : path) {
        if (staysInPath(c)) {
            text += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            text += '%';
            text += hexDigits[byte >> 4];
            text += hexDigits[byte & 15];
        }
    }
    return text;
}

std::string withoutEscapes(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
        const int low = high >= 0 ? hexDigit(text[i + 2]) : -1;
        if (low >= 0) {
            bytes += static_cast<char>(high << 4 | low);
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

} // namespace corvane
