// Real numbers that keep more than 16.16 of what a file says.
//
// The field that holds the size of other objects holds how far a real number is from its 16.16
// value, in 1/2^32. Objects that are made in another way have 0 there.
#pragma once

#include "objects/object.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace corvane {

/// A real number of that 16.16 value, which is `exact` rounded. One past the range of 16.16 becomes
/// the integer next to it.
inline Object preciseObject(Fixed value, double exact) {
    constexpr double past = 32768;
    constexpr double longest = 2147483647;
    constexpr double parts = 4294967296;
    const double size = std::abs(exact);
    if (size >= past && size <= longest) {
        const auto whole = static_cast<std::int32_t>(std::lround(exact));
        return {ObjectType::integer, 0, std::bit_cast<std::uint32_t>(whole)};
    }
    const double rest = (exact - value / static_cast<double>(fixedOne)) * parts;
    const bool fits = rest > INT16_MIN && rest < INT16_MAX;
    const auto kept = fits ? static_cast<std::int16_t>(std::lrint(rest)) : std::int16_t{};
    return {ObjectType::fixed, kept, std::bit_cast<std::uint32_t>(value)};
}

/// The value of an integer or a real number; anything else raises `range`.
inline double realValue(const Object& number) {
    constexpr double parts = 4294967296;
    return typeObject(number) == ObjectType::integer
               ? integerObject(number)
               : fixedObject(number) / static_cast<double>(fixedOne) + number.size / parts;
}

} // namespace corvane
