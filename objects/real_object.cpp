#include "objects/real_object.h"

#include "runtime/fixed.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace corvane {

namespace {

constexpr double leftOverUnit = 1.0 / 65'536 / 65'536;

/// One less than 16 bits have: at 32,767 an object counts as one with more elements than that.
constexpr double mostLeftOver = 32'766;

/// Beyond it 16.16 saturates.
constexpr double fixedReach = 32'767.5;

} // namespace

Object objectOfReal(double value) {
    if (std::abs(value) > fixedReach) {
        return {ObjectType::integer, 0, std::bit_cast<std::uint32_t>(detail::truncated(value))};
    }
    const Fixed fixed = fixedFromReal(value);
    const double leftOver = (value - realFromFixed(fixed)) / leftOverUnit;
    return {ObjectType::fixed,
            static_cast<std::int16_t>(std::clamp(leftOver, -mostLeftOver, mostLeftOver)),
            std::bit_cast<std::uint32_t>(fixed)};
}

double realOfObject(const Object& object) {
    if (object.type == ObjectType::integer) {
        return integerObject(object);
    }
    return realFromFixed(fixedObject(object)) + object.size * leftOverUnit;
}

} // namespace corvane
