#include "output/world/world.h"

#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace corvane {

namespace {

constexpr std::int32_t longestSide = INT16_MAX;

/// A preview shows what a file looks like; larger pictures do without.
constexpr std::int64_t mostPixels = 4 << 20;

constexpr std::uint32_t white = 0xFFFFFF;

/// Six levels of red, green and blue, black left out; then levels between them of red, green, blue
/// and gray, from light to dark; black at the end.
constexpr std::array<std::uint32_t, 256> makeColours() {
    std::array<std::uint32_t, 256> colours{};
    std::size_t count = 0;
    for (std::uint32_t i = 0; i < 215; ++i) {
        const std::uint32_t red = 5 - i / 36;
        const std::uint32_t green = 5 - i / 6 % 6;
        const std::uint32_t blue = 5 - i % 6;
        colours[count++] = red * 0x33 << 16 | green * 0x33 << 8 | blue * 0x33;
    }
    for (const std::uint32_t unit : {0x10000U, 0x100U, 1U, 0x10101U}) {
        for (std::uint32_t step = 14; step > 0; --step) {
            if (step % 3 != 0) {
                colours[count++] = step * 0x11 * unit;
            }
        }
    }
    return colours;
}

constexpr std::array<std::uint32_t, 256> eightBitColours = makeColours();
constexpr std::array<std::uint32_t, 2> oneBitColours = {white, 0};
static_assert(eightBitColours[0] == white && eightBitColours[255] == 0);

constexpr std::int32_t channel(std::uint32_t colour, unsigned shift) {
    return static_cast<std::int32_t>(colour >> shift & 0xFF);
}

std::uint8_t nearestColour(std::uint32_t colour) {
    std::size_t best = 0;
    std::int32_t least = INT32_MAX;
    for (std::size_t i = 0; i < eightBitColours.size(); ++i) {
        std::int32_t distance = 0;
        for (const unsigned shift : {0U, 8U, 16U}) {
            const std::int32_t off = channel(colour, shift) - channel(eightBitColours[i], shift);
            distance += off * off;
        }
        if (distance < least) {
            least = distance;
            best = i;
        }
    }
    return static_cast<std::uint8_t>(best);
}

/// Of a colour whose channels are cut to five bits: 32,768 searches are made once.
std::uint8_t numberOf(std::uint32_t colour) {
    static const std::vector<std::uint8_t> numbers = [] {
        std::vector<std::uint8_t> table(1 << 15);
        for (std::uint32_t i = 0; i < table.size(); ++i) {
            const auto wide = [](std::uint32_t five) { return (five << 3 | five >> 2) & 0xFF; };
            table[i] =
                nearestColour(wide(i >> 10 & 31) << 16 | wide(i >> 5 & 31) << 8 | wide(i & 31));
        }
        return table;
    }();
    return numbers[(colour >> 19 & 31) << 10 | (colour >> 11 & 31) << 5 | (colour >> 3 & 31)];
}

std::int32_t lightOf(std::uint32_t colour) {
    return (30 * channel(colour, 16) + 59 * channel(colour, 8) + 11 * channel(colour, 0)) / 100;
}

bool holdsPixel(const World& world, std::int32_t x, std::int32_t y) {
    return x >= 0 && y >= 0 && x < world.frame.right && y < world.frame.bottom;
}

std::uint32_t mixed(std::uint32_t there, std::uint32_t drawn, CopyMode mode) {
    switch (mode) {
    case CopyMode::inkAdds:
        return there & drawn;
    case CopyMode::inkClears:
        return there | (~drawn & white);
    default:
        return drawn;
    }
}

/// Rows of what colours are still off, by the rule of Floyd and Steinberg.
class Diffusion {
public:
    explicit Diffusion(std::int32_t width)
        : here_(static_cast<std::size_t>(width) + 2), below_(here_.size()) {}

