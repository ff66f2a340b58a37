// The component filter: unpacks samples of 1, 2 or 4 bits into one byte each.
#pragma once

#include "filters/filter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

/// What becomes of a sample's value.
enum class SampleScale : std::int32_t {
    kept = 0, ///< it is the byte: masks, indices
    full = 1, ///< the largest becomes 255
};

/// Reads samples, high bits first, of rows that each begin on a byte; no more of the filter below
/// than the samples asked for lie in. Eight bits pass as they are. Writing raises `limit`; a seek
/// goes to the beginning of a row.
class ComponentFilter final : public Filter {
public:
    ComponentFilter(std::int32_t bits, std::int32_t samplesPerRow, SampleScale scale);

private:
    std::size_t read(std::span<std::byte> out);
    std::size_t unpackHeld(std::span<std::byte> out);
    std::size_t bytesFor(std::size_t samples) const;
    std::span<const std::byte> unpack(std::span<const std::byte> in, std::span<std::byte>& out);
    void advance(std::size_t samples);

    static std::int32_t entryComponent(Filter& filter, Operation operation, std::byte* buffer,
                                       std::int32_t* argument);

    std::size_t samplesPerRow_;
    std::size_t samplesLeft_; ///< in the row
    std::size_t bits_;        ///< of a sample
    std::uint32_t bitBuffer_ = 0;
    std::size_t bitCount_ = 0; ///< bits of `bitBuffer_`, its lowest, that hold samples to come
    std::array<std::array<std::byte, 8>, 256> unpacked_{}; ///< samples of every byte
};

/// Bits other than 1, 2, 4 and 8, and rows without samples, raise `type`.
FilterOwner setupComponent(std::int32_t bits, std::int32_t samplesPerRow, SampleScale scale);

} // namespace corvane
