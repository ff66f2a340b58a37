#include "app/images/png_filter.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <numeric>

namespace corvane {

namespace {

constexpr unsigned char subNumber = 1;
constexpr unsigned char upNumber = 2;

/// The sum of the differences without their signs.
std::uint64_t distance(std::span<const unsigned char> row, std::span<const unsigned char> from) {
    constexpr std::size_t blockSize = 4096; // their sums fit 32 bits
    std::uint64_t sum = 0;
    for (std::size_t start = 0; start < row.size(); start += blockSize) {
        const std::size_t count = std::min(blockSize, row.size() - start);
        const unsigned char* const a = row.data() + start;
        const unsigned char* const b = from.data() + start;
        std::uint32_t block = 0;
        for (std::size_t i = 0; i < count; ++i) {
            block += static_cast<std::uint32_t>(std::abs(a[i] - b[i]));
        }
        sum += block;
    }
    return sum;
}

/// Leaves in `to` what `from` does not say of `row`.
void subtract(std::span<const unsigned char> row, std::span<const unsigned char> from,
              unsigned char* to) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        to[i] = static_cast<unsigned char>(row[i] - from[i]);
    }
}

} // namespace

PngFilter::PngFilter(std::size_t rowBytes, std::size_t pixelBytes)
    : pixelBytes_(std::min(pixelBytes, rowBytes)), before_(rowBytes), filtered_(rowBytes + 1) {}

std::span<const unsigned char> PngFilter::filtered(std::span<const unsigned char> row) {
    const auto first = row.first(pixelBytes_);
    const auto others = row.subspan(pixelBytes_);
    const std::uint64_t sub =
        std::accumulate(first.begin(), first.end(), std::uint64_t{0}) + distance(others, row);
    if (sub <= distance(row, before_)) {
        filtered_.front() = subNumber;
        std::ranges::copy(first, filtered_.begin() + 1);
        subtract(others, row, filtered_.data() + 1 + pixelBytes_);
    } else {
        filtered_.front() = upNumber;
        subtract(row, before_, filtered_.data() + 1);
    }
    std::ranges::copy(row, before_.begin());
    return filtered_;
}

} // namespace corvane
