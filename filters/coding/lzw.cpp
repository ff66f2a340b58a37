#include "filters/coding/lzw.h"

#include "filters/coding/lzw_table.h"
#include "filters/decoder.h"
#include "runtime/exception.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <span>
#include <utility>
#include <vector>

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

/// Codes to bytes.
class AdaptDecoder final : public Decoder {
public:
    explicit AdaptDecoder(std::uint32_t earlyChange) : Decoder(entryDecoder) {
        codes_.earlyChange = earlyChange;
    }

private:
    std::size_t decode(std::span<std::byte> out) override;
    void restart() override;
    void decodeWords(std::span<std::byte>& out);
    void keepString(std::uint32_t code);
    std::uint32_t readCode();

    std::uint32_t bitCount_ = 0;    ///< bits of `bitBuffer_`, its lowest, that count
    std::uint32_t bitBuffer_ = 0;   ///< what is left of the last byte taken
    std::uint32_t currentCode_ = 0; ///< whose string is being delivered
    std::size_t remaining_ = 0;     ///< bytes of that string not yet delivered
    AdaptCodes codes_;
    ZoneCharge charge_;
    std::unique_ptr<AdaptDecodeTable> table_;
};

void AdaptDecoder::restart() {
    codes_.clear();
    bitCount_ = 0;
    bitBuffer_ = 0;
    remaining_ = 0;
    if (!table_) {
        charge_.resize(sizeof(AdaptDecodeTable));
        table_ = std::make_unique<AdaptDecodeTable>();
    }
}

/// Decodes codes that are whole in the intake, moving `out` on, while it has room, up to one that
/// is to be looked at closer or whose string does not fit: that is waiting then.
void AdaptDecoder::decodeWords(std::span<std::byte>& out) {
    const std::span<const std::byte> in = intake().held();
    const std::byte* from = in.data();
    const std::byte* const end = from + in.size();
    std::byte* to = out.data();
    std::byte* const limit = to + out.size();
    AdaptDecodeTable& table = *table_;
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
void AdaptDecoder::keepString(std::uint32_t code) {
    remaining_ = table_->length(code);
    currentCode_ = code;
    table_->expand(code, table_->waiting().data());
}

/// One code, taking no byte that it does not need; the end code where the data end.
std::uint32_t AdaptDecoder::readCode() {
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

std::size_t AdaptDecoder::decode(std::span<std::byte> out) {
    std::span<std::byte> room = out;
    while (!room.empty()) {
        if (remaining_ > 0) {
            const std::size_t count = std::min(remaining_, room.size());
            const std::size_t from = table_->length(currentCode_) - remaining_;
            std::memcpy(room.data(), table_->waiting().data() + from, count);
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
        } else if (code == adaptEnd || !table_->admit(codes_, code)) {
            break;
        } else {
            keepString(code);
        }
    }
    return out.size() - room.size();
}

std::int32_t entryAdapt(Filter& filter, Operation operation, std::byte* buffer,
                        std::int32_t* argument);

/// Bytes to codes.
class AdaptEncoder final : public Filter {
public:
    AdaptEncoder() : Filter(entryAdapt) { codes_.earlyChange = 0; }

    void begin();
    void encode(std::span<const std::byte> bytes);
    void finish();

private:
    void putCode(std::uint32_t code);
    void flush();

    std::uint32_t bitCount_ = 0;  ///< bits of `bitBuffer_`, its lowest, that count
    std::uint32_t bitBuffer_ = 0; ///< less than a whole byte between codes
    AdaptCodes codes_;
    std::vector<std::byte> written_; ///< not yet handed on; empty between operations
    ZoneCharge charge_;
    std::unique_ptr<AdaptEncodeTable> table_;
};

/// Writes whole bytes of the bits gathered.
void AdaptEncoder::putCode(std::uint32_t code) {
    bitBuffer_ = bitBuffer_ << codes_.width | code;
    bitCount_ += codes_.width;
    while (bitCount_ >= 8) {
        bitCount_ -= 8;
        written_.push_back(static_cast<std::byte>(bitBuffer_ >> bitCount_));
        bitBuffer_ &= (1U << bitCount_) - 1;
    }
}

void AdaptEncoder::flush() {
    writeFilter(*next, std::exchange(written_, {}));
}

void AdaptEncoder::begin() {
    charge_.resize(sizeof(AdaptEncodeTable));
    table_ = std::make_unique<AdaptEncodeTable>();
    putCode(adaptClear);
    flush();
}

void AdaptEncoder::encode(std::span<const std::byte> bytes) {
    for (const std::byte byte : bytes) {
        const std::uint32_t single = std::to_integer<std::uint32_t>(byte);
        if (codes_.previous == adaptNone) {
            codes_.previous = single;
            continue;
        }
        const std::uint32_t longer = table_->find(codes_.previous, byte);
        if (longer != adaptNone) {
            codes_.previous = longer;
            continue;
        }
        putCode(codes_.previous);
        if (codes_.next < adaptEntries - codes_.earlyChange) {
            table_->add(codes_.previous, byte, codes_.next);
            codes_.advance();
        } else {
            putCode(adaptClear);
            codes_.clear();
            table_->clear();
        }
        codes_.previous = single;
        if (written_.size() >= flushSize) {
            flush();
        }
    }
    flush();
}

void AdaptEncoder::finish() {
    if (codes_.previous != adaptNone) {
        putCode(codes_.previous);
    }
    putCode(adaptEnd);
    if (bitCount_ > 0) {
        written_.push_back(static_cast<std::byte>(bitBuffer_ << (8 - bitCount_)));
    }
    flush();
}

/// Of the encoder; decoders have their own.
std::int32_t entryAdapt(Filter& filter, Operation operation, std::byte* buffer,
                        std::int32_t* argument) {
    auto& self = static_cast<AdaptEncoder&>(filter);
    switch (operation) {
    case Operation::read:
        failException(Exception::io);
    case Operation::write:
        self.encode({buffer, static_cast<std::size_t>(std::max(*argument, std::int32_t{0}))});
        return *argument;
    case Operation::seek:
    case Operation::mark:
        return callFilter(*self.next, operation, buffer, argument);
    case Operation::link:
        self.begin();
        return 0;
    case Operation::unlink:
        self.finish();
        return 0;
    default:
        return 0;
    }
}

} // namespace

FilterOwner setupAdapt(AdaptDirection direction, std::uint32_t earlyChange) {
    if (earlyChange > 1) {
        failException(Exception::type);
    }
    switch (direction) {
    case AdaptDirection::decode:
        return std::make_unique<AdaptDecoder>(earlyChange);
    case AdaptDirection::encode:
        return std::make_unique<AdaptEncoder>();
    }
    failException(Exception::type);
}

} // namespace corvane
