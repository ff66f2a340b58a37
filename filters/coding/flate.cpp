#include "filters/coding/flate.h"

#include "runtime/exception.h"

#include <algorithm>
#include <zlib.h>

namespace corvane {

namespace {

constexpr std::size_t headerSize = 2;
constexpr std::size_t checksumSize = 4;

/// Deflated data without header and checksum, the largest window.
constexpr int rawWindow = -15;

/// What zlib allocates for inflating, generously.
constexpr std::int64_t windowCharge = 48 << 10;

} // namespace

InflateFilter::InflateFilter()
    : Decoder(entryDecoder), charge_(windowCharge), stream_(std::make_unique<z_stream_s>()) {
    if (inflateInit2(stream_.get(), rawWindow) != Z_OK) {
        failException(Exception::memory);
    }
}

InflateFilter::~InflateFilter() {
    inflateEnd(stream_.get());
}

void InflateFilter::restart() {
    inflateReset(stream_.get());
    headerSeen_ = false;
}

std::size_t InflateFilter::decode(std::span<std::byte> out) {
    if (!headerSeen_) {
        intake().take(std::min(intake().hold(headerSize).size(), headerSize));
        headerSeen_ = true;
    }
    std::size_t done = 0;
    while (done < out.size()) {
        const std::span<const std::byte> in = intake().held();
        const std::span<std::byte> room = out.subspan(done);
        // zlib's bytes are unsigned characters, and it does not change those that it reads.
        stream_->next_in =
            static_cast<Bytef*>(const_cast<void*>(static_cast<const void*>(in.data())));
        stream_->avail_in = static_cast<uInt>(in.size());
        stream_->next_out = static_cast<Bytef*>(static_cast<void*>(room.data()));
        stream_->avail_out = static_cast<uInt>(room.size());
        const int result = inflate(stream_.get(), Z_NO_FLUSH);
        intake().take(in.size() - stream_->avail_in);
        done += room.size() - stream_->avail_out;
        if (result == Z_STREAM_END) {
            intake().take(std::min(intake().hold(checksumSize).size(), checksumSize));
            end();
            break;
        }
        if (result == Z_MEM_ERROR) {
            failException(Exception::memory);
        }
        if (result != Z_OK) {
            // Damage, or no more bytes below.
            break;
        }
    }
    return done;
}

FilterOwner setupInflate() {
    return std::make_unique<InflateFilter>();
}

} // namespace corvane
