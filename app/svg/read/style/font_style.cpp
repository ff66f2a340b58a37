#include "app/svg/read/style/font_style.h"

#include "app/artwork/text/characters.h"
#include "app/svg/read/values/number.h"
#include "app/svg/text/font_names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace corvane {

namespace {

/// How much larger each size of CSS is than the one below it.
constexpr double sizeStep = 1.2;

std::optional<double> parseFontSize(std::string_view text, const LengthContext& lengths) {
    constexpr auto keywords =
        std::to_array<std::pair<std::string_view, double>>({{"xx-small", 9},
                                                            {"x-small", 10},
                                                            {"small", 13},
                                                            {"medium", 16},
                                                            {"large", 18},
                                                            {"x-large", 24},
                                                            {"xx-large", 32}});
    for (const auto& [name, size] : keywords) {
        if (text == name) {
            return size;
        }
    }
    if (text == "larger" || text == "smaller") {
        return text == "larger" ? lengths.fontSize * sizeStep : lengths.fontSize / sizeStep;
    }
    LengthContext ofFont = lengths; // a percentage is of the font around
    ofFont.viewport = {lengths.fontSize, lengths.fontSize};
    const auto size = parseLength(text, Axis::x, ofFont);
    return size && *size >= 0 ? size : std::nullopt;
}

std::optional<std::int16_t> parseWeight(std::string_view text, std::int16_t outer) {
    if (text == "normal") {
        return 400;
    }
    if (text == "bold") {
        return 700;
    }
    if (text == "bolder") {
        return outer < 400 ? 400 : outer < 600 ? 700 : 900;
    }
    if (text == "lighter") {
        return outer < 600 ? 100 : outer < 800 ? 400 : 700;
    }
    TextCursor cursor(text);
    double weight = 0;
    if (!cursor.number(weight) || !cursor.atEnd()) {
        return std::nullopt;
    }
    return static_cast<std::int16_t>(std::clamp(weight, 100.0, 900.0));
}

bool isSlanted(std::string_view text) {
    return text.starts_with("italic") || text.starts_with("oblique");
}

bool isStretched(std::string_view text) {
    return text.ends_with("condensed") || text.ends_with("expanded");
}

std::string_view takeWord(TextCursor& cursor) {
    const std::string_view before = cursor.rest();
    while (!cursor.atEnd() && !isBlank(cursor.peek()) && cursor.peek() != '/') {
        cursor.skip();
    }
    return cursor.since(before);
}

/// "italic bold 12px/1.2 Arial, sans-serif": all up to the size may be missing.
void readShorthand(std::string_view text, ComputedStyle& style, const LengthContext& lengths,
                   Tally& tally) {
    style.italic = false;
    style.fontWeight = 400;
    TextCursor cursor(text);
    for (cursor.skipBlanks(); !cursor.atEnd(); cursor.skipBlanks()) {
        const std::string_view word = takeWord(cursor);
        if (word.empty()) {
            return; // a slash in front of the size
        }
        if (word == "normal") {
            continue; // of whatever is not said
        }
        if (isSlanted(word)) {
            style.italic = true;
        } else if (isStretched(word)) {
            tally.add("font-stretch");
        } else if (word == "small-caps") {
            tally.add("font-variant");
        } else if (const auto weight = parseWeight(word, style.fontWeight)) {
            style.fontWeight = *weight;
        } else if (const auto number = parseFontSize(word, lengths)) {
            style.fontSize = *number;
            cursor.skipBlanks();
            if (cursor.take('/')) {
                cursor.skipBlanks();
                takeWord(cursor); // the height of lines
            }
            style.families = trimmed(cursor.rest());
            return;
        }
    }
}

/// What an escape means; `text` begins behind its backslash.
void takeEscape(std::string_view& text, std::string& into) {
    constexpr std::size_t mostDigits = 6;
    std::uint32_t code = 0;
    const char* const end = text.data() + std::min(text.size(), mostDigits);
    const auto read = std::from_chars(text.data(), end, code, 16);
    if (read.ec != std::errc() || code == 0) {
        into += text.front();
        text.remove_prefix(1);
        return;
    }
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    text.remove_prefix(text.starts_with(' ') ? 1 : 0);
    appendCharacter(into, code);
}

/// One name of a list, whose escapes are undone.
FamilyName parseFamily(std::string_view text) {
    FamilyName family;
    const bool quoted = text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
                        text.back() == text.front();
    if (quoted) {
        text = text.substr(1, text.size() - 2);
    }
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        if (c == '\\' && !text.empty()) {
            takeEscape(text, family.name);
        } else {
            family.name += c;
        }
    }
    family.isKeyword = !quoted && isGenericName(family.name);
    return family;
}

} // namespace

void readFont(ComputedStyle& style, const Declared& declared, const LengthContext& lengths,
              Tally& tally) {
    if (const auto text = valueOf(declared, Attribute::font); !text.empty()) {
        readShorthand(text, style, lengths, tally);
    }
    if (const auto text = valueOf(declared, Attribute::fontSize); !text.empty()) {
        style.fontSize = parseFontSize(text, lengths).value_or(style.fontSize);
    }
    if (const auto text = valueOf(declared, Attribute::fontFamily); !text.empty()) {
        style.families = text;
    }
    if (const auto text = valueOf(declared, Attribute::fontStyle); !text.empty()) {
        style.italic = isSlanted(text);
    }
    if (const auto text = valueOf(declared, Attribute::fontWeight); !text.empty()) {
        style.fontWeight = parseWeight(text, style.fontWeight).value_or(style.fontWeight);
    }
}

std::vector<FamilyName> parseFamilies(std::string_view text) {
    std::vector<FamilyName> families;
    for (TextCursor cursor(text); !cursor.atEnd();) {
        const std::string_view name = trimmed(takeOutsideBrackets(cursor, ','));
        if (!name.empty()) {
            families.push_back(parseFamily(name));
        }
    }
    return families;
}

} // namespace corvane
