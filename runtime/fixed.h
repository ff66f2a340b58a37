// Arithmetic of 16.16 numbers. Nothing here is undefined: what does not fit saturates.
//
// Products and quotients go through single precision, as all files written so far expect: they
// carry 24 significant bits, so large ones lose their low bits.
#pragma once

#include "host/artwork.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace corvane {

namespace detail {

constexpr std::int32_t saturated(std::int64_t value) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

/// Toward zero; what is no number is 0.
template <class Real>
constexpr std::int32_t truncated(Real value) {
    constexpr Real bound = 2147483648.0F;
    if (value >= bound) {
        return std::numeric_limits<std::int32_t>::max();
    }
    if (value >= -bound) {
        return static_cast<std::int32_t>(value);
    }
    return value < -bound ? std::numeric_limits<std::int32_t>::min() : 0;
}

} // namespace detail

constexpr Fixed long2fixed(std::int32_t number) {
    return detail::saturated(std::int64_t{number} * fixedOne);
}

/// The nearest integer, halves upward.
constexpr std::int32_t fixed2long(Fixed value) {
    return static_cast<std::int32_t>((std::int64_t{value} + fixedOne / 2) >> 16);
}

constexpr Fixed negateFixed(Fixed value) {
    return detail::saturated(-std::int64_t{value});
}

constexpr Fixed absoluteFixed(Fixed value) {
    return value < 0 ? negateFixed(value) : value;
}

/// The integer below or at the value; not a 16.16 number.
constexpr std::int32_t floorFixed(Fixed value) {
    return value >> 16;
}

/// The integer above or at the value; not a 16.16 number.
constexpr std::int32_t ceilingFixed(Fixed value) {
    return static_cast<std::int32_t>((std::int64_t{value} + fixedOne - 1) >> 16);
}

constexpr Fixed multiplyFixed(Fixed a, Fixed b) {
    const float product = static_cast<float>(a) * static_cast<float>(b);
    return detail::truncated(product / 65536.0F);
}

/// By zero: the largest number of the dividend's sign, 0 for 0.
constexpr Fixed divideFixed(Fixed a, Fixed b) {
    if (b == 0) {
        return detail::saturated(std::int64_t{a} << 32);
    }
    const float quotient = static_cast<float>(a) / static_cast<float>(b);
    return detail::truncated(quotient * 65536.0F);
}

constexpr Fixed minimumFixed(Fixed a, Fixed b) {
    return std::min(a, b);
}

constexpr Fixed maximumFixed(Fixed a, Fixed b) {
    return std::max(a, b);
}

/// Rounded to nearest, halves away from zero; what is no number is 0.
constexpr Fixed fixedFromReal(double value) {
    const double scaled = value * 65536.0;
    return detail::truncated(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
}

constexpr double realFromFixed(Fixed value) {
    return value / 65536.0;
}

} // namespace corvane
