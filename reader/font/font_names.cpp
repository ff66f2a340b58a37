#include "reader/font/font_names.h"

#include "reader/font/characters.h"
#include "reader/font/font_entries.h"
#include "runtime/digest.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace corvane {

namespace {

/// Names are cut there; real ones stay below 64 bytes.
constexpr std::size_t longestName = 64;

/// What families of the page's own fonts begin with.
constexpr std::string_view ownPrefix = "Corvane ";

/// Flags of a font descriptor; PDF Reference, 5.7.1.
constexpr std::uint32_t flagFixedPitch = 1U << 0;
constexpr std::uint32_t flagSerif = 1U << 1;
constexpr std::uint32_t flagItalic = 1U << 6;
constexpr std::uint32_t flagForceBold = 1U << 18;

/// Stems of bold faces, in 1/1000 em: regular ones stay below 110.
constexpr double boldStem = 140;

bool isLower(char c) {
    return c >= 'a' && c <= 'z';
}
bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return isUpper(c) ? static_cast<char>(c | 0x20) : c; });
    return lower;
}

struct StyleWord {
    std::string_view word;
    std::int16_t weight; ///< 0: says nothing of it
    bool italic;
};

/// Longer ones before those that they hold.
constexpr StyleWord styleWords[] = {
    {"extrabold", 800, false},  {"ultrabold", 800, false},
    {"semibold", 600, false},   {"demibold", 600, false},
    {"extralight", 200, false}, {"ultralight", 200, false},
    {"regular", 400, false},    {"medium", 500, false},
    {"oblique", 0, true},       {"italic", 0, true},
    {"black", 900, false},      {"heavy", 900, false},
    {"light", 300, false},      {"roman", 400, false},
    {"normal", 400, false},     {"slanted", 0, true},
    {"bold", 700, false},       {"book", 400, false},
    {"demi", 600, false},       {"thin", 100, false},
    {"obl", 0, true},           {"ital", 0, true},
    {"psmt", 0, false},         {"ps", 0, false},
    {"mt", 0, false},           {"it", 0, true},
};

void takeStyle(NameParts& parts, const StyleWord& style) {
    if (style.weight != 0) {
        parts.weight = style.weight;
    }
    parts.italic = parts.italic || style.italic;
}

/// Reads the style behind "-" or ",", word by word; false where it holds anything else, which then
/// belongs to the family.
bool readStyle(NameParts& parts, std::string_view written) {
    std::string style = lowerCase(written);
    std::erase_if(style, [](char c) { return c == '-' || c == ',' || c == ' ' || c == '_'; });
    std::string_view left = style;
    NameParts read = parts;
    while (!left.empty()) {
        const auto* const word = std::ranges::find_if(
            styleWords, [&](const StyleWord& known) { return left.starts_with(known.word); });
        if (word == std::end(styleWords)) {
            return false;
        }
        takeStyle(read, *word);
        left.remove_prefix(word->word.size());
    }
    parts = std::move(read);
    return true;
}

/// "MSGothic" is "MS Gothic", "TimesNewRoman" is "Times New Roman".
std::string spacedName(std::string_view name) {
    // Names of their own that have a capital letter inside.
    constexpr std::array<std::string_view, 3> whole = {"DejaVu", "MathJax", "LaTeX"};
    std::string spaced;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool afterLower = i > 0 && isLower(name[i - 1]) && isUpper(name[i]);
        const bool afterUpper = i > 0 && isUpper(name[i - 1]) && isUpper(name[i]) &&
                                i + 3 < name.size() && isLower(name[i + 1]) &&
                                isLower(name[i + 2]) && isLower(name[i + 3]);
        const bool isInside = std::ranges::any_of(whole, [&](std::string_view word) {
            const std::size_t at = name.find(word);
            return at != std::string_view::npos && i > at && i < at + word.size();
        });
        if ((afterLower || afterUpper) && !isInside) {
            spaced.push_back(' ');
        }
        spaced.push_back(name[i] == '_' || name[i] == ',' ? ' ' : name[i]);
    }
    return spaced;
}

std::string_view withoutEnd(std::string_view text, std::string_view end) {
    const bool ends = text.size() > end.size() + 2 && text.ends_with(end);
    return ends ? text.substr(0, text.size() - end.size()) : text;
}

/// Letters, digits, "-" and blanks, as they can stand in any style sheet.
std::string plainName(std::string_view name) {
    std::string plain;
    for (const char c : name.substr(0, longestName)) {
        const bool isPlain = isLower(c) || isUpper(c) || isDigit(c) || c == '-';
        if (isPlain) {
            plain.push_back(c);
        } else if (!plain.empty() && plain.back() != ' ') {
            plain.push_back(' ');
        }
    }
    while (plain.ends_with(' ')) {
        plain.pop_back();
    }
    if (plain.empty()) {
        return "Font";
    }
    // A number behind a blank would be that of a face.
    const std::size_t last = plain.find_last_not_of("0123456789");
    if (last == std::string::npos) {
        return "Font-" + plain;
    }
    if (plain[last] == ' ' && last + 1 < plain.size()) {
        plain[last] = '-';
    }
    return plain;
}

void feed(Digest& digest, std::string_view text) {
    digest.feed(std::as_bytes(std::span(text)));
}

void feed(Digest& digest, std::int64_t number) {
    feed(digest, std::to_string(number) + " ");
}

/// What is written of the object, references not followed.
void feed(Digest& digest, const Object& object, int depth) {
    feed(digest, static_cast<std::int64_t>(object.type));
    switch (object.type) {
    case ObjectType::literal:
        return feed(digest, literalObject(object));
    case ObjectType::text:
    case ObjectType::block:
        return feed(digest, stringOf(object));
    case ObjectType::reference:
    case ObjectType::array:
    case ObjectType::dictionary:
        if (depth > 0) {
            for (const Object& element : elementsObject(object)) {
                feed(digest, element, depth - 1);
            }
        }
        return;
    case ObjectType::boolean:
    case ObjectType::integer:
    case ObjectType::fixed:
        return feed(digest, std::int64_t{object.data});
    default:
        return;
    }
}

