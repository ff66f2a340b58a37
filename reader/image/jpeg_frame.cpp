#include "reader/image/jpeg_frame.h"

#include "runtime/budget.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

constexpr int startOfImage = 0xD8, endOfImage = 0xD9, startOfScan = 0xDA;
constexpr int application0 = 0xE0, application1 = 0xE1, application14 = 0xEE;

/// Bytes of a segment that are looked at: a frame of four components, the first directory of Exif
/// data.
constexpr std::size_t mostLooked = 4096;

class MarkerReader {
public:
    explicit MarkerReader(Filter& data) : data_(data), block_(1 << 12) {}

    /// -1 at the end of the data, or past the budget.
    int byte() {
        if (at_ == count_) {
            count_ = read_ >= budget::jpegLeadBytes ? 0 : readFilter(data_, block_);
            read_ += static_cast<std::int64_t>(count_);
            at_ = 0;
        }
        return at_ < count_ ? std::to_integer<int>(block_[at_++]) : -1;
    }

    /// The next marker, past whatever stands in front of it; -1 at the end.
    int marker() {
        for (int value = byte(); value >= 0; value = byte()) {
            bool isMarker = false;
            while (value == 0xFF) {
                value = byte();
                isMarker = true;
            }
            if (isMarker && value != 0) {
                return value;
            }
        }
        return -1;
    }

    /// The segment behind a marker, as far as it counts.
    std::vector<std::uint8_t> segment() {
        const int high = byte();
        std::vector<std::uint8_t> kept;
        for (int left = (high << 8 | byte()) - 2; left > 0; --left) {
            const int value = byte();
            if (value < 0) {
                break;
            }
            if (kept.size() < mostLooked) {
                kept.push_back(static_cast<std::uint8_t>(value));
            }
        }
        return kept;
    }

private:
    Filter& data_;
    std::vector<std::byte> block_;
    std::size_t at_ = 0;
    std::size_t count_ = 0;
    std::int64_t read_ = 0;
};

bool isFrame(int marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool startsWith(std::span<const std::uint8_t> segment, std::string_view text) {
    return segment.size() >= text.size() &&
           std::ranges::equal(segment.first(text.size()), text, [](std::uint8_t byte, char c) {
               return static_cast<char>(byte) == c;
           });
}

void readFrame(std::span<const std::uint8_t> segment, int marker, JpegFrame& frame) {
    if (segment.size() < 6) {
        return;
    }
    const auto word = [&](std::size_t at) { return segment[at] << 8 | segment[at + 1]; };
    frame.height = word(1);
    frame.width = word(3);
    frame.components = segment[5];
    frame.isUsual = marker <= 0xC2 && segment[0] == 8;
    for (std::size_t i = 0; i < frame.identifiers.size() && 6 + 3 * i < segment.size(); ++i) {
        frame.identifiers[i] = segment[6 + 3 * i];
    }
}

/// Whether the orientation in the first directory (TIFF 6.0) is another than upright.
bool asksForTurning(std::span<const std::uint8_t> segment) {
    constexpr std::string_view name("Exif\0\0", 6);
    constexpr std::uint32_t orientation = 0x0112;
    if (!startsWith(segment, name) || segment.size() < name.size() + 8) {
        return false;
    }
    const std::span<const std::uint8_t> tiff = segment.subspan(name.size());
    const bool isLittle = tiff[0] == 'I';
    const auto number = [&](std::size_t at, std::size_t count) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t place = isLittle ? at + count - 1 - i : at + i;
            value = value << 8 | (place < tiff.size() ? tiff[place] : 0U);
        }
        return value;
    };
    const std::size_t directory = number(4, 4);
    const std::size_t entries = directory < tiff.size() ? number(directory, 2) : 0;
    for (std::size_t i = 0; i < entries; ++i) {
        const std::size_t entry = directory + 2 + 12 * i;
        if (entry + 12 > tiff.size()) {
            break;
        }
        if (number(entry, 2) == orientation) {
            const std::uint32_t value = number(entry + 8, 2);
            return value > 1 && value <= 8;
        }
    }
    return false;
}

void readTransform(std::span<const std::uint8_t> segment, JpegFrame& frame) {
    constexpr std::size_t place = 11;
    if (segment.size() > place) {
        frame.transform = segment[place];
    }
}

} // namespace

/// The rule of the IJG's library, which browsers follow.
bool JpegFrame::isYccAlone() const {
    if (hasJfif) {
        return true;
    }
    if (transform) {
        return *transform != 0;
    }
    return !(identifiers[0] == 'R' && identifiers[1] == 'G' && identifiers[2] == 'B');
}

std::optional<JpegFrame> readJpegFrame(Filter& data) {
    MarkerReader reader(data);
    JpegFrame frame;
    frame.isAtStart = reader.byte() == 0xFF && reader.byte() == startOfImage;
    for (int marker = frame.isAtStart ? reader.marker() : 0; marker != startOfScan;
         marker = reader.marker()) {
        if (marker < 0 || marker == endOfImage) {
            break;
        }
        if (marker == 0 || marker == startOfImage || (marker >= 0xD0 && marker <= 0xD7)) {
            continue;
        }
        const std::vector<std::uint8_t> segment = reader.segment();
        if (isFrame(marker)) {
            readFrame(segment, marker, frame);
        } else if (marker == application0) {
            frame.hasJfif = frame.hasJfif || startsWith(segment, "JFIF");
        } else if (marker == application1) {
            frame.isTurned = frame.isTurned || asksForTurning(segment);
        } else if (marker == application14) {
            readTransform(segment, frame);
        }
    }
    if (frame.width <= 0 || frame.height <= 0 || frame.components <= 0 || frame.components > 4) {
        return std::nullopt;
    }
    return frame;
}

} // namespace corvane
