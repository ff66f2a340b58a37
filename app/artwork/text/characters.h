// Which characters text in markup may hold.
#pragma once

#include "host/utf8.h"

namespace corvane {

/// Any character but control characters and those that no XML can hold.
constexpr bool isMarkupCharacter(char32_t code) {
    return code >= 0x20 && !(code >= 0x7F && code <= 0x9F) && code != 0xFFFE && code != 0xFFFF;
}

/// UTF-8 of such characters alone.
bool isPlainText(std::string_view text);

} // namespace corvane
