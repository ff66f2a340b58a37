#include "toolbox/fonts/font_names.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr std::array<std::string_view, 29> styleWords = {
    "regular", "normal",     "roman",      "book",      "medium",    "semibold", "demibold", "regu",
    "medi",    "demi",       "bold",       "extrabold", "ultrabold", "black",    "heavy",    "thin",
    "light",   "extralight", "ultralight", "italic",    "oblique",   "ital",     "obl",      "std",
    "psmt",    "mt",         "ps",         "extra",     "ultra"};

struct WeightWord {
    std::string_view word;
    std::int32_t weight;
};

/// Words that hold others come first.
constexpr std::array<WeightWord, 14> weightWords = {{{"extralight", 200},
                                                     {"ultralight", 200},
                                                     {"semibold", 600},
                                                     {"demibold", 600},
                                                     {"extrabold", 800},
                                                     {"ultrabold", 800},
                                                     {"bold", 700},
                                                     {"black", 900},
                                                     {"heavy", 900},
                                                     {"demi", 600},
                                                     {"light", 300},
                                                     {"medium", 500},
                                                     {"medi", 700}, // of URW
                                                     {"thin", 100}}};

struct StandIn {
    std::string_view stem;
    std::string_view family;
};

constexpr std::array<StandIn, 40> standIns = {{{"arial", "nimbussans"},
                                               {"arialnarrow", "nimbussansnarrow"},
                                               {"arialunicodems", "nimbussans"},
                                               {"avantgarde", "urwgothic"},
                                               {"avantgardegothic", "urwgothic"},
                                               {"bookantiqua", "p052"},
                                               {"bookman", "urwbookman"},
                                               {"bookmanoldstyle", "urwbookman"},
                                               {"centurygothic", "urwgothic"},
                                               {"centuryschl", "c059"},
                                               {"centuryschoolbook", "c059"},
                                               {"courier", "nimbusmono"},
                                               {"couriernew", "nimbusmono"},
                                               {"dingbats", "d050000l"},
                                               {"helvetica", "nimbussans"},
                                               {"helveticacondensed", "nimbussansnarrow"},
                                               {"helveticanarrow", "nimbussansnarrow"},
                                               {"itcavantgarde", "urwgothic"},
                                               {"itcavantgardegothic", "urwgothic"},
                                               {"itcbookman", "urwbookman"},
                                               {"itczapfchancery", "z003"},
                                               {"itczapfdingbats", "d050000l"},
                                               {"monotypesorts", "d050000l"},
                                               {"newcenturyschlbk", "c059"},
                                               {"newcenturyschoolbook", "c059"},
                                               {"nimbusmonl", "nimbusmono"},
                                               {"nimbusmonol", "nimbusmono"},
                                               {"nimbusromanno9l", "nimbus"},
                                               {"nimbusromno9l", "nimbus"},
                                               {"nimbussanl", "nimbussans"},
                                               {"nimbussansl", "nimbussans"},
                                               {"palatino", "p052"},
                                               {"palatinolinotype", "p052"},
                                               {"symbol", "standardsymbols"},
                                               {"symbolneu", "standardsymbols"},
                                               {"times", "nimbus"},
                                               {"timesnew", "nimbus"},
                                               {"urwpalladiol", "p052"},
                                               {"zapfchancery", "z003"},
                                               {"zapfdingbats", "d050000l"}}};
static_assert(std::ranges::is_sorted(standIns, {}, &StandIn::stem));

constexpr char smallLetter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Small letters, digits, and bytes of other alphabets.
std::string folded(std::string_view name) {
    std::string text;
    for (const char c : withoutSubsetTag(name)) {
        const char letter = smallLetter(c);
        if ((letter >= 'a' && letter <= 'z') || (c >= '0' && c <= '9') ||
            static_cast<unsigned char>(c) >= 0x80) {
            text += letter;
        }
    }
    return text;
}

} // namespace

std::string_view withoutSubsetTag(std::string_view name) {
    constexpr std::size_t letters = 6;
    const bool hasTag =
        name.size() > letters + 1 && name[letters] == '+' &&
        std::ranges::all_of(name.substr(0, letters), [](char c) { return c >= 'A' && c <= 'Z'; });
    return hasTag ? name.substr(letters + 1) : name;
}

std::string fontStem(std::string_view name) {
    std::string stem = folded(name);
    for (;;) {
        const auto word = std::ranges::find_if(styleWords, [&](std::string_view style) {
            return stem.size() > style.size() && stem.ends_with(style);
        });
        if (word == styleWords.end()) {
            return stem;
        }
        stem.resize(stem.size() - word->size());
    }
}

FontStyle fontStyle(std::string_view name) {
    const std::string text = folded(name);
    const std::string_view style = std::string_view(text).substr(fontStem(name).size());
    const auto says = [&](std::string_view word) { return style.find(word) != style.npos; };
    FontStyle result;
    const auto found =
        std::ranges::find_if(weightWords, [&](const WeightWord& row) { return says(row.word); });
    if (found != weightWords.end()) {
        result.weight = found->weight;
    }
    result.isItalic = says("ital") || says("obl");
    return result;
}

std::string_view kindStem(std::string_view stem) {
    constexpr std::array<StandIn, 18> beginnings = {{{"cmtt", "nimbusmono"},
                                                     {"cmss", "nimbussans"},
                                                     {"cm", "nimbus"},
                                                     {"lmmono", "nimbusmono"},
                                                     {"lmsans", "nimbussans"},
                                                     {"lm", "nimbus"},
                                                     {"sfrm", "nimbus"},
                                                     {"cambria", "nimbus"},
                                                     {"constantia", "nimbus"},
                                                     {"garamond", "nimbus"},
                                                     {"georgia", "nimbus"},
                                                     {"liberationserif", "nimbus"},
                                                     {"minion", "nimbus"},
                                                     {"utopia", "nimbus"},
                                                     {"consolas", "nimbusmono"},
                                                     {"liberationmono", "nimbusmono"},
                                                     {"lucidaconsole", "nimbusmono"},
                                                     {"calibri", "nimbussans"}}};
    const auto* const found = std::ranges::find_if(
        beginnings, [&](const StandIn& row) { return stem.starts_with(row.stem); });
    return found == beginnings.end() ? std::string_view() : found->family;
}

std::string_view standInStem(std::string_view stem) {
    const auto found = std::ranges::lower_bound(standIns, stem, {}, &StandIn::stem);
    return found != standIns.end() && found->stem == stem ? found->family : std::string_view();
}

} // namespace corvane
