// The inflate filter (FlateDecode; RFC 1950 and 1951), over zlib.
#pragma once

#include "filters/decoder.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

struct z_stream_s;

namespace corvane {

/// Reads deflated data behind a two-byte header. Neither the header nor the checksum behind the
/// data is checked: what can be decoded is delivered, and the data end where decoding cannot go on.
/// Writing raises `io`. Holds zlib's window, 48 KB, and one block of the intake.
class InflateFilter final : public Decoder {
public:
    InflateFilter();
    ~InflateFilter() override;

private:
    std::size_t decode(std::span<std::byte> out) override;
    void restart() override;

    ZoneCharge charge_;
    std::unique_ptr<z_stream_s> stream_;
    bool headerSeen_ = false;
};

/// No memory for zlib raises `memory`.
FilterOwner setupInflate();

} // namespace corvane
