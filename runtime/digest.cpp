#include "runtime/digest.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace corvane {

namespace {

// Odd numbers whose bits are spread well: of the golden ratio, and of the square roots of 2 and 3.
constexpr std::uint64_t spread = 0x9E3779B97F4A7C15;
constexpr std::uint64_t mix = 0xB504F333F9DE6485;
constexpr std::uint64_t last = 0xBB67AE8584CAA73B;

std::uint64_t wordAt(const std::byte* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return std::endian::native == std::endian::little ? word : __builtin_bswap64(word);
}

std::uint64_t step(std::uint64_t lane, std::uint64_t word) {
    return std::rotl(lane ^ word * spread, 29) * mix + last;
}

/// Every bit of the value reaches every bit of the result.
std::uint64_t finish(std::uint64_t value) {
    value = (value ^ value >> 32) * spread;
    value = (value ^ value >> 29) * mix;
    return value ^ value >> 32;
}

} // namespace

void Digest::feed(std::span<const std::byte> bytes) {
    const std::size_t held = length_ % stripe;
    length_ += bytes.size();
    if (held != 0) {
        const std::size_t wanted = std::min(stripe - held, bytes.size());
        std::copy_n(bytes.begin(), wanted, held_.begin() + static_cast<std::ptrdiff_t>(held));
        bytes = bytes.subspan(wanted);
        if (held + wanted < stripe) {
            return;
        }
        left_ = step(left_, wordAt(held_.data()));
        right_ = step(right_, wordAt(held_.data() + stripe / 2));
    }
    std::uint64_t left = left_;
    std::uint64_t right = right_;
    for (; bytes.size() >= stripe; bytes = bytes.subspan(stripe)) {
        left = step(left, wordAt(bytes.data()));
        right = step(right, wordAt(bytes.data() + stripe / 2));
    }
    left_ = left;
    right_ = right;
    std::copy(bytes.begin(), bytes.end(), held_.begin());
}

std::uint64_t Digest::value() const {
    std::array<std::byte, stripe> rest{};
    std::copy_n(held_.begin(), length_ % stripe, rest.begin());
    const std::uint64_t left = step(left_, wordAt(rest.data()));
    const std::uint64_t right = step(right_, wordAt(rest.data() + stripe / 2));
    return finish(left ^ std::rotl(right, 32) ^ length_ * last);
}

} // namespace corvane
