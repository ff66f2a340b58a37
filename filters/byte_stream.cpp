#include "filters/byte_stream.h"

#include "runtime/exception.h"

namespace corvane {

std::int32_t dct_getc(ByteStream& stream) {
    if (stream.filter_ungetc) {
        stream.filter_ungetc = false;
    } else if (readFilter(stream.filter, {&stream.filter_buffer, 1}) != 1) {
        stream.filter_eof = true;
        return -1;
    }
    return std::to_integer<std::int32_t>(stream.filter_buffer);
}

std::int32_t dct_putc(std::uint8_t byte, ByteStream& stream) {
    stream.filter_ungetc = false;
    stream.filter_buffer = std::byte{byte};
    std::int32_t count = 1;
    callFilter(stream.filter, Operation::write, &stream.filter_buffer, &count);
    if (count != 1) {
        stream.filter_error = true;
        return -1;
    }
    return byte;
}

void dct_ungetc(std::uint8_t byte, ByteStream& stream) {
    if (stream.filter_ungetc) {
        failException(Exception::codec);
    }
    stream.filter_ungetc = true;
    stream.filter_buffer = std::byte{byte};
}

std::int32_t dct_read(std::span<std::byte> items, ByteStream& stream) {
    if (stream.filter_ungetc && !items.empty()) {
        items.front() = stream.filter_buffer;
        items = items.subspan(1);
    }
    stream.filter_ungetc = false;
    const std::size_t count = readFilter(stream.filter, items);
    if (count != items.size()) {
        failException(Exception::io);
    }
    return static_cast<std::int32_t>(count);
}

std::int32_t dct_write(std::span<const std::byte> items, ByteStream& stream) {
    stream.filter_ungetc = false;
    writeFilter(stream.filter, items);
    return static_cast<std::int32_t>(items.size());
}

} // namespace corvane
