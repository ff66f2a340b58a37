// Doubles as the artwork's 16.16 numbers.
#pragma once

#include "host/artwork.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace corvane {

/// To the nearest 16.16 number, in 64 bits; what is not a number counts as 0, what is beyond 2^46
/// is cut.
inline std::int64_t wideFixed(double value) {
    constexpr double largest = 0x1p46;
    const double scaled = value * fixedOne;
    if (!(std::abs(scaled) < largest)) {
        return std::isnan(scaled) ? 0 : static_cast<std::int64_t>(scaled < 0 ? -largest : largest);
    }
    return static_cast<std::int64_t>(scaled + (scaled < 0 ? -.5 : .5));
}

inline bool fitsFixed(std::int64_t wide) {
    return wide >= std::numeric_limits<Fixed>::min() && wide <= std::numeric_limits<Fixed>::max();
}

} // namespace corvane
