// Lists of numbers with blanks or commas between them.
#pragma once

#include "app/svg/read/values/number.h"

#include <span>
#include <string_view>

namespace corvane {

/// Reads as many numbers as there is room for; false where the text is not exactly that.
inline bool parseNumbers(std::string_view text, std::span<double> into) {
    TextCursor cursor(text);
    for (double& number : into) {
        cursor.skipSeparator();
        if (!cursor.number(number)) {
            return false;
        }
    }
    cursor.skipBlanks();
    return cursor.atEnd();
}

} // namespace corvane
