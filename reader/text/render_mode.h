// Text render modes (PDF Reference, 5.2.5).
#pragma once

#include <cstdint>

namespace corvane {

inline constexpr std::int32_t invisibleMode = 3;

/// Modes from here on add the text to the clip, and paint as those below them do.
inline constexpr std::int32_t firstClippingMode = 4;

constexpr bool clips(std::int32_t mode) {
    return mode >= firstClippingMode;
}

/// How the mode paints.
constexpr std::int32_t paintingOf(std::int32_t mode) {
    return mode % firstClippingMode;
}

constexpr bool fills(std::int32_t mode) {
    return paintingOf(mode) == 0 || paintingOf(mode) == 2;
}

constexpr bool strokes(std::int32_t mode) {
    return paintingOf(mode) == 1 || paintingOf(mode) == 2;
}

} // namespace corvane
