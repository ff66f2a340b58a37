// Big-endian numbers in byte spans, each access checked by the caller's `has`.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

namespace corvane {

/// Whether `count` bytes are there from `offset` on.
constexpr bool has(std::span<const std::byte> bytes, std::size_t offset, std::size_t count) {
    return offset <= bytes.size() && count <= bytes.size() - offset;
}

template <class Number>
Number readBig(std::span<const std::byte> bytes, std::size_t offset) {
    assert(has(bytes, offset, sizeof(Number)));
    std::make_unsigned_t<Number> value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        value = static_cast<std::make_unsigned_t<Number>>(
            value << 8 | std::to_integer<std::uint8_t>(bytes[offset + i]));
    }
    return static_cast<Number>(value);
}

template <class Number>
void writeBig(std::span<std::byte> bytes, std::size_t offset, Number value) {
    assert(has(bytes, offset, sizeof(Number)));
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        bytes[offset + i] = static_cast<std::byte>(value >> 8 * (sizeof(Number) - 1 - i));
    }
}

template <class Number>
void appendBig(std::vector<std::byte>& bytes, Number value) {
    bytes.resize(bytes.size() + sizeof(Number));
    writeBig(bytes, bytes.size() - sizeof(Number), value);
}

} // namespace corvane
