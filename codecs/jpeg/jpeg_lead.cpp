#include "codecs/jpeg/jpeg_lead.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

using namespace std::string_view_literals;

constexpr int startOfImage = 0xD8, endOfImage = 0xD9, startOfScan = 0xDA;
constexpr int application0 = 0xE0, application1 = 0xE1, application14 = 0xEE;

class MarkerReader {
public:
    MarkerReader(const JpegBytes& data, std::size_t mostBytes) : data_(data), left_(mostBytes) {}

    /// -1 at the end of the data, or past what is read of them.
    int byte() {
        if (at_ == count_) {
            const std::size_t wanted = std::min(block_.size(), left_);
            count_ = wanted == 0 ? 0 : data_(std::span(block_).first(wanted));
            left_ = count_ == 0 ? 0 : left_ - count_;
            at_ = 0;
            done_ += count_;
        }
        return at_ < count_ ? std::to_integer<int>(block_[at_++]) : -1;
    }

    /// Bytes that were taken.
    std::uint64_t position() const { return done_ - (count_ - at_); }

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

    /// The segment behind a marker, as far as it goes.
    std::vector<std::uint8_t> segment() {
        const int high = byte();
        const int low = byte();
        std::vector<std::uint8_t> bytes;
        for (int left = low < 0 ? 0 : (high << 8 | low) - 2; left > 0; --left) {
            const int value = byte();
            if (value < 0) {
                break;
            }
            bytes.push_back(static_cast<std::uint8_t>(value));
        }
        return bytes;
    }

private:
    const JpegBytes& data_;
    std::size_t left_;
    std::array<std::byte, 4096> block_{};
    std::size_t at_ = 0;
    std::size_t count_ = 0;
    std::uint64_t done_ = 0; ///< bytes of all blocks so far
};

bool isFrame(int marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

/// Markers without a segment.
bool standsAlone(int marker) {
    return marker <= 0x01 || (marker >= 0xD0 && marker <= startOfImage);
}

bool startsWith(std::span<const std::uint8_t> segment, std::string_view text) {
    return segment.size() >= text.size() &&
           std::ranges::equal(segment.first(text.size()), text, {},
                              [](std::uint8_t byte) { return static_cast<char>(byte); });
}

std::optional<JpegFrame> readFrame(std::span<const std::uint8_t> segment, int marker) {
    constexpr std::size_t fixed = 6;
    constexpr std::size_t each = 3;
    if (segment.size() < fixed || segment.size() < fixed + each * segment[5]) {
        return std::nullopt;
    }
    JpegFrame frame;
    frame.marker = static_cast<std::uint8_t>(marker);
    frame.bits = segment[0];
    frame.height = segment[1] << 8 | segment[2];
    frame.width = segment[3] << 8 | segment[4];
    frame.components = segment[5];
    const std::size_t named = std::min<std::size_t>(frame.identifiers.size(), segment[5]);
    for (std::size_t i = 0; i < named; ++i) {
        frame.identifiers[i] = segment[fixed + each * i];
    }
    return frame;
}

/// Numbers of a block of TIFF 6.0. Outside it: 0.
class TiffNumbers {
public:
    TiffNumbers(std::span<const std::uint8_t> bytes, bool lowFirst)
        : bytes_(bytes), lowFirst_(lowFirst) {}

    std::uint32_t at(std::uint64_t offset, std::size_t size) const {
        if (offset > bytes_.size() || bytes_.size() - offset < size) {
            return 0;
        }
        const auto number = bytes_.subspan(static_cast<std::size_t>(offset), size);
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            value = value << 8 | number[lowFirst_ ? size - 1 - i : i];
        }
        return value;
    }

private:
    std::span<const std::uint8_t> bytes_;
    bool lowFirst_;
};

/// That of the first directory; none where the segment holds no Exif data.
std::optional<Orientation> orientationOf(std::span<const std::uint8_t> segment) {
    constexpr std::string_view mark = "Exif\0\0"sv;
    if (!startsWith(segment, mark)) {
        return std::nullopt;
    }
    const std::span<const std::uint8_t> tiff = segment.subspan(mark.size());
    const bool lowFirst = startsWith(tiff, "II");
    if (!lowFirst && !startsWith(tiff, "MM")) {
        return std::nullopt;
    }
    constexpr std::uint32_t tag = 0x112;
    constexpr std::uint32_t entrySize = 12;
    const TiffNumbers numbers(tiff, lowFirst);
    const std::uint64_t directory = numbers.at(4, 4);
    const std::uint32_t count = numbers.at(directory, 2);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t entry = directory + 2 + std::uint64_t{i} * entrySize;
        if (numbers.at(entry, 2) == tag) {
            const auto value = static_cast<Orientation>(numbers.at(entry + 8, 2));
            return value >= 1 && value <= 8 ? value : upright;
        }
    }
    return upright;
}

void readTransform(std::span<const std::uint8_t> segment, JpegLead& lead) {
    constexpr std::size_t place = 11;
    if (segment.size() > place) {
        lead.transform = segment[place];
        lead.hasKnownTransform = startsWith(segment, "Adobe");
    }
}

} // namespace

JpegKind JpegFrame::kind() const {
    switch (marker) {
    case 0xC0:
    case 0xC1:
    case 0xC2:
        return bits == 8 ? JpegKind::usual : JpegKind::deep;
    case 0xC3:
    case 0xCB:
        return JpegKind::lossless;
    case 0xC9:
    case 0xCA:
        return JpegKind::arithmetic;
    default:
        return JpegKind::hierarchical;
    }
}

/// The rule of the IJG's library, which browsers follow.
bool JpegLead::isYccAlone() const {
    if (hasJfif) {
        return true;
    }
    if (transform && hasKnownTransform) {
        return *transform != 0;
    }
    constexpr std::string_view plain = "RGB";
    return !frame || !startsWith(frame->identifiers, plain);
}

JpegLead readJpegLead(const JpegBytes& data, std::size_t mostBytes) {
    MarkerReader reader(data, mostBytes);
    JpegLead lead;
    std::optional<Orientation> orientation;
    lead.isAtStart = reader.byte() == 0xFF && reader.byte() == startOfImage;
    for (int marker = reader.marker(); marker >= 0; marker = reader.marker()) {
        if (marker == startOfScan) {
            lead.scan = reader.position();
        }
        if (marker == startOfScan || marker == endOfImage) {
            break;
        }
        if (standsAlone(marker)) {
            continue;
        }
        const std::vector<std::uint8_t> segment = reader.segment();
        if (isFrame(marker) && !lead.frame) {
            lead.frame = readFrame(segment, marker);
        } else if (marker == application0) {
            lead.hasJfif = lead.hasJfif || startsWith(segment, "JFIF");
        } else if (marker == application1 && !orientation) {
            orientation = orientationOf(segment);
        } else if (marker == application14) {
            readTransform(segment, lead);
        }
    }
    lead.orientation = orientation.value_or(upright);
    return lead;
}

} // namespace corvane