std::string sixDigits(std::uint64_t value) {
    std::string digits;
    for (int shift = 20; shift >= 0; shift -= 4) {
        digits.push_back("0123456789ABCDEF"[value >> shift & 0xF]);
    }
    return digits;
}

std::string ownFamily(const Object& font, std::string_view baseFont, std::int32_t number) {
    constexpr int depthOfEntries = 4;
    Digest digest;
    feed(digest, std::int64_t{number});
    feed(digest, baseFont);
    if (number == 0) {
        feed(digest, font, depthOfEntries);
    }
    return std::string(ownPrefix) + sixDigits(digest.value()) + " " +
           plainName(withoutTag(baseFont));
}

GenericFamily genericOf(std::string_view family, std::optional<std::uint32_t> flags) {
    const std::string name = lowerCase(family);
    const auto has = [&](std::initializer_list<std::string_view> words) {
        return std::ranges::any_of(
            words, [&](std::string_view word) { return name.find(word) != std::string::npos; });
    };
    if ((flags && (*flags & flagFixedPitch) != 0) ||
        has({"courier", "mono", "typewriter", "consol"})) {
        return GenericFamily::monospace;
    }
    if (has({"sans", "helvetica", "arial"})) {
        return GenericFamily::sansSerif;
    }
    // Many files leave the flag out; few set it wrongly.
    const bool isSerif = (flags && (*flags & flagSerif) != 0) ||
                         has({"times", "roman", "serif", "georgia", "garamond", "palatino",
                              "bookman", "schoolbook", "mincho", "ming", "song"});
    return isSerif ? GenericFamily::serif : GenericFamily::sansSerif;
}

std::int16_t weightOf(DocumentCache& cache, const Object& descriptor, std::uint32_t flags,
                      std::int16_t named) {
    const double stated = numberEntry(cache, descriptor, "FontWeight").value_or(0);
    if (named != 0 && named != 400) {
        return named;
    }
    if (stated >= 100 && stated <= 900) {
        return static_cast<std::int16_t>(100 * static_cast<int>(stated / 100));
    }
    const bool isBold = (flags & flagForceBold) != 0 ||
                        numberEntry(cache, descriptor, "StemV").value_or(0) >= boldStem;
    return named == 0 && isBold ? 700 : 400;
}

} // namespace

FontFacts FontNames::facts() const {
    return {.family = family,
            .realFamily = realFamily,
            .generic = generic,
            .weight = weight,
            .italic = italic,
            .isPageFont = true};
}

std::string_view withoutTag(std::string_view baseFont) {
    constexpr std::size_t tag = 6;
    const bool hasTag = baseFont.size() > tag + 1 && baseFont[tag] == '+' &&
                        std::ranges::all_of(baseFont.substr(0, tag), isUpper);
    return hasTag ? baseFont.substr(tag + 1) : baseFont;
}

NameParts partsOfName(std::string_view baseFont) {
    std::string_view name = withoutTag(baseFont).substr(0, longestName);
    name = name.substr(0, name.find('_', 1)); // what follows are values of a Multiple Master font
    NameParts parts;
    const std::size_t comma = name.find_last_of(",-");
    if (comma != std::string_view::npos && comma > 0 && readStyle(parts, name.substr(comma + 1))) {
        name = name.substr(0, comma);
    } else {
        name = withoutEnd(name, "PSMT");
        // "ArialBold": a style that nothing sets apart, at the end, with a capital letter. "Roman"
        // and "Book" are part of the family there.
        for (std::size_t at = name.size(); at-- > 2;) {
            const std::string_view end = name.substr(at);
            if (isUpper(name[at]) && isLower(name[at - 1]) && !end.starts_with("Roman") &&
                !end.starts_with("Book") && readStyle(parts, end)) {
                name = name.substr(0, at);
            }
        }
    }
    name = withoutEnd(withoutEnd(withoutEnd(name, "PSMT"), "MT"), "PS");
    std::string family = spacedName(name);
    std::ranges::replace(family, '-', ' ');
    parts.family = std::move(family);
    return parts;
}

FontNames namesOfFont(DocumentCache& cache, const Object& font, const Object& descriptor,
                      std::string_view baseFont, std::int32_t number) {
    const std::optional<double> statedFlags = numberEntry(cache, descriptor, "Flags");
    std::optional<std::uint32_t> flags;
    if (statedFlags) {
        flags = static_cast<std::uint32_t>(static_cast<std::int64_t>(*statedFlags));
    }
    const NameParts parts = partsOfName(baseFont);
    FontNames names;
    names.family = ownFamily(font, baseFont, number);
    names.realFamily = stringOf(entryOf(cache, descriptor, "FontFamily").get());
    const auto readable = fromUtf8(names.realFamily);
    if (!readable || !isText(*readable) || names.realFamily.size() > longestName) {
        names.realFamily = plainName(parts.family);
    }
    if (names.realFamily.starts_with(ownPrefix)) {
        names.realFamily[ownPrefix.size() - 1] = '-'; // else taken for a font with files
    }
    names.generic = genericOf(parts.family, flags);
    names.weight = weightOf(cache, descriptor, flags.value_or(0), parts.weight);
    names.italic = parts.italic || (flags.value_or(0) & flagItalic) != 0 ||
                   numberEntry(cache, descriptor, "ItalicAngle").value_or(0) != 0;
    return names;
}

} // namespace corvane
