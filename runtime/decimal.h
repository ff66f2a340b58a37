// Decimal numbers at the front of a text: the one reader behind every number call.
#pragma once

#include "host/artwork.h"

#include <cstdint>
#include <string_view>

namespace corvane {

/// The pieces of [+-] digits [. digits], each of which may be missing.
struct Decimal {
    bool negative = false;
    std::string_view whole;
    std::string_view fraction;

    bool empty() const { return whole.empty() && fraction.empty(); }
};

/// Takes sign and digits off the front of `text`.
Decimal takeInteger(std::string_view& text);
/// Takes sign, digits and, where there is a point, the point and the digits behind it.
Decimal takeDecimal(std::string_view& text);

/// The whole part with its sign, wrapping in 32 bits.
std::int32_t integerFromDecimal(const Decimal& decimal);

/// The number as 16.16, saturated. `divide` makes the fraction of its first nine digits and the
/// power of ten; further digits do not change it.
Fixed fixedFromDecimal(const Decimal& decimal, Fixed (*divide)(std::int32_t, std::int32_t));

} // namespace corvane
