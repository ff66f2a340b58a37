// Rows of pixels on their way to an EPSF file and to its preview. A pixel has four bytes: 0, red,
// green, blue; one that is not painted has a first byte that is not 0.
#pragma once

#include "output/world/world.h"
#include "reader/paint/seen_colour.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane::classic {

/// Pixels to planes: all their reds, then greens, then blues, then as many zeros.
void deviceDataToInterleave(std::span<std::byte> planes, std::span<const std::byte> pixels);

/// A row of a mask, of which 0 is painted, to pixels of that colour. White is not painted.
void deviceDataToMasking(std::span<std::byte> pixels, std::span<const std::byte> mask,
                         SeenColour fill);

/// Pixels that are not painted become white, others 0.
void deviceDataToTransparency(std::span<std::byte> pixels);

/// Pixels to row `y` of a world of 32 bits.
void deviceDataToPixelMap(World* world, std::int32_t y, std::span<const std::byte> pixels);

} // namespace corvane::classic
