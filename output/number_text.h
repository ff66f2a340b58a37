// Numbers as a written file says them, into a buffer of the caller; no space behind.
#pragma once

#include "host/artwork.h"
#include "host/number.h"
#include "runtime/rules.h"

#include <cstddef>

namespace corvane {

/// Room that `writeReal` needs: sign and point, the 309 digits of the largest or the 324 zeros and
/// 17 digits of the smallest double.
inline constexpr std::size_t realRoom = 352;

/// The whole part and, where there is a fraction, a point and exactly four digits of it, cut off
/// and not rounded. Writes at most `numberRoom` characters; the end of the text.
char* writeCutFixed(char* out, Fixed value);

/// A 16.16 number as the profile has it; at most `numberRoom` characters, the end of the text.
inline char* writeFixed(char* out, Fixed value) {
    return rules().shortestNumbers ? writeNumber(out, value) : writeCutFixed(out, value);
}

/// The shortest decimal without exponent that reads back as the same double; at most `realRoom`
/// characters, the end of the text. What is no number, or infinite, raises `type`.
char* writeReal(char* out, double value);

} // namespace corvane
