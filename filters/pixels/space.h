// The colour-space filter: pixels of an image's space to four bytes, 0, red, green, blue.
#pragma once

#include "filters/filter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

enum class ImageSpace : std::int32_t {
    mask = 1,    ///< one byte, which stays one byte
    gray = 2,    ///< one byte
    rgb = 3,     ///< three
    cmyk = 4,    ///< four
    indexed = 5, ///< one, an index of the palette
};

/// Colours of an indexed space by index, 0x00RRGGBB. Indices above the highest mean that one.
using Palette = std::array<std::uint32_t, 256>;

class SpaceFilter final : public Filter {
public:
    SpaceFilter(ImageSpace space, const Palette& palette);

private:
    friend void blockSpace(std::span<std::byte> output, std::span<const std::byte> input,
                           SpaceFilter& filter);

    std::size_t read(std::span<std::byte> out);
    void convertWhole(std::span<std::byte>& output, std::span<const std::byte>& input);
    void takePixel(std::span<const std::byte>& input);
    void handOut(std::span<std::byte>& output);

    static std::int32_t entrySpace(Filter& filter, Operation operation, std::byte* buffer,
                                   std::int32_t* argument);

    ImageSpace space_;
    std::size_t inputSize_;   ///< bytes of a pixel below
    std::size_t outputSize_;  ///< bytes of a pixel delivered
    std::size_t pending_ = 0; ///< bytes of `pixel_` not yet handed out
    std::uint32_t pixel_ = 0; ///< the next byte is the highest
    Palette palette_;
};

/// `palette` has a colour for each index up to `highIndex`, for the indexed space only; others
/// ignore both. A palette too short, and a number that is no space, raise `type`. Reading delivers
/// whole pixels only; writing raises `limit`, an operation from 6 up `type`.
FilterOwner setupSpace(ImageSpace space, std::uint32_t highIndex = 0,
                       std::span<const std::uint32_t> palette = {});

/// Converts a block, first handing out what the last call left of a pixel. Where the input is not
/// used up exactly, or is not enough to fill the output: `type`.
void blockSpace(std::span<std::byte> output, std::span<const std::byte> input, SpaceFilter& filter);

/// A colour space by its name or the short form of inline images.
struct NamedSpace {
    ImageSpace space;
    std::int32_t components;
    bool direct; ///< components are amounts of colour, not an index
};
/// Any other name raises `structure`.
NamedSpace name2space(std::string_view name);
/// The full name. A mask has none: `structure`; a number that is no space: `type`.
std::string_view space2name(ImageSpace space);

} // namespace corvane
