#include "app/images/jpeg_header.h"

#include "app/images/budget.h"
#include "app/images/image_error.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

constexpr unsigned startOfScan = 0xDA;
constexpr unsigned endOfImage = 0xD9;
constexpr unsigned application1 = 0xE1;  ///< Exif is there
constexpr unsigned application14 = 0xEE; ///< how colours are counted is there

[[noreturn]] void refuse() {
    throw ImageError("is damaged (its header cannot be read)");
}

/// Numbers of a block, in one of the two byte orders. Outside it: 0.
class Numbers {
public:
    Numbers(std::span<const std::byte> bytes, bool lowFirst) : bytes_(bytes), lowFirst_(lowFirst) {}

    std::uint32_t at(std::uint64_t offset, std::size_t size) const {
        if (offset > bytes_.size() || bytes_.size() - offset < size) {
            return 0;
        }
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t place = lowFirst_ ? size - 1 - i : i;
            number = number << 8 | std::to_integer<std::uint32_t>(
                                       bytes_[static_cast<std::size_t>(offset) + place]);
        }
        return number;
    }

private:
    std::span<const std::byte> bytes_;
    bool lowFirst_;
};

bool startsWith(std::span<const std::byte> bytes, std::string_view text) {
    return bytes.size() >= text.size() &&
           std::ranges::equal(bytes.first(text.size()), std::as_bytes(std::span(text)));
}

/// Of the first directory of an Exif segment.
Orientation orientationOf(std::span<const std::byte> segment) {
    using namespace std::string_view_literals;
    constexpr std::string_view mark = "Exif\0\0"sv;
    if (!startsWith(segment, mark)) {
        return upright;
    }
    const auto tiff = segment.subspan(mark.size());
    const bool lowFirst = startsWith(tiff, "II");
    if (!lowFirst && !startsWith(tiff, "MM")) {
        return upright;
    }
    constexpr std::uint32_t tag = 0x112;
    constexpr std::uint32_t entrySize = 12;
    const Numbers numbers(tiff, lowFirst);
    const std::uint64_t directory = numbers.at(4, 4);
    const std::uint32_t count = numbers.at(directory, 2);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t entry = directory + 2 + std::uint64_t{i} * entrySize;
        if (numbers.at(entry, 2) == tag) {
            const auto value = static_cast<int>(numbers.at(entry + 8, 2));
            return value >= 1 && value <= 8 ? value : upright;
        }
    }
    return upright;
}

bool isFrame(unsigned marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

ImageFacts factsOf(unsigned marker, std::span<const std::byte> frame) {
    const Numbers numbers(frame, false);
    ImageFacts facts;
    facts.coding = ImageCoding::jpeg;
    const std::uint32_t bits = numbers.at(0, 1);
    facts.height = static_cast<std::int32_t>(numbers.at(1, 2));
    facts.width = static_cast<std::int32_t>(numbers.at(3, 2));
    const std::uint32_t components = numbers.at(5, 1);
    if (frame.size() < 6 + 3 * std::size_t{components} || facts.width == 0 || facts.height == 0) {
        refuse();
    }
    constexpr unsigned progressive = 0xC2;
    if (marker > progressive || bits != 8) {
        throw ImageError("is a JPEG of a kind that pages cannot hold");
    }
    switch (components) {
    case 1:
        facts.colours = ImageColours::gray;
        return facts;
    case 3:
        facts.colours = ImageColours::rgb;
        return facts;
    case 4:
        facts.colours = ImageColours::cmyk;
        return facts;
    default:
        throw ImageError("is a JPEG of a kind that pages cannot hold");
    }
}

/// Calls `use(marker, segment)` for frames and the segments that may hold Exif or say how inks are
/// counted, until it answers true. False where the file does not go on as it should before that.
template <class Use>
bool walkSegments(const ByteSource& file, Use use) {
    std::vector<std::byte> segment;
    std::uint64_t offset = 2;
    for (int i = 0; i < image_budget::jpegSegments; ++i) {
        std::array<std::byte, 4> start{};
        if (file.readAt(offset, start) < start.size() || start[0] != std::byte{0xFF}) {
            return false;
        }
        const auto marker = std::to_integer<unsigned>(start[1]);
        if (marker == 0xFF) {
            ++offset; // fill bytes may stand in front of any marker
            continue;
        }
        const std::uint32_t length = Numbers(start, false).at(2, 2);
        if (length < 2 || marker == startOfScan || marker == endOfImage || marker < 0xC0) {
            return false;
        }
        if (marker == application1 || marker == application14 || isFrame(marker)) {
            segment.resize(length - 2);
            if (file.readAt(offset + 4, segment) < segment.size()) {
                return false;
            }
            if (use(marker, std::span<const std::byte>(segment))) {
                return true;
            }
        }
        offset += 2 + std::uint64_t{length};
    }
    return false;
}

} // namespace

JpegHeader readJpegHeader(const ByteSource& file) {
    JpegHeader header;
    bool countsFromFullInk = false; // as the program does whose name the segment has
    const bool hasFrame = walkSegments(file, [&](unsigned marker, auto segment) {
        if (isFrame(marker)) {
            header.facts = factsOf(marker, segment);
            header.facts.isInverted =
                countsFromFullInk && header.facts.colours == ImageColours::cmyk;
            return true;
        }
        countsFromFullInk =
            countsFromFullInk || (marker == application14 && startsWith(segment, "Adobe"));
        const Orientation found = orientationOf(segment);
        header.orientation = found == upright ? header.orientation : found;
        return false;
    });
    if (!hasFrame) {
        refuse();
    }
    return header;
}

Orientation exifOrientation(const ByteSource& file) {
    Orientation orientation = upright;
    walkSegments(file, [&](unsigned marker, auto segment) {
        orientation = isFrame(marker) ? upright : orientationOf(segment);
        return isFrame(marker) || orientation != upright;
    });
    return orientation;
}

} // namespace corvane
