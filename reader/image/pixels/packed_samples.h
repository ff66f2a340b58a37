// Samples of fewer than 8 bits, several in a byte.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

class PackedSamples {
public:
    /// `bits`: 1, 2 or 4. `values`: what becomes of each sample; none: it stays what it is.
    PackedSamples(std::int32_t bits, std::span<const std::uint8_t> values);

    /// A byte for each sample of a row, the high bits of a byte first. The row holds them all.
    void spread(std::span<const std::byte> row, std::span<std::uint8_t> to) const;

private:
    std::int32_t bits_;
    /// For each byte what becomes of its first sample, its second, and so on.
    std::array<std::array<std::uint8_t, 8>, 256> table_{};
};

} // namespace corvane
