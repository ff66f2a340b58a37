// The levels of light that a colour with origin RGB was made from.
#pragma once

#include "host/artwork.h"

#include <algorithm>
#include <cstdint>

namespace corvane {

/// Levels of light in 16.16, 0 none and 1.0 full; may lie outside where amounts of ink do.
struct LightLevels {
    std::int64_t red = 0;
    std::int64_t green = 0;
    std::int64_t blue = 0;
};

/// The RGB that a process colour with origin RGB was made from. Exact, but where a level was
/// outside 0 to 1.0.
inline LightLevels lightLevels(const Colour& process) {
    const auto level = [&](int ink) {
        const std::int64_t taken = std::int64_t{process.component[ink]} + process.component[3];
        return fixedOne - std::min<std::int64_t>(fixedOne, taken);
    };
    return {level(0), level(1), level(2)};
}

} // namespace corvane
