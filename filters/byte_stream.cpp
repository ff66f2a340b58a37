#include "filters/byte_stream.h"

#include "runtime/exception.h"

namespace corvane {

std::int32_t ByteStream::get() {
    if (waiting_) {
        waiting_ = false;
        return std::to_integer<std::int32_t>(cell_);
    }
    if (readFilter(filter_, {&cell_, 1}) != 1) {
        ended_ = true;
        return -1;
    }
    return std::to_integer<std::int32_t>(cell_);
}

std::int32_t ByteStream::put(std::uint8_t byte) {
    waiting_ = false;
    cell_ = std::byte{byte};
    std::int32_t count = 1;
    callFilter(filter_, Operation::write, &cell_, &count);
    if (count != 1) {
        failed_ = true;
        return -1;
    }
    return byte;
}

void ByteStream::unget(std::uint8_t byte) {
    if (waiting_) {
        failException(Exception::codec);
    }
    waiting_ = true;
    cell_ = std::byte{byte};
}

std::int32_t ByteStream::read(std::span<std::byte> items) {
    if (waiting_ && !items.empty()) {
        items.front() = cell_;
        items = items.subspan(1);
    }
    waiting_ = false;
    const std::size_t count = readFilter(filter_, items);
    if (count != items.size()) {
        failException(Exception::io);
    }
    return static_cast<std::int32_t>(count);
}

std::int32_t ByteStream::write(std::span<const std::byte> items) {
    waiting_ = false;
    writeFilter(filter_, items);
    return static_cast<std::int32_t>(items.size());
}

} // namespace corvane
