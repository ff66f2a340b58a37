// The mapping filter: an image's Decode array over samples of one byte.
#pragma once

#include "filters/filter.h"
#include "runtime/fixed.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

/// Reads bytes, each mapped by the next pair (Dmin, Dmax) of the array, component by component: b
/// becomes the low eight bits of the integer part of b * (Dmax - Dmin) + Dmin * maximum. Writing
/// raises `limit`; a seek goes to the first component of a pixel.
class MappingFilter final : public Filter {
public:
    MappingFilter(std::span<const Fixed> decode, std::int32_t maximum);

private:
    using Table = std::array<std::byte, 256>;
    enum class Kind : std::uint8_t { same, inverse, tables };

    void map(std::span<std::byte> bytes);
    Kind kindOf() const;

    static std::int32_t entryMapping(Filter& filter, Operation operation, std::byte* buffer,
                                     std::int32_t* argument);

    std::vector<Table> tables_; ///< one for each component
    std::size_t component_ = 0; ///< of the next byte
    Kind kind_ = Kind::same;
};

/// `decode`: 16.16 numbers, none (nothing is mapped), 2, 6 or 8; otherwise `type`.
FilterOwner setupMapping(std::span<const Fixed> decode, std::int32_t maximum);

} // namespace corvane
