#include "codecs/fax_bit_writer.h"

namespace corvane {

void FaxBitWriter::put(std::uint64_t bits, unsigned length) {
    pending_ = pending_ << length | bits;
    pendingBits_ += length;
    while (pendingBits_ >= 8) {
        pendingBits_ -= 8;
        cc_fputc(static_cast<std::int32_t>(pending_ >> pendingBits_ & 0xFF), *stream_);
    }
}

void FaxBitWriter::put32(std::uint32_t group) {
    pending_ = pending_ << 32 | group;
    const auto ready = static_cast<std::uint32_t>(pending_ >> pendingBits_);
    for (unsigned i = 0; i < 4; ++i) {
        const std::uint32_t byte = ready >> (24 - 8 * i) & 0xFF;
        if (stream_->count >= 4) {
            stream_->current[i] = static_cast<std::byte>(byte);
        } else {
            cc_fputc(static_cast<std::int32_t>(byte), *stream_);
        }
    }
}

void FaxBitWriter::put(const FaxRowBits& row) {
    const std::span<const std::byte> groups = row.groups();
    for (std::size_t at = 0; at < groups.size(); at += 4) {
        put32(static_cast<std::uint32_t>(loadWord(groups.data() + at) >> 32));
    }
    put(row.lastBits(), row.lastLength());
}

} // namespace corvane
