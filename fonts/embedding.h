// Whether a font may go into a document, or into a font that is made of its glyphs.
#pragma once

#include <cstdint>

namespace corvane {

/// OpenType, "OS/2": what the licence permits. Bits that forbid count alone; of several that permit
/// something the most permissive does.
inline bool permitsSubsets(std::uint16_t type) {
    constexpr unsigned restricted = 0x0002;
    constexpr unsigned permitted = 0x000C;
    constexpr unsigned wholeOnly = 0x0100;
    constexpr unsigned picturesOnly = 0x0200;
    const bool isRestricted = (type & restricted) != 0 && (type & permitted) == 0;
    return !isRestricted && (type & (wholeOnly | picturesOnly)) == 0;
}

} // namespace corvane
