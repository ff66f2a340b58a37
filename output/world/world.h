// Offscreen worlds: pixels in memory that are drawn into, for previews and icons.
//
// A world of 1 or 8 bits holds numbers of the system's colours of that depth, one of 32 bits
// colours, 0x00RRGGBB. Every function takes a null world, and then does nothing or answers nothing.
#pragma once

#include "runtime/memory.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace corvane {

/// Left and top within it, right and bottom without.
struct PixelFrame {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    std::int32_t width() const { return right - left; }
    std::int32_t height() const { return bottom - top; }
    bool isEmpty() const { return right <= left || bottom <= top; }
    friend bool operator==(const PixelFrame&, const PixelFrame&) = default;
};

/// Which system table numbers begin with: those of the reader's images, and those of previews.
inline constexpr std::int32_t imageTables = 0;
inline constexpr std::int32_t previewTables = 64;

/// How pixels that are drawn go together with those that are there. Ink is what light lacks, bit by
/// bit.
enum class CopyMode : std::int32_t {
    copy = 0,
    inkAdds = 1,   ///< ink comes to the ink that is there
    inkClears = 3, ///< ink takes the ink that is there away
    dither = 64,   ///< as `copy`; what a colour is off goes to the pixels around it
};

struct World {
    PixelFrame frame; ///< begins at 0,0
    std::int32_t depth = 8;
    std::int32_t rowBytes = 0; ///< padded to 4
    ZoneCharge charge;
    std::vector<std::byte> pixels;

    std::uint32_t colour(std::int32_t x, std::int32_t y) const;
    /// The nearest that the world has.
    void setColour(std::int32_t x, std::int32_t y, std::uint32_t colour);
    /// Of a world of 32 bits.
    std::span<std::byte> row(std::int32_t y);
};

using WorldOwner = std::unique_ptr<World>;

/// A white world of 1, 8 or 32 bits a pixel. Null where there is no such world, where a side passes
/// 32,767 or the whole four million pixels, and where the zone is full.
WorldOwner allocateWorld(std::int32_t width, std::int32_t height, std::int32_t depth,
                         std::int32_t tables);
void freeWorld(WorldOwner& world);

/// Draws `from`, a part of `source`, into `to`, a part of the world; stretched where they differ.
void copyWorld(const World* source, const PixelFrame& from, World* world, const PixelFrame& to,
               CopyMode mode);
/// Draws the same part of another world.
void bitmapWorld(const World* source, const PixelFrame& frame, World* world);
/// Paints a part of the world; `width` more than 0: only a border of so many pixels.
void paintWorld(World* world, const PixelFrame& frame, std::uint32_t colour,
                std::int32_t width = 0);

/// Rows of width bytes, without padding; what lies outside the world is 0.
std::vector<std::byte> pixelWorld(std::int32_t width, std::int32_t height, const World* world);
/// Red, green and blue of each colour that a world of that depth has, less than 32 bits.
std::vector<std::byte> indexWorld(const World* world, std::int32_t depth, std::int32_t tables);
/// The same as `pixelWorld` of rows of `rowBytes` bytes, in a block of the zone; null where that is
/// full.
Handle handleWorld(std::int32_t rowBytes, std::int32_t rows, const World* world);

/// The system's colours of 1 or 8 bits.
std::span<const std::uint32_t> systemColours(std::int32_t depth);

} // namespace corvane
