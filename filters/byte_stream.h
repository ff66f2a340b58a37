// One byte at a time over a filter, with one byte pushed back: a chain as a stream of characters.
#pragma once

#include "filters/filter.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

/// One user's view of a chain. The flags of error and end are sticky.
struct ByteStream {
    explicit ByteStream(Filter& chain) : filter(chain) {}

    Filter& filter;
    bool filter_error = false;  ///< a byte was not accepted
    bool filter_eof = false;    ///< the data have ended
    bool filter_ungetc = false; ///< a byte is pushed back
    std::byte filter_buffer{};  ///< that byte, or the last one moved
};

/// The next byte, 0 to 255, or -1 at the end of the data.
std::int32_t dct_getc(ByteStream& stream);
/// The byte, or -1 where it was not accepted. Forgets a pushed-back byte.
std::int32_t dct_putc(std::uint8_t byte, ByteStream& stream);
/// A second byte before the first was read raises `codec`.
void dct_ungetc(std::uint8_t byte, ByteStream& stream);
/// Fills `items`, a pushed-back byte first. Fewer bytes raise `io`. Returns the bytes that came
/// from the chain: one less than asked for where a pushed-back byte was used.
std::int32_t dct_read(std::span<std::byte> items, ByteStream& stream);
/// Bytes written. Raises `io` where not all were accepted.
std::int32_t dct_write(std::span<const std::byte> items, ByteStream& stream);

} // namespace corvane
