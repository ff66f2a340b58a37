#include "app/images/png_filter.h"

#include <algorithm>
#include <cstdint>

namespace corvane {

namespace {

constexpr unsigned char subNumber = 1;
constexpr unsigned char upNumber = 2;

/// Leaves in `to` what `from` does not say of `row`. The sum of the differences, as signed numbers
/// without their signs.
std::uint64_t subtract(std::span<const unsigned char> row, std::span<const unsigned char> from,
                       std::span<unsigned char> to) {
    constexpr std::size_t blockSize = 4096; // their sums fit 32 bits
    std::uint64_t weight = 0;
    for (std::size_t start = 0; start < row.size(); start += blockSize) {
        const std::size_t count = std::min(blockSize, row.size() - start);
        const unsigned char* const a = row.data() + start;
        const unsigned char* const b = from.data() + start;
        unsigned char* const difference = to.data() + start;
        std::uint32_t sum = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const auto more = static_cast<unsigned char>(a[i] - b[i]);
            const auto less = static_cast<unsigned char>(b[i] - a[i]);
            difference[i] = more;
            sum += std::min(more, less);
        }
        weight += sum;
    }
    return weight;
}

} // namespace

PngFilter::PngFilter(std::size_t rowBytes, std::size_t pixelBytes)
    : pixelBytes_(std::min(pixelBytes, rowBytes)), before_(rowBytes), sub_(rowBytes + 1),
      up_(rowBytes + 1) {
    sub_.front() = subNumber;
    up_.front() = upNumber;
}

std::span<const unsigned char> PngFilter::filtered(std::span<const unsigned char> row) {
    const std::uint64_t upWeight = subtract(row, before_, std::span(up_).subspan(1));
    const auto first = row.first(pixelBytes_);
    std::ranges::copy(first, sub_.begin() + 1);
    std::uint64_t subWeight = 0;
    for (const unsigned char byte : first) {
        subWeight += std::min<unsigned>(byte, 256U - byte);
    }
    subWeight += subtract(row.subspan(pixelBytes_), row, std::span(sub_).subspan(1 + pixelBytes_));
    std::ranges::copy(row, before_.begin());
    return subWeight <= upWeight ? sub_ : up_;
}

} // namespace corvane
