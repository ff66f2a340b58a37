#include "codecs/jpx/header.h"

#include "runtime/budget.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

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

/// Tiles along one side of the grid, in numbers of SIZ.
struct TileRow {
    std::int64_t start, end;    ///< of the picture
    std::int64_t first, length; ///< of tiles

    std::int64_t count() const { return (end - first + length - 1) / length; }
};

struct Size {
    std::uint32_t width, height, components, bits;
    TileRow across, down;
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
    const TileRow across{word(12), word(4), word(28), tileWidth};
    const TileRow down{word(16), word(8), word(32), tileHeight};
    if (across.first > across.start || down.first > down.start || across.count() <= 0 ||
        down.count() <= 0 || across.count() > budget::jpxTiles / down.count()) {
        return std::nullopt;
    }
    Size result{static_cast<std::uint32_t>(width),
                static_cast<std::uint32_t>(height),
                components,
                1,
                across,
                down};
    for (std::uint32_t i = 0; i < components; ++i) {
        result.bits =
            std::max(result.bits, (number(size, fixedSize + 3 * std::size_t{i}, 1) & 0x7F) + 1);
    }
    return result;
}

/// How tiles are coded (A.6.1, A.6.2): a level of detail halves each side.
struct CodingStyle {
    std::uint32_t levels = 0;
    std::uint32_t blockWidth = 6, blockHeight = 6; ///< of code blocks, as powers of 2
    std::array<std::uint8_t, 33> precincts{};      ///< by level from the coarsest: two powers

    friend bool operator==(const CodingStyle&, const CodingStyle&) = default;
};

/// `levels`: of a segment, from where it tells the levels on.
std::optional<CodingStyle> readStyle(Bytes levels, bool hasPrecincts) {
    CodingStyle style;
    style.levels = number(levels, 0, 1);
    style.blockWidth = (number(levels, 1, 1) & 0xF) + 2;
    style.blockHeight = (number(levels, 2, 1) & 0xF) + 2;
    if (style.levels > 32 || levels.size() < 5 ||
        (hasPrecincts && levels.size() < 6 + std::size_t{style.levels})) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i <= style.levels; ++i) {
        style.precincts[i] =
            hasPrecincts ? static_cast<std::uint8_t>(number(levels, 5 + i, 1)) : std::uint8_t{0xFF};
    }
    return style;
}

std::int64_t halved(std::int64_t place, std::uint32_t times) {
    return (place + (std::int64_t{1} << times) - 1) >> times;
}

/// Cells of a grid of 2^`power` that lie between two places.
std::int64_t cells(std::int64_t from, std::int64_t to, std::uint32_t power) {
    return to <= from ? 0 : ((to - 1) >> power) - (from >> power) + 1;
}

/// Precincts and code blocks along one side, of all tiles.
struct Along {
    std::int64_t precincts = 0;
    std::int64_t blocks = 0;
};

Along alongTiles(const TileRow& tiles, std::uint32_t halvings, std::uint32_t precinct,
                 std::uint32_t block) {
    Along sum;
    for (std::int64_t i = 0; i < tiles.count(); ++i) {
        const std::int64_t start = tiles.first + i * tiles.length;
        const std::int64_t from = halved(std::max(start, tiles.start), halvings);
        const std::int64_t to = halved(std::min(start + tiles.length, tiles.end), halvings);
        const std::int64_t precincts = cells(from, to, precinct);
        sum.precincts += precincts;
        // Blocks do not cross precincts; one more at each end of a tile's band.
        sum.blocks += std::max(precincts, cells(from, to, std::min(block, precinct)) + 1);
    }
    return sum;
}

struct Load {
    std::int64_t records = 0;
    std::int64_t packets = 0;
};

/// What a picture takes of which all tiles and components are coded so.
Load loadOf(const Size& size, const CodingStyle& style, std::uint32_t layers) {
    Load load;
    for (std::uint32_t level = 0; level <= style.levels; ++level) {
        // The bands of a level have half the size of what they make, the coarsest one its own.
        const std::uint32_t halvings = style.levels - level;
        const auto split = [](std::uint32_t power, bool isCoarsest) {
            return isCoarsest || power == 0 ? power : power - 1;
        };
        const std::uint32_t bands = level == 0 ? 1 : 3;
        const std::uint32_t width = style.precincts[level] & 0xFU;
        const std::uint32_t height = style.precincts[level] >> 4U;
        const std::uint32_t bandHalvings = halvings + (level == 0 ? 0 : 1);
        const Along across =
            alongTiles(size.across, bandHalvings, split(width, level == 0), style.blockWidth);
        const Along down =
            alongTiles(size.down, bandHalvings, split(height, level == 0), style.blockHeight);
        const std::int64_t precincts = across.precincts * down.precincts;
        load.records += bands * (precincts + across.blocks * down.blocks);
        load.packets += precincts * layers;
    }
    load.records *= size.components;
    load.packets *= size.components;
    return load;
}

