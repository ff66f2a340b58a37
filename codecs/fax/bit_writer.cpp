#include "codecs/fax/bit_writer.h"

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
    if (stream_->count < faxWordBytes) {
        put(group >> 16, 16);
        put(group & 0xFFFF, 16);
        return;
    }
    pending_ = pending_ << 32 | group;
    // The bytes behind the four are written again by what comes next.
    storeWord(stream_->current, pending_ >> pendingBits_ << 32);
    stream_->current += 4;
    stream_->count -= 4;
}

void FaxBitWriter::put(const FaxRowBits& row) {
    const std::span<const std::byte> groups = row.groups();
    for (std::size_t at = 0; at < groups.size(); at += 4) {
        put32(static_cast<std::uint32_t>(loadWord(groups.data() + at) >> 32));
    }
    put(row.lastBits(), row.lastLength());
}

} // namespace corvane
