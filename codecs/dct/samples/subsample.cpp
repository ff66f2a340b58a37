#include "codecs/dct/samples/subsample.h"

namespace corvane {

namespace {

/// Means of pairs, or of squares of two by two.
void halve(const std::uint8_t* upper, const std::uint8_t* lower, bool square, std::size_t width,
           std::uint8_t* to) {
    unsigned bias = square ? 1 : 0;
    for (std::size_t x = 0; x < width; ++x, upper += 2, lower += 2, bias ^= square ? 3U : 1U) {
        unsigned sum = bias + upper[0] + upper[1];
        if (square) {
            sum += unsigned{lower[0]} + lower[1];
        }
        to[x] = static_cast<std::uint8_t>(sum >> (square ? 2 : 1));
    }
}

/// First sample that sample `i` stands for, and the first that it does not.
std::array<std::size_t, 2> range(std::size_t i, const std::array<std::size_t, 2>& ratio) {
    return {i * ratio[1] / ratio[0], ((i + 1) * ratio[1] + ratio[0] - 1) / ratio[0]};
}

std::uint8_t mean(const DctPlaneReduction& r, std::size_t x, std::size_t y) {
    const auto [left, right] = range(x, r.across);
    const auto [top, bottom] = range(y, r.down);
    std::size_t sum = 0;
    for (std::size_t row = top; row < bottom; ++row) {
        for (std::size_t column = left; column < right; ++column) {
            sum += r.from[row * r.stride + column];
        }
    }
    const std::size_t count = (bottom - top) * (right - left);
    return static_cast<std::uint8_t>((sum + (count - 1 + x % 2) / 2) / count);
}

} // namespace

void dctSubsample(const DctPlaneReduction& reduction, std::uint8_t* to) {
    const auto factor = [](const std::array<std::size_t, 2>& ratio) {
        return ratio[1] % ratio[0] == 0 ? ratio[1] / ratio[0] : 0;
    };
    const std::size_t across = factor(reduction.across);
    const std::size_t down = factor(reduction.down);
    for (std::size_t y = 0; y < reduction.height; ++y, to += reduction.stride) {
        if (across == 2 && (down == 1 || down == 2)) {
            const std::uint8_t* const upper = reduction.from + y * down * reduction.stride;
            halve(upper, down == 2 ? upper + reduction.stride : upper, down == 2, reduction.width,
                  to);
            continue;
        }
        for (std::size_t x = 0; x < reduction.width; ++x) {
            to[x] = mean(reduction, x, y);
        }
    }
}

} // namespace corvane
