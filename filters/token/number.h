// Numbers in every form that real files hold.
#pragma once

#include "host/artwork.h"

#include <cstdint>

namespace corvane {

struct Number {
    bool real = false;        ///< a point was seen; otherwise it is an integer
    std::int32_t integer = 0; ///< of an integer; saturated where 32 bits are too few
    Fixed fixed = 0;          ///< of a real: 16.16, saturated, rounded to nearest
    double exact = 0;         ///< the value as written, rounded once
};

/// Reads the number at `begin`, which is a digit, a sign or a point; where it ends. Takes what
/// readers take: "4.", "-.5", "+3", "--5" (as -5), "5-3" (as 5), a lone sign or point (as 0), any
/// number of digits. It ends at a letter or at a second point, which belong to the next token. The
/// caller guarantees a byte behind the text that no number holds.
const char* readNumber(const char* begin, Number& number);

} // namespace corvane
