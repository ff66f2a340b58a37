#include "codecs/jpx/header.h"

#include "runtime/budget.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace corvane {

namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t markSize = 4;   ///< of two markers, or of one and its length
constexpr std::size_t fixedSize = 38; ///< of SIZ, from its length to its components

/// Big-endian; what lies behind the end is 0.
std::uint32_t number(Bytes bytes, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        value = value << 8 | (i < bytes.size() ? std::to_integer<std::uint32_t>(bytes[i]) : 0);
    }
    return value;
}

/// The contents of the first box of this type.
std::optional<Bytes> findBox(Bytes boxes, std::string_view type) {
    while (boxes.size() >= 8) {
        std::uint64_t length = number(boxes, 0, 4);
        std::size_t start = 8;
        if (length == 1) {
            length = std::uint64_t{number(boxes, 8, 4)} << 32 | number(boxes, 12, 4);
            start = 16;
        } else if (length == 0) {
            length = boxes.size();
        }
        length = std::min<std::uint64_t>(length, boxes.size());
        if (length < start) {
            return std::nullopt;
        }
        const Bytes box = boxes.first(static_cast<std::size_t>(length));
        const auto letter = [](std::byte byte, char wanted) {
            return std::to_integer<char>(byte) == wanted;
        };
        if (std::ranges::equal(box.subspan(4, 4), type, letter)) {
            return box.subspan(start);
        }
        boxes = boxes.subspan(box.size());
    }
    return std::nullopt;
}

/// What stands behind each place with these four bytes.
template <class Use>
void forEachMark(Bytes file, const std::array<std::uint8_t, markSize>& mark, Use use) {
    const auto isSame = [](std::byte byte, std::uint8_t wanted) {
        return std::to_integer<std::uint8_t>(byte) == wanted;
    };
    auto at = file.begin();
    while ((at = std::search(at, file.end(), mark.begin(), mark.end(), isSame)) != file.end()) {
        at += markSize;
        use(file.subspan(static_cast<std::size_t>(at - file.begin())));
    }
}

/// Whether a tile claims to be far longer than the file: memory is made for it before it is read.
bool claimsLongTile(Bytes file) {
    constexpr std::array<std::uint8_t, markSize> startOfTile = {0xFF, 0x90, 0x00, 0x0A};
    const std::size_t longest = 2 * file.size() + budget::jpxTileSlack;
    bool isClaimed = false;
    forEachMark(file, startOfTile,
                [&](Bytes tile) { isClaimed = isClaimed || number(tile, 2, 4) > longest; });
    return isClaimed;
}

struct Size {
    std::uint32_t width, height, components, bits;
};

std::optional<Size> readSize(Bytes size) {
    const auto word = [&](std::size_t at) { return std::int64_t{number(size, at, 4)}; };
    const std::int64_t width = word(4) - word(12);
    const std::int64_t height = word(8) - word(16);
    const std::int64_t tileWidth = word(20);
    const std::int64_t tileHeight = word(24);
    const std::uint32_t components = number(size, 36, 2);
    if (size.size() < fixedSize + 3 * std::size_t{components} || width <= 0 || height <= 0 ||
        width > INT32_MAX / height || tileWidth <= 0 || tileHeight <= 0 || components == 0 ||
        components > budget::jpxComponents) {
        return std::nullopt;
    }
    const std::int64_t across = (word(4) - word(28)) / tileWidth + 1;
    const std::int64_t down = (word(8) - word(32)) / tileHeight + 1;
    if (across <= 0 || down <= 0 || across > budget::jpxTiles / down) {
        return std::nullopt;
    }
    Size result{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), components,
                1};
    for (std::uint32_t i = 0; i < components; ++i) {
        result.bits =
            std::max(result.bits, (number(size, fixedSize + 3 * std::size_t{i}, 1) & 0x7F) + 1);
    }
    return result;
}

JpxColours namedSpace(std::uint32_t enumerated) {
    switch (enumerated) {
    case 12:
        return JpxColours::cmyk;
    case 16:
    case 18: // YCC, which decoding makes RGB
        return JpxColours::rgb;
    case 17:
        return JpxColours::gray;
    default:
        return JpxColours::unstated;
    }
}

void readHeaderBoxes(Bytes boxes, bool keepsPalette, JpxHeader& header) {
    if (const auto colour = findBox(boxes, "colr"); colour && number(*colour, 0, 1) == 1) {
        header.space = namedSpace(number(*colour, 3, 4));
    }
    const auto palette = findBox(boxes, "pclr");
    header.hasPalette = palette.has_value();
    if (keepsPalette) {
        return;
    }
    if (palette) {
        header.colours = std::clamp(number(*palette, 2, 1), 1U, budget::jpxComponents);
        header.bits = 1;
        for (std::uint32_t i = 0; i < header.colours; ++i) {
            header.bits = std::max(header.bits, (number(*palette, 3 + i, 1) & 0x7F) + 1);
        }
    }
    const auto channels = findBox(boxes, "cdef");
    const std::uint32_t count = channels ? number(*channels, 0, 2) : 0;
    for (std::uint32_t i = 0; i < count && std::size_t{i} * 6 + 8 <= channels->size(); ++i) {
        const std::uint32_t type = number(*channels, 4 + std::size_t{i} * 6, 2);
        if ((type == 1 || type == 2) && !header.hasAlpha && header.colours > 1) {
            header.hasAlpha = true;
            header.isPremultiplied = type == 2;
            --header.colours;
        }
    }
}

} // namespace

std::optional<JpxHeader> readJpxHeader(Bytes file, bool keepsPalette) {
    std::optional<Size> first;
    bool isSane = true;
    // Decoders may take another one than the first.
    constexpr std::array<std::uint8_t, markSize> codestream = {0xFF, 0x4F, 0xFF, 0x51};
    forEachMark(file, codestream, [&](Bytes bytes) {
        const std::optional<Size> size = readSize(bytes);
        isSane = isSane && size.has_value();
        first = first ? first : size;
    });
    if (!first || !isSane || claimsLongTile(file)) {
        return std::nullopt;
    }
    JpxHeader header{.width = first->width,
                     .height = first->height,
                     .colours = first->components,
                     .stored = first->components,
                     .bits = first->bits};
    if (const auto boxes = findBox(file, "jp2h")) {
        readHeaderBoxes(*boxes, keepsPalette, header);
    }
    return header;
}

} // namespace corvane
