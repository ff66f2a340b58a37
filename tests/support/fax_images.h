// Images of one bit a pixel for tests of the fax codec.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace corvane::test {

struct FaxImage {
    std::uint16_t columns = 0;
    std::uint16_t rows = 0;
    std::vector<std::byte> pixels{}; ///< black is 1, the bits behind the last column are 0

    std::size_t rowBytes() const { return (std::size_t{columns} + 7) / 8; }
    void set(std::size_t x, std::size_t y) {
        pixels[y * rowBytes() + x / 8] |= std::byte{0x80} >> (x % 8);
    }
    bool get(std::size_t x, std::size_t y) const {
        return (pixels[y * rowBytes() + x / 8] & (std::byte{0x80} >> (x % 8))) != std::byte{};
    }
};

/// Runs of about `meanRun` pixels, each row like the one above but for one pixel in `change` (0:
/// rows of their own).
inline FaxImage randomImage(std::mt19937& random, std::uint16_t columns, std::uint16_t rows,
                            std::size_t meanRun, std::size_t change) {
    FaxImage image{columns, rows};
    image.pixels.resize(image.rowBytes() * rows);
    bool black = false;
    for (std::size_t y = 0; y < rows; ++y) {
        black = random() % 2 != 0;
        for (std::size_t x = 0; x < columns; ++x) {
            if (random() % meanRun == 0) {
                black = !black;
            }
            const bool follows = change != 0 && y > 0 && random() % change != 0;
            if (follows ? image.get(x, y - 1) : black) {
                image.set(x, y);
            }
        }
    }
    return image;
}

} // namespace corvane::test
