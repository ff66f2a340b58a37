#include "app/svg/read/style/conditions.h"

#include "app/svg/read/style/declarations.h"
#include "app/svg/read/values/number.h"

#include <string_view>

namespace corvane {

namespace {

/// "en", or with a country behind it, in a list of languages.
bool holdsEnglish(std::string_view languages) {
    TextCursor list(languages);
    while (!list.atEnd()) {
        TextCursor language(trimmed(list.takeUntil(',')));
        const bool isEnglish = isWord(language.takeLetters(), "en");
        if (isEnglish && (language.atEnd() || language.peek() == '-')) {
            return true;
        }
    }
    return false;
}

} // namespace

bool isForUs(const Attributes& attributes) {
    const bool speaksEnglish = !attributes.has(Attribute::systemLanguage) ||
                               holdsEnglish(attributes[Attribute::systemLanguage]);
    return speaksEnglish && !attributes.has(Attribute::requiredExtensions);
}

} // namespace corvane
