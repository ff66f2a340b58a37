// Bytes of a font table under construction: numbers are big-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace corvane {

class TableBytes {
public:
    std::size_t size() const { return bytes_.size(); }
    const std::vector<std::byte>& bytes() const { return bytes_; }

    void u8(std::uint32_t value) { bytes_.push_back(static_cast<std::byte>(value)); }
    /// The low 16 bits, so of signed numbers too.
    void u16(std::uint32_t value) {
        u8(value >> 8);
        u8(value);
    }
    void u24(std::uint32_t value) {
        u8(value >> 16);
        u16(value);
    }
    void u32(std::uint32_t value) {
        u16(value >> 16);
        u16(value);
    }
    void i16(std::int32_t value) { u16(static_cast<std::uint32_t>(value)); }
    void all16(std::initializer_list<std::uint32_t> values) {
        for (const std::uint32_t value : values) {
            u16(value);
        }
    }
    void text(std::string_view text) {
        for (const char c : text) {
            u8(static_cast<std::uint8_t>(c));
        }
    }
    void append(const TableBytes& other) {
        bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
    }
    void padTo4() {
        while (bytes_.size() % 4 != 0) {
            u8(0);
        }
    }

private:
    std::vector<std::byte> bytes_;
};

/// A count of bytes or things as the 32 bits that tables have: no font made is larger.
inline std::uint32_t count32(std::size_t count) {
    return static_cast<std::uint32_t>(count);
}

} // namespace corvane