    std::uint32_t wanted(std::int32_t x, std::uint32_t colour) const {
        const Error& error = here_[static_cast<std::size_t>(x) + 1];
        std::uint32_t result = 0;
        for (unsigned i = 0; i < 3; ++i) {
            const std::int32_t level = channel(colour, 8 * i) + error[i] / 16;
            result |= static_cast<std::uint32_t>(std::clamp(level, 0, 255)) << 8 * i;
        }
        return result;
    }
    void spread(std::int32_t x, std::uint32_t wanted, std::uint32_t given) {
        const std::size_t at = static_cast<std::size_t>(x) + 1;
        for (unsigned i = 0; i < 3; ++i) {
            const std::int32_t off = channel(wanted, 8 * i) - channel(given, 8 * i);
            here_[at + 1][i] += 7 * off;
            below_[at - 1][i] += 3 * off;
            below_[at][i] += 5 * off;
            below_[at + 1][i] += off;
        }
    }
    void nextRow() {
        here_.swap(below_);
        std::ranges::fill(below_, Error{});
    }

private:
    using Error = std::array<std::int32_t, 3>; ///< in sixteenths
    std::vector<Error> here_;
    std::vector<Error> below_;
};

} // namespace

std::uint32_t World::colour(std::int32_t x, std::int32_t y) const {
    const auto at = static_cast<std::size_t>(y) * static_cast<std::size_t>(rowBytes);
    const auto column = static_cast<std::size_t>(x);
    const auto byte = [&](std::size_t offset) {
        return std::to_integer<std::uint32_t>(pixels[at + offset]);
    };
    switch (depth) {
    case 1:
        return oneBitColours[byte(column / 8) >> (7 - column % 8) & 1];
    case 8:
        return eightBitColours[byte(column)];
    default:
        return byte(4 * column + 1) << 16 | byte(4 * column + 2) << 8 | byte(4 * column + 3);
    }
}

void World::setColour(std::int32_t x, std::int32_t y, std::uint32_t colour) {
    const auto at = static_cast<std::size_t>(y) * static_cast<std::size_t>(rowBytes);
    const auto column = static_cast<std::size_t>(x);
    if (depth == 1) {
        std::byte& place = pixels[at + column / 8];
        const auto bit = static_cast<std::byte>(0x80U >> column % 8);
        place = lightOf(colour) < 128 ? place | bit : place & ~bit;
    } else if (depth == 8) {
        pixels[at + column] = static_cast<std::byte>(numberOf(colour));
    } else {
        for (std::size_t i = 0; i < 4; ++i) {
            pixels[at + 4 * column + i] = static_cast<std::byte>(colour >> (24 - 8 * i));
        }
    }
}

std::span<std::byte> World::row(std::int32_t y) {
    const auto bytes = static_cast<std::size_t>(rowBytes);
    return std::span(pixels).subspan(static_cast<std::size_t>(y) * bytes, bytes);
}

WorldOwner allocateWorld(std::int32_t width, std::int32_t height, std::int32_t depth,
                         std::int32_t tables) {
    const bool isKnown = (depth == 1 || depth == 8 || depth == 32) &&
                         (tables == imageTables || tables == previewTables);
    if (!isKnown || width <= 0 || height <= 0 || width > longestSide || height > longestSide ||
        std::int64_t{width} * height > mostPixels) {
        return nullptr;
    }
    auto world = std::make_unique<World>();
    world->frame = {.right = width, .bottom = height};
    world->depth = depth;
    world->rowBytes = (width * depth + 31) / 32 * 4;
    const std::int64_t bytes = std::int64_t{world->rowBytes} * height;
    const bool hasRoom = guarded([&] { world->charge.resize(bytes); }) == Exception::none;
    if (!hasRoom) {
        resetException();
        return nullptr;
    }
    // White is 0 where pixels are numbers.
    world->pixels.assign(static_cast<std::size_t>(bytes),
                         depth == 32 ? std::byte{0xFF} : std::byte{0});
    return world;
}

void freeWorld(WorldOwner& world) {
    world.reset();
}

