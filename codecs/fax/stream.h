// The fax codec's own view of the bytes below it: a source when decoding, a sink when encoding.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

/// Where the bytes come from or go to; its owner outlives every stream over it. A source has no
/// need of `write`, a sink of no other.
class FaxPort {
public:
    virtual ~FaxPort() = default;
    /// Fills the front of `bytes`; 0 at the end of the data. Raises what the source raises.
    virtual std::size_t read(std::span<std::byte>) { return 0; }
    /// The last `count` bytes read are not needed: who reads the source next wants them. At most
    /// `faxGiveBackRoom` more than the last read delivered.
    virtual void giveBack(std::size_t) {}
    /// False where not all of `bytes` were accepted.
    virtual bool write(std::span<const std::byte>) { return false; }
};

inline constexpr std::size_t faxBufferSize = 1024;
/// Room in front of the buffer for bytes that come back after the buffer was filled anew.
inline constexpr std::size_t faxGiveBackRoom = 8;

struct FaxByteStream {
    bool ended = false;
    bool failed = false;
    bool reading = false;
    bool writing = false;
    std::size_t count = 0;        ///< bytes left to read, or room left to write
    std::byte* current = nullptr; ///< the next byte to read or write
    FaxPort* port = nullptr;
    std::array<std::byte, faxGiveBackRoom + faxBufferSize> buffer{};

    FaxByteStream() = default;
    FaxByteStream(const FaxByteStream&) = delete;
    FaxByteStream& operator=(const FaxByteStream&) = delete;
};

/// Direction 0 reads from the port, 1 writes to it; any other raises `codec`.
void cc_fsetup(FaxByteStream& stream, FaxPort& port, std::int32_t direction);
/// Writes the bytes held, or gives the bytes not consumed back to the port; clears the record.
/// False where the port did not accept them. Whoever abandons a stream just drops it.
bool cc_ffinal(FaxByteStream& stream);

/// The next byte, 0 to 255; -1 at the end of the data, after an error and on a sink.
std::int32_t cc_fgetc(FaxByteStream& stream);
/// The byte; -1 where there is no room left, after an error and on a source.
std::int32_t cc_fputc(std::int32_t byte, FaxByteStream& stream);
/// Puts back a byte that was read, newest first, at most `faxGiveBackRoom` of them in a row.
void cc_ungetc(std::int32_t byte, FaxByteStream& stream);
/// Gives all bytes not consumed back to the port.
void cc_giveBack(FaxByteStream& stream);

inline bool cc_feof(const FaxByteStream& stream) {
    return stream.ended;
}
inline bool cc_ferror(const FaxByteStream& stream) {
    return stream.failed;
}

/// Raises `codec`.
[[noreturn]] void cc_error();

} // namespace corvane
