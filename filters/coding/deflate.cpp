#include "filters/coding/deflate.h"

#include "filters/encoder.h"
#include "filters/text_sink.h"
#include "runtime/exception.h"
#include "runtime/memory.h"

#include <array>
#include <span>
#include <zlib.h>

namespace corvane {

namespace {

/// What zlib allocates for deflating with its usual window and memory level, generously.
constexpr std::int64_t deflateCharge = 272 << 10;

class DeflateFilter final : public Encoder {
public:
    explicit DeflateFilter(int level) : charge_(deflateCharge) {
        if (deflateInit(&stream_, level) != Z_OK) {
            failException(Exception::memory);
        }
    }
    ~DeflateFilter() override { deflateEnd(&stream_); }

private:
    /// Deflates the bytes and hands on what zlib gives out.
    void run(std::span<const std::byte> in, int flush) {
        // zlib's bytes are unsigned characters, and it does not change those that it reads.
        stream_.next_in =
            static_cast<Bytef*>(const_cast<void*>(static_cast<const void*>(in.data())));
        stream_.avail_in = static_cast<uInt>(in.size());
        do {
            stream_.next_out = static_cast<Bytef*>(static_cast<void*>(out_.data()));
            stream_.avail_out = static_cast<uInt>(out_.size());
            if (deflate(&stream_, flush) == Z_STREAM_ERROR) {
                failException(Exception::io);
            }
            writeFilter(*next, std::span(out_).first(out_.size() - stream_.avail_out));
        } while (stream_.avail_out == 0);
    }

    void encode(std::span<const std::byte> bytes) override { run(bytes, Z_NO_FLUSH); }
    void finish() override { run({}, Z_FINISH); }

    ZoneCharge charge_;
    z_stream stream_{};
    std::array<std::byte, 16384> out_{};
};

} // namespace

FilterOwner setupDeflate() {
    return std::make_unique<DeflateFilter>(Z_DEFAULT_COMPRESSION);
}

FilterOwner setupPixelDeflate() {
    constexpr int level = 4; // photographs are even shorter at 3, drawings a tenth longer
    return std::make_unique<DeflateFilter>(level);
}

std::string deflated(std::string_view text) {
    TextSink sink;
    Chain chain(&sink);
    chain.link(setupDeflate());
    writeFilter(*chain.top(), std::as_bytes(std::span(text)));
    chain.unlink();
    return sink.take();
}

} // namespace corvane
