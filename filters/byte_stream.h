// One byte at a time over a filter, with one byte pushed back: how the image codecs see a chain.
#pragma once

#include "filters/filter.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

/// One codec's view of a chain. The end and error flags are sticky.
class ByteStream {
public:
    explicit ByteStream(Filter& filter) : filter_(filter) {}

    /// The next byte, 0 to 255, or -1 at the end of the data.
    std::int32_t get();
    /// The byte, or -1 where it was not accepted. Forgets a pushed-back byte.
    std::int32_t put(std::uint8_t byte);
    /// A second byte before the first was read raises `codec`.
    void unget(std::uint8_t byte);
    /// Fills `items`, a pushed-back byte first. Fewer bytes raise `io`. Returns the bytes that came
    /// from the chain: one less than asked for where a pushed-back byte was used.
    std::int32_t read(std::span<std::byte> items);
    /// Bytes written. Raises `io` where not all were accepted.
    std::int32_t write(std::span<const std::byte> items);

    bool ended() const { return ended_; }
    bool failed() const { return failed_; }

private:
    Filter& filter_;
    std::byte cell_{};
    bool waiting_ = false;
    bool ended_ = false;
    bool failed_ = false;
};

} // namespace corvane
