#include "app/svg/read/text/letter_case.h"

#include "app/artwork/text/characters.h"

#include <clocale>
#include <cwctype>

namespace corvane {

namespace {

/// The tables of Unicode, whatever the person's locale is; null: none, and letters stay.
locale_t unicode() {
    static const locale_t tables = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return tables;
}

char32_t upper(char32_t character) {
    return static_cast<char32_t>(towupper_l(static_cast<wint_t>(character), unicode()));
}

char32_t lower(char32_t character) {
    return static_cast<char32_t>(towlower_l(static_cast<wint_t>(character), unicode()));
}

bool isApostrophe(char32_t character) {
    return character == '\'' || character == 0x2019;
}

} // namespace

LetterCase letterCaseOf(std::string_view value) {
    return value == "uppercase"    ? LetterCase::upper
           : value == "lowercase"  ? LetterCase::lower
           : value == "capitalize" ? LetterCase::capitals
                                   : LetterCase::asTyped;
}

std::string CaseChanger::changed(char32_t character, LetterCase wanted) {
    constexpr char32_t sharpS = 0xDF;
    std::string text;
    if (unicode() == nullptr) {
        wanted = LetterCase::asTyped;
    }
    const bool begins = !isInWord_;
    if (wanted == LetterCase::capitals && !isApostrophe(character)) {
        isInWord_ = iswalnum_l(static_cast<wint_t>(character), unicode()) != 0;
    }
    const bool isUpper = wanted == LetterCase::upper || (wanted == LetterCase::capitals && begins);
    if (wanted == LetterCase::upper && character == sharpS) {
        return "SS"; // it has no capital of its own that people use
    }
    appendCharacter(text, isUpper                       ? upper(character)
                          : wanted == LetterCase::lower ? lower(character)
                                                        : character);
    return text;
}

} // namespace corvane