void copyWorld(const World* source, const PixelFrame& from, World* world, const PixelFrame& to,
               CopyMode mode) {
    if (source == nullptr || world == nullptr || from.isEmpty() || to.isEmpty()) {
        return;
    }
    Diffusion diffusion(to.width());
    for (std::int32_t y = 0; y < to.height(); ++y, diffusion.nextRow()) {
        const auto fromY =
            static_cast<std::int32_t>(from.top + std::int64_t{y} * from.height() / to.height());
        for (std::int32_t x = 0; x < to.width(); ++x) {
            const auto fromX =
                static_cast<std::int32_t>(from.left + std::int64_t{x} * from.width() / to.width());
            const std::int32_t toX = to.left + x;
            const std::int32_t toY = to.top + y;
            if (!holdsPixel(*source, fromX, fromY) || !holdsPixel(*world, toX, toY)) {
                continue;
            }
            std::uint32_t colour = source->colour(fromX, fromY);
            if (mode == CopyMode::dither) {
                colour = diffusion.wanted(x, colour);
                world->setColour(toX, toY, colour);
                diffusion.spread(x, colour, world->colour(toX, toY));
            } else {
                const std::uint32_t there = mode == CopyMode::copy ? 0 : world->colour(toX, toY);
                world->setColour(toX, toY, mixed(there, colour, mode));
            }
        }
    }
}

void bitmapWorld(const World* source, const PixelFrame& frame, World* world) {
    copyWorld(source, frame, world, frame, CopyMode::copy);
}

void paintWorld(World* world, const PixelFrame& frame, std::uint32_t colour, std::int32_t width) {
    if (world == nullptr) {
        return;
    }
    for (std::int32_t y = frame.top; y < frame.bottom; ++y) {
        for (std::int32_t x = frame.left; x < frame.right; ++x) {
            const bool isBorder = x < frame.left + width || x >= frame.right - width ||
                                  y < frame.top + width || y >= frame.bottom - width;
            if ((width == 0 || isBorder) && holdsPixel(*world, x, y)) {
                world->setColour(x, y, colour);
            }
        }
    }
}

namespace {

void copyRows(const World& world, std::size_t rowBytes, std::size_t rows, std::byte* to) {
    const auto padded = static_cast<std::size_t>(world.rowBytes);
    const std::size_t copied = std::min(rowBytes, padded);
    const std::size_t there = std::min(rows, static_cast<std::size_t>(world.frame.bottom));
    for (std::size_t y = 0; y < there; ++y) {
        std::copy_n(world.pixels.data() + y * padded, copied, to + y * rowBytes);
    }
}

} // namespace

std::vector<std::byte> pixelWorld(std::int32_t width, std::int32_t height, const World* world) {
    if (world == nullptr || width <= 0 || height <= 0 || width > longestSide ||
        height > longestSide) {
        return {};
    }
    const auto row = static_cast<std::size_t>(width);
    std::vector<std::byte> bytes(row * static_cast<std::size_t>(height));
    copyRows(*world, row, static_cast<std::size_t>(height), bytes.data());
    return bytes;
}

std::vector<std::byte> indexWorld(const World* world, std::int32_t depth, std::int32_t tables) {
    std::vector<std::byte> bytes;
    if (world == nullptr || (tables != imageTables && tables != previewTables)) {
        return bytes;
    }
    for (const std::uint32_t colour : systemColours(depth)) {
        for (const unsigned shift : {16U, 8U, 0U}) {
            bytes.push_back(static_cast<std::byte>(colour >> shift));
        }
    }
    return bytes;
}

Handle handleWorld(std::int32_t rowBytes, std::int32_t rows, const World* world) {
    if (world == nullptr || rowBytes <= 0 || rows <= 0 || rowBytes > INT32_MAX / rows) {
        return {};
    }
    const Handle handle = NewHandleClear(rowBytes * rows);
    if (handle) {
        copyRows(*world, static_cast<std::size_t>(rowBytes), static_cast<std::size_t>(rows),
                 (*handle).get());
    }
    return handle;
}

std::span<const std::uint32_t> systemColours(std::int32_t depth) {
    if (depth == 1) {
        return oneBitColours;
    }
    return depth == 8 ? std::span<const std::uint32_t>(eightBitColours)
                      : std::span<const std::uint32_t>();
}

} // namespace corvane
