// Letters in another case, as `text-transform` asks for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

enum class LetterCase : std::uint8_t { asTyped, upper, lower, capitals };

/// The case that a value of `text-transform` names; `asTyped` for others.
LetterCase letterCaseOf(std::string_view value);

/// Puts the letters of a text into a case, one after the other.
class CaseChanger {
public:
    /// The character in UTF-8 as it is to be seen.
    std::string changed(char32_t character, LetterCase wanted);
    /// A blank begins a word.
    void blank() { isInWord_ = false; }

private:
    bool isInWord_ = false;
};

} // namespace corvane
