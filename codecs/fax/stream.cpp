#include "codecs/fax/stream.h"

#include "runtime/exception.h"

namespace corvane {

namespace {

std::byte* bufferStart(FaxByteStream& stream) {
    return stream.buffer.data() + faxGiveBackRoom;
}

bool fillBuffer(FaxByteStream& stream) {
    stream.current = bufferStart(stream);
    stream.count = stream.port->read(std::span(stream.buffer).subspan(faxGiveBackRoom));
    stream.ended = stream.count == 0;
    return !stream.ended;
}

bool writeBuffer(FaxByteStream& stream) {
    stream.current = bufferStart(stream);
    const auto held = std::span(stream.buffer).subspan(faxGiveBackRoom);
    const bool accepted = stream.port->write(held.first(faxBufferSize - stream.count));
    stream.count = accepted ? faxBufferSize : 0;
    return accepted;
}

} // namespace

void cc_fsetup(FaxByteStream& stream, FaxPort& port, std::int32_t direction) {
    if (direction != 0 && direction != 1) {
        cc_error();
    }
    stream.ended = false;
    stream.failed = false;
    stream.reading = direction == 0;
    stream.writing = direction == 1;
    stream.count = stream.writing ? faxBufferSize : 0;
    stream.current = bufferStart(stream);
    stream.port = &port;
}

bool cc_ffinal(FaxByteStream& stream) {
    bool accepted = true;
    if (stream.writing && stream.count < faxBufferSize && !stream.failed) {
        accepted = writeBuffer(stream);
    } else if (stream.reading) {
        cc_giveBack(stream);
    }
    stream.reading = false;
    stream.writing = false;
    stream.count = 0;
    stream.port = nullptr;
    return accepted;
}

std::int32_t cc_fgetc(FaxByteStream& stream) {
    if (stream.ended || stream.failed || !stream.reading) {
        return -1;
    }
    if (stream.count == 0 && !fillBuffer(stream)) {
        return -1;
    }
    --stream.count;
    return std::to_integer<std::int32_t>(*stream.current++);
}

std::int32_t cc_fputc(std::int32_t byte, FaxByteStream& stream) {
    if (stream.ended || stream.failed || !stream.writing) {
        return -1;
    }
    if (stream.count == 0 && !writeBuffer(stream)) {
        stream.failed = true;
        return -1;
    }
    --stream.count;
    *stream.current++ = static_cast<std::byte>(byte);
    return byte;
}

void cc_ungetc(std::int32_t byte, FaxByteStream& stream) {
    if (!stream.reading || stream.current == stream.buffer.data()) {
        cc_error();
    }
    *--stream.current = static_cast<std::byte>(byte);
    ++stream.count;
    stream.ended = false;
}

void cc_giveBack(FaxByteStream& stream) {
    if (stream.count > 0) {
        stream.port->giveBack(stream.count);
        stream.count = 0;
    }
}

void cc_error() {
    failException(Exception::codec);
}

} // namespace corvane
