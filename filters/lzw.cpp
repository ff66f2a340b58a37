#include "filters/lzw.h"

#include "runtime/exception.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace corvane {

namespace {

/// Bytes that the encoder gathers before it writes them on.
constexpr std::size_t flushSize = 4096;

/// Bits still to be read, the next one highest; `count` of them are certain.
struct BitWindow {
    std::uint64_t bits;
    std::uint32_t count;

    /// Tops up to at least 56 bits from eight bytes of which some stay for the next time.
    void fill(const std::byte*& from) {
        std::uint64_t word = 0;
        std::memcpy(&word, from, sizeof word);
        if constexpr (std::endian::native == std::endian::little) {
            word = __builtin_bswap64(word);
        }
        bits |= word >> count;
        from += (63 - count) / 8;
        count |= 56;
    }
    std::uint32_t peek(std::uint32_t width) const {
        return static_cast<std::uint32_t>(bits >> (64 - width));
    }
    void drop(std::uint32_t width) {
        bits <<= width;
        count -= width;
    }
};

} // namespace

AdaptFilter::AdaptFilter(AdaptDirection direction, std::uint32_t earlyChange)
    : Decoder(entryAdapt), direction_(direction) {
    codes_.earlyChange = direction == AdaptDirection::encode ? 0 : earlyChange;
}

void AdaptFilter::restart() {
    codes_.clear();
    bitCount_ = 0;
    bitBuffer_ = 0;
    remaining_ = 0;
    if (direction_ == AdaptDirection::decode) {
        if (!decodeTable_) {
            charge_.resize(sizeof(AdaptDecodeTable));
            decodeTable_ = std::make_unique<AdaptDecodeTable>();
        }
    } else {
        charge_.resize(sizeof(AdaptEncodeTable));
        encodeTable_ = std::make_unique<AdaptEncodeTable>();
        putCode(adaptClear);
        flush();
    }
}

/// Decodes codes that are whole in the intake, moving `out` on, while it has room, up to one that
/// is to be looked at closer or whose string does not fit: that is waiting then.
void AdaptFilter::decodeWords(std::span<std::byte>& out) {
    const std::span<const std::byte> in = intake().held();
    const std::byte* from = in.data();
    const std::byte* const end = from + in.size();
    std::byte* to = out.data();
    std::byte* const limit = to + out.size();
    AdaptDecodeTable& table = *decodeTable_;
    AdaptCodes codes = codes_;
    BitWindow window{.bits = bitCount_ == 0 ? 0 : std::uint64_t{bitBuffer_} << (64 - bitCount_),
                     .count = bitCount_};
    while (to < limit && (window.count >= 12 || end - from >= 8)) {
        if (window.count < 12) {
            window.fill(from);
        }
        const std::uint32_t code = window.peek(codes.width);
        const std::uint32_t width = codes.width;
        if (code == adaptClear) {
            codes.clear();
        } else if (code == adaptEnd || !table.admit(codes, code)) {
            break;
        } else {
            const std::size_t length = table.length(code);
            if (static_cast<std::size_t>(limit - to) < length + AdaptDecodeTable::overrun) {
                window.drop(width);
                keepString(code);
                break;
            }
            table.expand(code, to);
            to += length;
        }
        window.drop(width);
    }
    codes_ = codes;
    // Whole bytes that no code needed yet are left to the intake.
    from -= window.count / 8;
    bitCount_ = window.count % 8;
    bitBuffer_ = bitCount_ == 0 ? 0 : window.peek(bitCount_);
    intake().take(static_cast<std::size_t>(from - in.data()));
    out = {to, limit};
}

/// The string of `code` is to be delivered piece by piece.
void AdaptFilter::keepString(std::uint32_t code) {
    remaining_ = decodeTable_->length(code);
    currentCode_ = code;
    decodeTable_->expand(code, decodeTable_->waiting().data());
}

