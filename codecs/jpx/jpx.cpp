#include "codecs/jpx/jpx.h"

#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <openjpeg.h>

namespace corvane {

namespace {

/// Bytes of memory as OpenJPEG reads them. Its procedures are called by C code and raise nothing.
struct Source {
    std::span<const std::byte> file;
    std::size_t position = 0;

    std::size_t left() const { return file.size() - position; }

    static OPJ_SIZE_T read(void* to, OPJ_SIZE_T count, void* source) {
        Source& self = *static_cast<Source*>(source);
        count = std::min<std::size_t>(count, self.left());
        if (count == 0) {
            return static_cast<OPJ_SIZE_T>(-1);
        }
        std::memcpy(to, self.file.data() + self.position, count);
        self.position += count;
        return count;
    }
    static OPJ_OFF_T skip(OPJ_OFF_T count, void* source) {
        Source& self = *static_cast<Source*>(source);
        if (count < 0) {
            return -1;
        }
        const auto step = std::min(static_cast<std::size_t>(count), self.left());
        self.position += step;
        return static_cast<OPJ_OFF_T>(step);
    }
    static OPJ_BOOL seek(OPJ_OFF_T position, void* source) {
        Source& self = *static_cast<Source*>(source);
        if (position < 0 || static_cast<std::size_t>(position) > self.file.size()) {
            return OPJ_FALSE;
        }
        self.position = static_cast<std::size_t>(position);
        return OPJ_TRUE;
    }
};

struct EndStream {
    void operator()(opj_stream_t* stream) const { opj_stream_destroy(stream); }
};
struct EndCodec {
    void operator()(opj_codec_t* codec) const { opj_destroy_codec(codec); }
};
using Stream = std::unique_ptr<opj_stream_t, EndStream>;
using Codec = std::unique_ptr<opj_codec_t, EndCodec>;

void hearNothing(const char*, void*) {}

Stream openStream(Source& source) {
    constexpr std::size_t blockBytes = 1 << 16;
    Stream stream(opj_stream_create(blockBytes, OPJ_TRUE));
    if (stream == nullptr) {
        failException(Exception::memory);
    }
    opj_stream_set_user_data(stream.get(), &source, nullptr);
    opj_stream_set_user_data_length(stream.get(), source.file.size());
    opj_stream_set_read_function(stream.get(), Source::read);
    opj_stream_set_skip_function(stream.get(), Source::skip);
    opj_stream_set_seek_function(stream.get(), Source::seek);
    return stream;
}

Codec openCodec(std::span<const std::byte> file, bool keepsPalette) {
    const bool isBare = !file.empty() && file.front() == std::byte{0xFF};
    Codec codec(opj_create_decompress(isBare ? OPJ_CODEC_J2K : OPJ_CODEC_JP2));
    if (codec == nullptr) {
        failException(Exception::memory);
    }
    opj_set_info_handler(codec.get(), hearNothing, nullptr);
    opj_set_warning_handler(codec.get(), hearNothing, nullptr);
    opj_set_error_handler(codec.get(), hearNothing, nullptr);
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    if (keepsPalette) {
        parameters.flags |= OPJ_DPARAMETERS_IGNORE_PCLR_CMAP_CDEF_FLAG;
    }
    if (!opj_setup_decoder(codec.get(), &parameters)) {
        failException(Exception::codec);
    }
    opj_decoder_set_strict_mode(codec.get(), OPJ_FALSE);
    return codec;
}

/// Bytes of a precinct or a code block, with what hangs on it.
constexpr std::int64_t bytesOfRecord = 512;

/// Bytes that the samples take: those of the picture, and of the tile that is decoded.
std::int64_t sampleBytes(const JpxHeader& header) {
    const std::int64_t samples =
        std::int64_t{header.width} * header.height *
        std::max(header.stored, header.colours + (header.hasAlpha ? 1 : 0));
    return samples * std::int64_t{sizeof(OPJ_INT32)};
}

} // namespace

void JpxPicture::EndImage::operator()(opj_image* image) const {
    opj_image_destroy(image);
}

JpxPicture::JpxPicture(std::span<const std::byte> file, const JpxHeader& header, bool keepsPalette,
                       CodecClock& clock)
    : header_(header), keepsPalette_(keepsPalette) {
    if (sampleBytes(header) > budget::jpxBytes) {
        failException(Exception::limit);
    }
    const CodecClock::Scope scope(clock);
    clock.feed(file.size());
    clock.check();
    ZoneCharge records;
    records.resize(header.records * bytesOfRecord);
    charge_.resize(sampleBytes(header));
    decode(file);
    arrange();
}

JpxPicture::~JpxPicture() = default;

void JpxPicture::decode(std::span<const std::byte> file) {
    Source source{file};
    const Stream stream = openStream(source);
    const Codec codec = openCodec(file, keepsPalette_);
    opj_image_t* read = nullptr;
    const bool isRead = opj_read_header(stream.get(), codec.get(), &read) != OPJ_FALSE;
    image_.reset(read);
    if (!isRead || image_ == nullptr || image_->x1 - image_->x0 != header_.width ||
        image_->y1 - image_->y0 != header_.height || image_->numcomps != header_.stored) {
        failException(Exception::codec);
    }
    if (!opj_decode(codec.get(), stream.get(), image_.get())) {
        failException(Exception::codec);
    }
}

/// The channels in the order of their delivery.
void JpxPicture::arrange() {
    const std::uint32_t count = header_.colours + (header_.hasAlpha ? 1 : 0);
    if (image_->numcomps < count) {
        failException(Exception::codec);
    }
    std::vector<const opj_image_comp_t*> order;
    const opj_image_comp_t* alpha = nullptr;
    for (std::uint32_t i = 0; i < image_->numcomps; ++i) {
        const opj_image_comp_t& component = image_->comps[i];
        if (header_.hasAlpha && component.alpha != 0 && alpha == nullptr) {
            alpha = &component;
        } else if (order.size() < header_.colours) {
            order.push_back(&component);
        }
    }
    if (header_.hasAlpha) {
        order.push_back(alpha != nullptr ? alpha : &image_->comps[header_.colours]);
    }
    for (const opj_image_comp_t* component : order) {
        if (component->data == nullptr || component->w == 0 || component->h == 0 ||
            component->prec == 0 || component->prec > 31) {
            failException(Exception::codec);
        }
        const std::uint32_t highest = (1U << component->prec) - 1;
        channels_.push_back(
            {.samples = component->data,
             .width = component->w,
             .height = component->h,
             .lowest = component->sgnd != 0 ? -static_cast<std::int32_t>(highest / 2) - 1 : 0,
             .highest = highest});
    }
    if (channels_.size() != count) {
        failException(Exception::codec);
    }
    const auto isSubsampled = [&](const Channel& channel) {
        return channel.width != header_.width || channel.height != header_.height;
    };
    isYcc_ = header_.colours == 3 && (image_->color_space == OPJ_CLRSPC_SYCC ||
                                      (image_->color_space != OPJ_CLRSPC_SRGB &&
                                       (isSubsampled(channels_[1]) || isSubsampled(channels_[2]))));
}

void JpxPicture::rowOf(const Channel& channel, std::uint32_t y, std::byte* to,
                       std::size_t step) const {
    const std::size_t line = std::uint64_t{y} * channel.height / header_.height;
    const std::int32_t* const from = channel.samples + line * channel.width;
    const bool isWide = deliveredBits(header_) == 16;
    const std::uint64_t full = isWide ? 0xFFFF : 0xFF;
    const bool isSame = keepsPalette_ || channel.highest == full;
    const auto level = [&](std::size_t x) {
        const std::int64_t value =
            std::clamp<std::int64_t>(std::int64_t{from[x]} - channel.lowest, 0, channel.highest);
        const auto kept = static_cast<std::uint64_t>(value);
        return isSame ? std::min(kept, full)
                      : (kept * full + channel.highest / 2) / channel.highest;
    };
    for (std::uint32_t x = 0; x < header_.width; ++x, to += step) {
        const std::uint64_t value =
            level(channel.width == header_.width
                      ? x
                      : std::size_t{std::uint64_t{x} * channel.width / header_.width});
        if (isWide) {
            to[0] = static_cast<std::byte>(value >> 8);
            to[1] = static_cast<std::byte>(value);
        } else {
            to[0] = static_cast<std::byte>(value);
        }
    }
}

/// Pixels of luminance and two colour differences (ITU-R BT.601) to red, green and blue.
void JpxPicture::makeRgb(std::span<std::byte> samples) const {
    const std::size_t bytes = deliveredBits(header_) / 8;
    const double full = bytes == 2 ? 0xFFFF : 0xFF;
    const std::size_t step = channels_.size() * bytes;
    for (std::size_t at = 0; at + step <= samples.size(); at += step) {
        const auto value = [&](std::size_t i) {
            const std::byte* const place = samples.data() + at + i * bytes;
            const unsigned high = std::to_integer<unsigned>(place[0]);
            return bytes == 2 ? high << 8 | std::to_integer<unsigned>(place[1]) : high;
        };
        const double y = value(0);
        const double blue = value(1) - (full + 1) / 2;
        const double red = value(2) - (full + 1) / 2;
        const double levels[3] = {y + 1.402 * red, y - 0.344136 * blue - 0.714136 * red,
                                  y + 1.772 * blue};
        for (std::size_t i = 0; i < 3; ++i) {
            const auto level = static_cast<unsigned>(std::lround(std::clamp(levels[i], 0.0, full)));
            std::byte* const place = samples.data() + at + i * bytes;
            place[0] = static_cast<std::byte>(bytes == 2 ? level >> 8 : level);
            if (bytes == 2) {
                place[1] = static_cast<std::byte>(level);
            }
        }
    }
}

void JpxPicture::row(std::uint32_t y, std::span<std::byte> samples) const {
    const std::size_t bytes = deliveredBits(header_) / 8;
    const std::size_t step = channels_.size() * bytes;
    if (samples.size() < step * header_.width || y >= header_.height) {
        failException(Exception::range);
    }
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        rowOf(channels_[i], y, samples.data() + i * bytes, step);
    }
    if (isYcc_) {
        makeRgb(samples.first(step * header_.width));
    }
}

} // namespace corvane
