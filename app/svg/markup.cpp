#include "app/svg/markup.h"

#include "app/artwork/text/characters.h"
#include "host/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace corvane {

namespace {

/// Deeper elements stand no further in: a page's text would be blanks otherwise.
constexpr std::size_t deepestIndent = 16;

/// XML 1.0, production 2, without the C1 controls, which it discourages.
bool allowed(char32_t code) {
    return isMarkupCharacter(code) || code == '\t' || code == '\n' || code == '\r';
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
        const Character character = decodeCharacter(text);
        if (character.length == 0) {
            const auto latin = static_cast<unsigned char>(text.front());
            if (allowed(latin)) {
                std::array<char, longestCharacter> bytes{};
                out.text({bytes.data(), putCharacter(latin, bytes)});
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