/// One code, taking no byte that it does not need; the end code where the data end.
std::uint32_t AdaptFilter::readCode() {
    std::uint32_t code = 0;
    for (std::uint32_t wanted = codes_.width; wanted > 0;) {
        if (bitCount_ == 0) {
            const std::span<const std::byte> in = intake().held();
            if (in.empty()) {
                return adaptEnd;
            }
            bitBuffer_ = std::to_integer<std::uint32_t>(in.front());
            bitCount_ = 8;
            intake().take(1);
        }
        const std::uint32_t bits = std::min(wanted, bitCount_);
        bitCount_ -= bits;
        wanted -= bits;
        code = code << bits | bitBuffer_ >> bitCount_;
        bitBuffer_ &= (1U << bitCount_) - 1;
    }
    return code;
}

std::size_t AdaptFilter::decode(std::span<std::byte> out) {
    if (direction_ == AdaptDirection::encode) {
        failException(Exception::io);
    }
    std::span<std::byte> room = out;
    while (!room.empty()) {
        if (remaining_ > 0) {
            const std::size_t count = std::min(remaining_, room.size());
            const std::size_t from = decodeTable_->length(currentCode_) - remaining_;
            std::memcpy(room.data(), decodeTable_->waiting().data() + from, count);
            remaining_ -= count;
            room = room.subspan(count);
            continue;
        }
        decodeWords(room);
        if (remaining_ > 0 || room.empty()) {
            continue;
        }
        const std::uint32_t code = readCode();
        if (code == adaptClear) {
            codes_.clear();
        } else if (code == adaptEnd || !decodeTable_->admit(codes_, code)) {
            break;
        } else {
            keepString(code);
        }
    }
    return out.size() - room.size();
}

/// Writes whole bytes of the bits gathered.
void AdaptFilter::putCode(std::uint32_t code) {
    bitBuffer_ = bitBuffer_ << codes_.width | code;
    bitCount_ += codes_.width;
    while (bitCount_ >= 8) {
        bitCount_ -= 8;
        written_.push_back(static_cast<std::byte>(bitBuffer_ >> bitCount_));
        bitBuffer_ &= (1U << bitCount_) - 1;
    }
}

void AdaptFilter::flush() {
    writeFilter(*next, std::exchange(written_, {}));
}

void AdaptFilter::encode(std::span<const std::byte> bytes) {
    for (const std::byte byte : bytes) {
        const std::uint32_t single = std::to_integer<std::uint32_t>(byte);
        if (codes_.previous == adaptNone) {
            codes_.previous = single;
            continue;
        }
        const std::uint32_t longer = encodeTable_->find(codes_.previous, byte);
        if (longer != adaptNone) {
            codes_.previous = longer;
            continue;
        }
        putCode(codes_.previous);
        if (codes_.next < adaptEntries - codes_.earlyChange) {
            encodeTable_->add(codes_.previous, byte, codes_.next);
            codes_.advance();
        } else {
            putCode(adaptClear);
            codes_.clear();
            encodeTable_->clear();
        }
        codes_.previous = single;
        if (written_.size() >= flushSize) {
            flush();
        }
    }
    flush();
}

void AdaptFilter::finishEncoding() {
    if (codes_.previous != adaptNone) {
        putCode(codes_.previous);
    }
    putCode(adaptEnd);
    if (bitCount_ > 0) {
        written_.push_back(static_cast<std::byte>(bitBuffer_ << (8 - bitCount_)));
    }
    flush();
}

std::int32_t AdaptFilter::entryAdapt(Filter& filter, Operation operation, std::byte* buffer,
                                     std::int32_t* argument) {
    auto& self = static_cast<AdaptFilter&>(filter);
    if (self.direction_ == AdaptDirection::encode) {
        switch (operation) {
        case Operation::write:
            self.encode(transferred(buffer, *argument));
            return *argument;
        case Operation::seek:
        case Operation::mark:
            return callFilter(*self.next, operation, buffer, argument);
        case Operation::unlink:
            self.finishEncoding();
            return 0;
        default:
            break;
        }
    }
    return entryDecoder(filter, operation, buffer, argument);
}

FilterOwner setupAdapt(AdaptDirection direction, std::uint32_t earlyChange) {
    if ((direction != AdaptDirection::decode && direction != AdaptDirection::encode) ||
        earlyChange > 1) {
        failException(Exception::type);
    }
    return std::make_unique<AdaptFilter>(direction, earlyChange);
}

} // namespace corvane
