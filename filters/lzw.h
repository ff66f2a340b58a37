// The LZW filter (LZWDecode; PDF Reference, 3.3.3): codes of 9 to 12 bits, high bit first, 256
// clears the table, 257 ends the data.
#pragma once

#include "filters/decoder.h"
#include "filters/lzw_table.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace corvane {

enum class AdaptDirection : std::int32_t { decode = 0, encode = 1 };

/// Reading: a full table stays as it is until it is cleared; a code that has no entry ends the
/// data. Writing: begins with a clear code, and clears the table when it is full. The wrong
/// direction raises `io`. Holds the table, 68 KB, and one block of the intake.
class AdaptFilter final : public Decoder {
public:
    AdaptFilter(AdaptDirection direction, std::uint32_t earlyChange);

private:
    std::size_t decode(std::span<std::byte> out) override;
    void restart() override;
    void decodeWords(std::span<std::byte>& out);
    void keepString(std::uint32_t code);
    std::uint32_t readCode();
    void putCode(std::uint32_t code);
    void encode(std::span<const std::byte> bytes);
    void finishEncoding();
    void flush();

    static std::int32_t entryAdapt(Filter& filter, Operation operation, std::byte* buffer,
                                   std::int32_t* argument);

    AdaptDirection direction_;
    std::uint32_t bitCount_ = 0;    ///< bits of `bitBuffer_`, its lowest, that count
    std::uint32_t bitBuffer_ = 0;   ///< less than a whole byte between operations
    std::uint32_t currentCode_ = 0; ///< decoder: whose string is being delivered
    std::size_t remaining_ = 0;     ///< decoder: bytes of that string not yet delivered
    AdaptCodes codes_;
    std::vector<std::byte> written_; ///< encoder: not yet handed on; empty between operations
    std::unique_ptr<AdaptDecodeTable> decodeTable_;
    std::unique_ptr<AdaptEncodeTable> encodeTable_;
    ZoneCharge charge_;
};

/// `earlyChange`: how many codes early the width grows, when reading; writing knows 0 only. Another
/// direction than the two, or early change than 0 and 1, raises `type`.
FilterOwner setupAdapt(AdaptDirection direction, std::uint32_t earlyChange = 1);

} // namespace corvane