/// The heaviest of the styles that a codestream states, in front of its tiles and in them.
class StyleSurvey {
public:
    explicit StyleSurvey(const Size& size) : size_(size) {}

    /// Segments up to the first that is none, or begins data.
    void readSegments(Bytes segments) {
        constexpr std::uint32_t codingStyle = 0xFF52, componentStyle = 0xFF53;
        constexpr std::uint32_t startOfTile = 0xFF90, startOfData = 0xFF93;
        for (; segments.size() >= markSize && segmentsLeft_ > 0; --segmentsLeft_) {
            const std::uint32_t marker = number(segments, 0, 2);
            const std::size_t length = number(segments, 2, 2);
            if (marker < 0xFF00 || marker == startOfTile || marker == startOfData || length < 2) {
                return;
            }
            const Bytes segment =
                segments.subspan(markSize, std::min(segments.size() - markSize, length - 2));
            const bool hasPrecincts = (number(segment, 0, 1) & 1U) != 0;
            if (marker == codingStyle && segment.size() >= 5) {
                layers_ = std::max(layers_, number(segment, 2, 2));
                add(readStyle(segment.subspan(5), hasPrecincts));
            } else if (marker == componentStyle && segment.size() >= 2) {
                // Components have a number of one byte: there are less than 257.
                const bool ownPrecincts = (number(segment, 1, 1) & 1U) != 0;
                add(readStyle(segment.subspan(2), ownPrecincts));
            }
            segments = segments.subspan(std::min(segments.size(), length + 2));
        }
    }

    /// None where a style cannot be read.
    std::optional<Load> load() const {
        if (segmentsLeft_ == 0) {
            return std::nullopt;
        }
        Load most;
        for (const std::optional<CodingStyle>& style : styles_) {
            if (!style) {
                return std::nullopt;
            }
            const Load load = loadOf(size_, *style, layers_);
            most.records = std::max(most.records, load.records);
            most.packets = std::max(most.packets, load.packets);
        }
        return most;
    }

private:
    /// A file may repeat the same style for each of its tiles.
    void add(const std::optional<CodingStyle>& style) {
        if (std::ranges::find(styles_, style) == styles_.end() && styles_.size() < mostStyles) {
            styles_.push_back(style);
        } else if (styles_.size() >= mostStyles) {
            styles_.push_back(std::nullopt);
        }
    }
    static constexpr std::size_t mostStyles = 64;

    const Size& size_;
    std::uint32_t layers_ = 1;
    int segmentsLeft_ = 100'000; ///< walks from several places may meet
    std::vector<std::optional<CodingStyle>> styles_;
};

bool claimsManySamples(const Size& size, std::size_t fileBytes) {
    const std::int64_t samples = std::int64_t{size.width} * size.height * size.components;
    return samples > budget::jpxPlainSamples +
                         static_cast<std::int64_t>(fileBytes) * budget::jpxSamplesPerByte;
}

/// Whether what is made before anything is decoded stays within bounds; says how much it is.
bool isLightCodestream(Bytes codestream, const Size& size, std::int64_t& records) {
    constexpr std::array<std::uint8_t, markSize> startOfTile = {0xFF, 0x90, 0x00, 0x0A};
    constexpr std::size_t tileFields = 8;
    StyleSurvey survey(size);
    const std::size_t sizeSegment = number(codestream, 0, 2);
    survey.readSegments(codestream.subspan(std::min(codestream.size(), sizeSegment)));
    forEachMark(codestream, startOfTile, [&](Bytes tile) {
        survey.readSegments(tile.subspan(std::min(tile.size(), tileFields)));
    });
    const std::optional<Load> load = survey.load();
    if (!load || load->records > budget::jpxRecords || load->packets > budget::jpxPackets) {
        return false;
    }
    records = std::max(records, load->records);
    return true;
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
    std::int64_t records = 0;
    // Decoders may take another one than the first.
    constexpr std::array<std::uint8_t, markSize> codestream = {0xFF, 0x4F, 0xFF, 0x51};
    forEachMark(file, codestream, [&](Bytes bytes) {
        const std::optional<Size> size = readSize(bytes);
        isSane = isSane && size && isLightCodestream(bytes, *size, records);
        first = first ? first : size;
    });
    if (!first || !isSane || claimsLongTile(file) || claimsManySamples(*first, file.size())) {
        return std::nullopt;
    }
    JpxHeader header{.width = first->width,
                     .height = first->height,
                     .colours = first->components,
                     .stored = first->components,
                     .bits = first->bits,
                     .records = records};
    if (const auto boxes = findBox(file, "jp2h")) {
        readHeaderBoxes(*boxes, keepsPalette, header);
    }
    return header;
}

} // namespace corvane
