#include "reader/epsf/pixel_rows.h"

#include <algorithm>
#include <array>

namespace corvane::classic {

namespace {

constexpr std::size_t pixelBytes = 4;
constexpr std::byte unpainted{0xFF};

void putPixel(std::span<std::byte> pixels, std::size_t at, const std::array<std::byte, 4>& pixel) {
    std::ranges::copy(pixel, pixels.subspan(at, pixelBytes).begin());
}

} // namespace

void deviceDataToInterleave(std::span<std::byte> planes, std::span<const std::byte> pixels) {
    const std::size_t width = pixels.size() / pixelBytes;
    const std::byte* from = pixels.data();
    std::byte* const to = planes.first(pixelBytes * width).data();
    for (std::size_t x = 0; x < width; ++x, from += pixelBytes) {
        to[x] = from[1];
        to[width + x] = from[2];
        to[2 * width + x] = from[3];
        to[3 * width + x] = std::byte{0};
    }
}

void deviceDataToMasking(std::span<std::byte> pixels, std::span<const std::byte> mask,
                         SeenColour fill) {
    const std::array painted = {std::byte{0}, std::byte{fill.red}, std::byte{fill.green},
                                std::byte{fill.blue}};
    const std::array white = {unpainted, std::byte{0xFF}, std::byte{0xFF}, std::byte{0xFF}};
    for (std::size_t x = 0; x < pixels.size() / pixelBytes; ++x) {
        const bool isPainted = (mask[x / 8] >> (7 - x % 8) & std::byte{1}) == std::byte{0};
        putPixel(pixels, pixelBytes * x, isPainted ? painted : white);
    }
}

void deviceDataToTransparency(std::span<std::byte> pixels) {
    for (std::size_t at = 0; at + pixelBytes <= pixels.size(); at += pixelBytes) {
        const std::byte level = pixels[at] != std::byte{0} ? std::byte{0xFF} : std::byte{0};
        putPixel(pixels, at, {std::byte{0}, level, level, level});
    }
}

void deviceDataToPixelMap(World* world, std::int32_t y, std::span<const std::byte> pixels) {
    if (world != nullptr && y < world->frame.bottom) {
        const std::span<std::byte> row = world->row(y);
        std::copy_n(pixels.begin(), std::min(row.size(), pixels.size()), row.begin());
    }
}

} // namespace corvane::classic
