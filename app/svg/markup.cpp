#include "app/svg/markup.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace corvane {

namespace {

/// Deeper elements stand no further in: a page's text would be blanks otherwise.
constexpr std::size_t deepestIndent = 16;

struct Character {
    char32_t code = 0;
    std::size_t length = 0; ///< bytes; 0: not UTF-8
};

/// The character that starts `text`, which is not empty.
Character decode(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80) {
        return {first, 1};
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) {
        return {};
    }
    char32_t code = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80) {
            return {};
        }
        code = code << 6 | (byte(i) & 0x3FU);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest[length] || code > 0x10FFFF || surrogate) {
        return {};
    }
    return {code, length};
}

/// XML 1.0, production 2, without the C1 controls, which it discourages.
bool allowed(char32_t code) {
    if (code < 0x20) {
        return code == '\t' || code == '\n' || code == '\r';
    }
    return !(code >= 0x7F && code <= 0x9F) && code != 0xFFFE && code != 0xFFFF;
}

std::string_view entity(char32_t code) {
    switch (code) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return {};
    }
}

} // namespace

void writeEscaped(TextOutput& out, std::string_view text) {
    while (!text.empty()) {
        const Character character = decode(text);
        if (character.length == 0) {
            const auto latin = static_cast<unsigned char>(text.front());
            if (allowed(latin)) {
                const char two[] = {static_cast<char>(0xC0 | latin >> 6),
                                    static_cast<char>(0x80 | (latin & 0x3F))};
                out.text({two, 2});
            }
            text.remove_prefix(1);
            continue;
        }
        if (allowed(character.code)) {
            const std::string_view name = entity(character.code);
            out.text(name.empty() ? text.substr(0, character.length) : name);
        }
        text.remove_prefix(character.length);
    }
}

void writeAttribute(TextOutput& out, std::string_view name, std::string_view text) {
    out.text(" ");
    out.text(name);
    out.text("=\"");
    writeEscaped(out, text);
    out.text("\"");
}

void writePlainAttribute(TextOutput& out, std::string_view name, std::string_view text) {
    out.text(" ");
    out.text(name);
    out.text("=\"");
    out.text(text);
    out.text("\"");
}

void writeNumberAttribute(TextOutput& out, std::string_view name, std::int64_t fixed) {
    out.text(" ");
    out.text(name);
    out.text("=\"");
    out.number(fixed);
    out.text("\"");
}

void writeNumbersAttribute(TextOutput& out, std::string_view name,
                           std::span<const std::int64_t> values) {
    out.text(" ");
    out.text(name);
    out.text("=\"");
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i != 0) {
            out.text(" ");
        }
        out.number(values[i]);
    }
    out.text("\"");
}

void writeDouble(TextOutput& out, double number) {
    constexpr int digits = 12;
    std::array<char, 32> text;
    const double shown = number == 0 ? 0 : number; // without a sign
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), shown,
                                            std::chars_format::general, digits);
    std::string_view rest(text.data(), static_cast<std::size_t>(end - text.data()));
    if (rest.starts_with('-')) {
        out.text("-");
        rest.remove_prefix(1);
    }
    out.text(rest.starts_with("0.") ? rest.substr(1) : rest);
}

void writeDoubleAttribute(TextOutput& out, std::string_view name, double number) {
    out.text(" ");
    out.text(name);
    out.text("=\"");
    writeDouble(out, number);
    out.text("\"");
}

void writeIndent(TextOutput& out, int depth) {
    constexpr std::string_view line = "\n                ";
    static_assert(line.size() == deepestIndent + 1);
    out.text(line.substr(0, 1 + std::min(static_cast<std::size_t>(depth), deepestIndent)));
}

} // namespace corvane
