#include "codecs/dct/input.h"

namespace corvane {

bool DctInput::refill() {
    settle();
    const std::span<const std::byte> held = source_.held();
    begin_ = held.data();
    next_ = begin_;
    end_ = begin_ + held.size();
    return !held.empty();
}

void DctInput::settle() {
    if (next_ != begin_) {
        source_.take(static_cast<std::size_t>(next_ - begin_));
        begin_ = next_;
    }
}

int DctBits::dataByte() {
    if (marker_ != 0) {
        return -1;
    }
    const int byte = input_.get();
    if (byte != 0xFF) {
        marker_ = byte < 0 ? -1 : 0;
        return byte;
    }
    int code = 0xFF;
    while (code == 0xFF) {
        code = input_.get();
    }
    if (code == 0) {
        return 0xFF;
    }
    marker_ = code;
    return -1;
}

void DctBits::fillSlowly() {
    while (count_ <= 56) {
        const int byte = dataByte();
        if (byte < 0) {
            // Nothing follows: every bit below is zero already.
            padded_ += 64U - count_;
            count_ = 64;
            return;
        }
        bits_ |= static_cast<std::uint64_t>(byte) << (56U - count_);
        count_ += 8;
    }
}

void DctBits::forget() {
    bits_ = 0;
    count_ = 0;
    padded_ = 0;
}

int DctBits::takeMarker() {
    while (dataByte() >= 0) {
    }
    const int marker = marker_;
    marker_ = 0;
    return marker;
}

} // namespace corvane
