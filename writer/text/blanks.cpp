#include "writer/text/blanks.h"

#include "fonts/order/text_order.h"
#include "reader/font/characters.h"

namespace corvane {

bool isUnseen(char32_t character) {
    return isFormat(character) || isBlankText({&character, 1});
}

/// Widths of the blanks of typesetters: Unicode, 6.2 "Space Characters".
double blankAdvance(char32_t character, double space) {
    if (isFormat(character)) {
        return 0;
    }
    switch (character) {
    case 0x2000:
    case 0x2002:
    case 0x2007: // a digit
        return 1.0 / 2;
    case 0x2001:
    case 0x2003:
    case 0x3000:
        return 1;
    case 0x2004:
        return 1.0 / 3;
    case 0x2005:
        return 1.0 / 4;
    case 0x2006:
        return 1.0 / 6;
    case 0x2009:
    case 0x202F:
        return 1.0 / 5;
    case 0x200A:
        return 1.0 / 8;
    case 0x205F:
        return 4.0 / 18;
    case 0x2028:
    case 0x2029:
        return 0;
    default:
        return space;
    }
}

} // namespace corvane
