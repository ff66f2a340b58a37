#include "app/svg/text/font_names.h"

#include "app/artwork/text/fonts.h"
#include "app/svg/markup.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace corvane {

namespace {

/// In the order of `GenericFamily`, and then those that count as none of them.
constexpr std::array<std::string_view, 6> generics{"sans-serif", "serif",   "monospace",
                                                   "cursive",    "fantasy", "system-ui"};

bool isLetterOrHyphen(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-';
}

/// Needs no quotes.
bool isWord(std::string_view name) {
    return name.front() != '-' && std::ranges::all_of(name, isLetterOrHyphen);
}

} // namespace

std::string familyOfFace(std::string_view family, std::int32_t face) {
    std::string name(family);
    if (face != 0) {
        name += ' ' + std::to_string(face + 1);
    }
    return name;
}

FamilyFace faceOfFamily(std::string_view family) {
    const std::size_t blank = family.rfind(' ');
    if (!family.starts_with(pageFamilyPrefix) || blank < pageFamilyPrefix.size()) {
        return {family, 0};
    }
    const std::string_view digits = family.substr(blank + 1);
    const char* const end = digits.data() + digits.size();
    std::int32_t number = 0;
    const auto read = std::from_chars(digits.data(), end, number);
    const bool isFace = read.ec == std::errc() && read.ptr == end && digits.front() != '0' &&
                        number > 1 && number <= FontTable::mostFaces;
    return isFace ? FamilyFace{family.substr(0, blank), number - 1} : FamilyFace{family, 0};
}

void writeFamily(TextOutput& out, std::string_view family) {
    if (isWord(family)) {
        out.text(family);
        return;
    }
    out.text("'");
    while (!family.empty()) {
        const std::size_t plain = std::min(family.find_first_of("'\\"), family.size());
        writeEscaped(out, family.substr(0, plain));
        family.remove_prefix(plain);
        if (!family.empty()) {
            out.text(family.front() == '\'' ? "\\27 " : "\\5c ");
            family.remove_prefix(1);
        }
    }
    out.text("'");
}

void writeFamilies(TextOutput& out, const FontFacts& font, std::int32_t face) {
    writeFamily(out, familyOfFace(font.family, face));
    if (!font.realFamily.empty()) {
        out.text(",");
        writeFamily(out, font.realFamily);
    }
    if (const std::string_view generic = genericName(font.generic); font.family != generic) {
        out.text(",");
        out.text(generic);
    }
}

std::string_view genericName(GenericFamily generic) {
    return generics[static_cast<std::size_t>(generic)];
}

bool isGenericName(std::string_view name) {
    return std::ranges::find(generics, name) != generics.end();
}

} // namespace corvane
