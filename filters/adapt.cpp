#include "filters/adapt.h"

#include "runtime/exception.h"

#include <bit>
#include <cstring>

namespace corvane {

namespace {

/// Bits still to be read, the next one highest, at least `count` of which count.
struct BitWindow {
    std::uint64_t bits;
    std::uint32_t count;

    /// Tops up to at least 56 bits from eight bytes of which some stay for the next time.
    void fill(const std::byte*& from) {
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < sizeof word; ++i) {
            word = word << 8 | std::to_integer<std::uint64_t>(from[i]);
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

AdaptFilter::AdaptFilter(AdaptDirection direction, std::int16_t earlyChange)
    : Decoder(entryAdapt), direction_(direction) {
    codes_.earlyChange = static_cast<std::uint32_t>(earlyChange);
}

void AdaptFilter::restart() {
    codes_.clear();
    bitCount_ = 0;
    bitBuffer_ = 0;
    remaining_ = 0;
    if (charge_.bytes() == 0) {
        charge_.resize(sizeof(AdaptDecodeTable));
    }
    if (direction_ == AdaptDirection::decode) {
        if (!decodeTable_) {
            decodeTable_ = std::make_unique<AdaptDecodeTable>();
        }
    } else {
        encodeTable_ = std::make_unique<AdaptEncodeTable>();
        putCode(adaptClear);
        flush();
    }
}

/// Decodes codes that are whole in the intake and whose strings fit in `out`, moving it on. False
/// where the intake has too few bytes left for this way or the next code is to be looked at closer.
bool AdaptFilter::decodeWords(std::span<std::byte>& out) {
    const std::span<const std::byte> in = intake().held();
    const std::byte* from = in.data();
    const std::byte* const end = from + in.size();
    std::byte* to = out.data();
    std::byte* const limit = to + out.size();
    AdaptDecodeTable& table = *decodeTable_;
    AdaptCodes codes = codes_;
    BitWindow window{.bits = bitCount_ == 0 ? 0 : std::uint64_t{bitBuffer_} << (64 - bitCount_),
                     .count = bitCount_};
    bool goesOn = true;
    while (end - from >= 8) {
        window.fill(from);
        // 56 bits are four codes.
        for (int i = 0; i < 4 && goesOn; ++i) {
            const std::uint32_t code = window.peek(codes.width);
            const std::uint32_t width = codes.width;
            if (code == adaptClear) {
                codes.clear();
            } else if (code == adaptEnd ||
                       static_cast<std::size_t>(limit - to) <
                           AdaptDecodeTable::longestString + AdaptDecodeTable::overrun) {
                goesOn = false;
                break;
            } else if (table.admit(codes, code)) {
                table.expand(code, to);
                to += table.length(code);
            } else {
                goesOn = false;
                break;
            }
            window.drop(width);
        }
        if (!goesOn) {
            break;
        }
    }
    codes_ = codes;
    // Whole bytes that no code needed yet are left to the intake.
    from -= window.count / 8;
    bitCount_ = window.count % 8;
    bitBuffer_ = bitCount_ == 0 ? 0 : window.peek(bitCount_);
    intake().take(static_cast<std::size_t>(from - in.data()));
    out = {to, limit};
    return goesOn;
}

} // namespace corvane
