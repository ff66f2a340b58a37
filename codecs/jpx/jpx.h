// The JPX codec (JPEG 2000, ISO/IEC 15444-1), over OpenJPEG.
#pragma once

#include "codecs/jpx/header.h"
#include "runtime/memory.h"
#include "runtime/work_meter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct opj_image;

namespace corvane {

/// A picture that is decoded as a whole: four bytes a sample, charged to the zone.
class JpxPicture {
public:
    /// Decodes a file of this header. Raises `codec` where nothing can be decoded, and where the
    /// file holds other components than its header says; `limit` where the samples would pass
    /// `budget::jpxBytes`. Data that end early make what they hold.
    JpxPicture(std::span<const std::byte> file, const JpxHeader& header, bool keepsPalette,
               CodecClock& clock);
    ~JpxPicture();
    JpxPicture(const JpxPicture&) = delete;
    JpxPicture& operator=(const JpxPicture&) = delete;

    /// Bits of a sample that is delivered.
    static std::uint32_t deliveredBits(const JpxHeader& header) { return header.bits > 8 ? 16 : 8; }

    /// Row `y`: samples of 8 or 16 bits (high byte first), alpha behind the colours of a pixel. The
    /// largest value of a component becomes the largest of those bits; indices stay as they are.
    void row(std::uint32_t y, std::span<std::byte> samples) const;

private:
    struct Channel {
        const std::int32_t* samples = nullptr;
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        std::int32_t lowest = 0; ///< of signed components below 0
        std::uint32_t highest = 0;
    };
    struct EndImage {
        void operator()(opj_image* image) const;
    };

    void decode(std::span<const std::byte> file);
    void arrange();
    void rowOf(const Channel& channel, std::uint32_t y, std::byte* to, std::size_t step) const;
    void makeRgb(std::span<std::byte> samples) const;

    JpxHeader header_;
    bool keepsPalette_;
    bool isYcc_ = false;
    ZoneCharge charge_;
    std::unique_ptr<opj_image, EndImage> image_;
    std::vector<Channel> channels_; ///< alpha last
};

} // namespace corvane
