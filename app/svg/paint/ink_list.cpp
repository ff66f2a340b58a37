#include "app/svg/paint/ink_list.h"

#include "app/artwork/text/characters.h"
#include "app/svg/markup.h"
#include "host/inks.h"
#include "host/utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

namespace corvane {

namespace {

/// Of a list that can be right: all inks, each byte of their names escaped, and their tints.
constexpr std::size_t longestList = mostInks * (3 * longestInkName + 64);

void appendEscaped(std::string& text, std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (const char letter : bytes) {
        const auto byte = static_cast<unsigned char>(letter);
        text += {'%', digits[byte >> 4U], digits[byte & 15U]};
    }
}

std::string escapedName(std::string_view name) {
    std::string text;
    bool isBlankNext = false; // a blank here is one that stays
    while (!name.empty()) {
        const Character character = decodeCharacter(name);
        const std::string_view bytes = name.substr(0, std::max<std::size_t>(character.length, 1));
        name.remove_prefix(bytes.size());
        const bool isBlank = character.code == ' ';
        const bool isPlain = character.length != 0 && character.code != '%' &&
                             character.code != ';' && isMarkupCharacter(character.code) &&
                             (!isBlank || (isBlankNext && !name.empty()));
        if (isPlain) {
            text += bytes;
        } else {
            appendEscaped(text, bytes);
        }
        isBlankNext = !isBlank;
    }
    return text;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Empty where it is no name.
std::string nameOf(std::string_view text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            name += text[i];
            continue;
        }
        std::uint8_t byte = 0;
        const std::string_view digits = text.substr(i + 1, 2);
        const auto [end, error] = std::from_chars(digits.begin(), digits.end(), byte, 16);
        if (error != std::errc() || digits.size() != 2 || end != digits.end()) {
            return {};
        }
        name += static_cast<char>(byte);
        i += digits.size();
    }
    return name.size() <= longestInkName ? name : std::string();
}

std::optional<Fixed> tintOf(std::string_view text) {
    double tint = 0;
    const auto [end, error] = std::from_chars(text.begin(), text.end(), tint);
    if (error != std::errc() || end != text.end() || std::isnan(tint)) {
        return std::nullopt;
    }
    return static_cast<Fixed>(std::lround(std::clamp(tint, 0.0, 1.0) * fixedOne));
}

/// Adds an ink and its tint; false where the text is no such thing.
bool addInk(InkMixture& mixture, std::string_view text) {
    const std::size_t blank = text.find_last_of(" \t\r\n");
    if (blank == std::string_view::npos) {
        return false;
    }
    const std::string name = nameOf(trimmed(text.substr(0, blank)));
    const std::optional<Fixed> tint = tintOf(text.substr(blank + 1));
    if (name.empty() || !tint || mixture.tints.size() == mostInks) {
        return false;
    }
    appendInkName(mixture.names, name);
    mixture.tints.push_back(*tint);
    return true;
}

} // namespace

void writeInkList(TextOutput& out, std::string_view name, const InkMixture& mixture) {
    out.text(" ");
    out.text(name);
    out.text("=\"");
    const std::vector<std::string_view> names = inkNames(mixture.names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        writeEscaped(out, (i == 0 ? "" : "; ") + escapedName(names[i]) + ' ');
        out.number(mixture.tints[i]);
    }
    out.text("\"");
}

std::optional<InkMixture> parseInkList(std::string_view text, const Colour& seen) {
    if (text.size() > longestList) {
        return std::nullopt;
    }
    InkMixture mixture{.names = {}, .tints = {}, .seen = seen};
    while (!text.empty()) {
        const std::string_view ink = text.substr(0, text.find(';'));
        text.remove_prefix(std::min(ink.size() + 1, text.size()));
        const std::string_view item = trimmed(ink);
        if (!item.empty() && !addInk(mixture, item)) {
            return std::nullopt;
        }
    }
    return mixture.tints.empty() ? std::nullopt : std::optional(std::move(mixture));
}

} // namespace corvane
