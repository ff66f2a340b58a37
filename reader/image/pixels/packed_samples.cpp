#include "reader/image/pixels/packed_samples.h"

#include <cstring>

namespace corvane {

namespace {

template <std::size_t perByte, class Table>
void spreadBytes(std::span<const std::byte> row, std::span<std::uint8_t> to, const Table& table) {
    const std::size_t whole = to.size() / perByte;
    std::uint8_t* pixels = to.data();
    for (std::size_t i = 0; i < whole; ++i, pixels += perByte) {
        std::memcpy(pixels, table[std::to_integer<std::size_t>(row[i])].data(), perByte);
    }
    if (const std::size_t rest = to.size() % perByte; rest != 0) {
        std::memcpy(pixels, table[std::to_integer<std::size_t>(row[whole])].data(), rest);
    }
}

} // namespace

PackedSamples::PackedSamples(std::int32_t bits, std::span<const std::uint8_t> values)
    : bits_(bits) {
    const auto width = static_cast<unsigned>(bits);
    for (unsigned byte = 0; byte < table_.size(); ++byte) {
        for (unsigned i = 0; i < 8 / width; ++i) {
            const unsigned sample = byte >> (8 - width * (i + 1)) & ((1U << width) - 1);
            table_[byte][i] = values.empty() ? static_cast<std::uint8_t>(sample) : values[sample];
        }
    }
}

void PackedSamples::spread(std::span<const std::byte> row, std::span<std::uint8_t> to) const {
    switch (bits_) {
    case 1:
        spreadBytes<8>(row, to, table_);
        break;
    case 2:
        spreadBytes<4>(row, to, table_);
        break;
    default:
        spreadBytes<2>(row, to, table_);
    }
}

} // namespace corvane
