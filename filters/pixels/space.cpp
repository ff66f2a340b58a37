#include "filters/pixels/space.h"

#include "runtime/exception.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace corvane {

namespace {

/// Bytes read from below at a time; a multiple of every pixel's size.
constexpr std::size_t blockSize = 6144;

struct SpaceName {
    std::string_view full;
    std::string_view abbreviated;
    NamedSpace named;
};

constexpr std::array spaceNames{
    SpaceName{"DeviceGray", "G", {ImageSpace::gray, 1, true}},
    SpaceName{"DeviceRGB", "RGB", {ImageSpace::rgb, 3, true}},
    SpaceName{"DeviceCMYK", "CMYK", {ImageSpace::cmyk, 4, true}},
    SpaceName{"Indexed", "I", {ImageSpace::indexed, 1, false}},
};

bool isSpaceNumber(ImageSpace space) {
    return space >= ImageSpace::mask && space <= ImageSpace::indexed;
}

/// Four bytes of memory as a number whose highest byte is the first.
std::uint32_t loadWord(const std::byte* from) {
    std::uint32_t word = 0;
    std::memcpy(&word, from, sizeof word);
    return std::endian::native == std::endian::little ? __builtin_bswap32(word) : word;
}

void storeWord(std::byte* to, std::uint32_t word) {
    if constexpr (std::endian::native == std::endian::little) {
        word = __builtin_bswap32(word);
    }
    std::memcpy(to, &word, sizeof word);
}

// Conversions: the pixel's bytes from the highest down, to 0x00RRGGBB.

std::uint32_t graySpace(std::uint32_t pixel) {
    return (pixel >> 24) * 0x0001'0101U;
}

std::uint32_t rgbSpace(std::uint32_t pixel) {
    return pixel >> 8;
}

/// Two pixels at once: 255 less ink and black, not below 0. The bytes are subtracted in one word;
/// their high bits are worked out apart, so that no byte borrows from the next.
std::uint64_t cmykPair(std::uint64_t pixels) {
    constexpr std::uint64_t high = 0x8080'8080'8080'8080U;
    const std::uint64_t black = (pixels & 0x0000'00FF'0000'00FFU) * 0x0101'0100U;
    const std::uint64_t light = ~pixels;
    const std::uint64_t difference = ((light | high) - (black & ~high)) ^ ((light ^ ~black) & high);
    const std::uint64_t below = ((~light & black) | (~(light ^ black) & difference)) & high;
    return (difference & ~((below >> 7) * 0xFF)) >> 8 & 0x00FF'FFFF'00FF'FFFFU;
}

std::uint32_t cmykSpace(std::uint32_t pixel) {
    return static_cast<std::uint32_t>(cmykPair(pixel));
}

void convertInk(std::byte* to, const std::byte* from, std::size_t count) {
    for (; count > 1; count -= 2, from += 8, to += 8) {
        const std::uint64_t pair = std::uint64_t{loadWord(from)} << 32 | loadWord(from + 4);
        const std::uint64_t converted = cmykPair(pair);
        storeWord(to, static_cast<std::uint32_t>(converted >> 32));
        storeWord(to + 4, static_cast<std::uint32_t>(converted));
    }
    if (count == 1) {
        storeWord(to, cmykSpace(loadWord(from)));
    }
}

void convertColours(std::byte* to, const std::byte* from, std::size_t count) {
    // The last pixel is read alone: a word reaches behind it.
    for (; count > 1; --count, from += 3, to += 4) {
        storeWord(to, rgbSpace(loadWord(from)));
    }
    if (count == 1) {
        std::array<std::byte, 4> last{};
        std::memcpy(last.data(), from, 3);
        storeWord(to, rgbSpace(loadWord(last.data())));
    }
}

} // namespace

SpaceFilter::SpaceFilter(ImageSpace space, const Palette& palette)
    : Filter(entrySpace), space_(space), inputSize_(space == ImageSpace::rgb    ? 3
                                                    : space == ImageSpace::cmyk ? 4
                                                                                : 1),
      outputSize_(space == ImageSpace::mask ? 1 : 4), palette_(palette) {}

/// Converts pixels that are whole in both, moving both on.
void SpaceFilter::convertWhole(std::span<std::byte>& output, std::span<const std::byte>& input) {
    const std::size_t count = std::min(output.size() / outputSize_, input.size() / inputSize_);
    std::byte* const to = output.data();
    const std::byte* const from = input.data();
    switch (space_) {
    case ImageSpace::mask:
        std::copy_n(from, count, to);
        break;
    case ImageSpace::gray:
        for (std::size_t i = 0; i < count; ++i) {
            storeWord(to + 4 * i, graySpace(std::to_integer<std::uint32_t>(from[i]) << 24));
        }
        break;
    case ImageSpace::rgb:
        convertColours(to, from, count);
        break;
    case ImageSpace::cmyk:
        convertInk(to, from, count);
        break;
    case ImageSpace::indexed:
        for (std::size_t i = 0; i < count; ++i) {
            storeWord(to + 4 * i, palette_[std::to_integer<std::size_t>(from[i])]);
        }
        break;
    }
    output = output.subspan(count * outputSize_);
    input = input.subspan(count * inputSize_);
}

/// Converts one pixel of the input for an output that has no room for all of it.
void SpaceFilter::takePixel(std::span<const std::byte>& input) {
    std::array<std::byte, 4> converted{};
    std::span<std::byte> output = std::span(converted).first(outputSize_);
    std::span<const std::byte> one = input.first(inputSize_);
    convertWhole(output, one);
    input = input.subspan(inputSize_);
    pixel_ = loadWord(converted.data());
    pending_ = outputSize_;
}

void SpaceFilter::handOut(std::span<std::byte>& output) {
    for (; pending_ > 0 && !output.empty(); --pending_, pixel_ <<= 8) {
        output.front() = static_cast<std::byte>(pixel_ >> 24);
        output = output.subspan(1);
    }
}

void blockSpace(std::span<std::byte> output, std::span<const std::byte> input,
                SpaceFilter& filter) {
    filter.handOut(output);
    filter.convertWhole(output, input);
    if (!output.empty() && input.size() >= filter.inputSize_) {
        filter.takePixel(input);
        filter.handOut(output);
    }
    if (!output.empty() || !input.empty()) {
        failException(Exception::type);
    }
}

std::size_t SpaceFilter::read(std::span<std::byte> out) {
    std::array<std::byte, blockSize> block; // NOLINT(cppcoreguidelines-pro-type-member-init)
    std::span<std::byte> room = out;
    handOut(room);
    while (!room.empty()) {
        const std::size_t pixels =
            std::min((room.size() + outputSize_ - 1) / outputSize_, blockSize / inputSize_);
        const std::size_t count =
            readFilter(*next, std::span(block).first(pixels * inputSize_)) / inputSize_;
        if (count == 0) {
            break;
        }
        const std::size_t given = std::min(count * outputSize_, room.size());
        blockSpace(room.first(given), std::span(block).first(count * inputSize_), *this);
        room = room.subspan(given);
    }
    return out.size() - room.size();
}

std::int32_t SpaceFilter::entrySpace(Filter& filter, Operation operation, std::byte* buffer,
                                     std::int32_t* argument) {
    auto& self = static_cast<SpaceFilter&>(filter);
    switch (operation) {
    case Operation::read:
        return *argument = static_cast<std::int32_t>(
                   self.read({buffer, static_cast<std::size_t>(std::max(*argument, 0))}));
    case Operation::write:
        failException(Exception::limit);
    case Operation::seek:
        self.pending_ = 0;
        [[fallthrough]];
    case Operation::mark:
        return callFilter(*self.next, operation, buffer, argument);
    case Operation::link:
    case Operation::unlink:
        return 0;
    default:
        failException(Exception::type);
    }
}

FilterOwner setupSpace(ImageSpace space, std::uint32_t highIndex,
                       std::span<const std::uint32_t> palette) {
    if (!isSpaceNumber(space) || (space == ImageSpace::indexed && palette.size() <= highIndex)) {
        failException(Exception::type);
    }
    Palette colours{};
    if (space == ImageSpace::indexed) {
        for (std::size_t i = 0; i < colours.size(); ++i) {
            colours[i] = palette[std::min<std::size_t>(i, highIndex)];
        }
    }
    return std::make_unique<SpaceFilter>(space, colours);
}

NamedSpace name2space(std::string_view name) {
    const auto* const found = std::ranges::find_if(spaceNames, [&](const SpaceName& row) {
        return name == row.full || name == row.abbreviated;
    });
    if (found == spaceNames.end()) {
        failException(Exception::structure);
    }
    return found->named;
}

std::string_view space2name(ImageSpace space) {
    if (!isSpaceNumber(space)) {
        failException(Exception::type);
    }
    const auto* const found = std::ranges::find_if(
        spaceNames, [&](const SpaceName& row) { return space == row.named.space; });
    if (found == spaceNames.end()) {
        failException(Exception::structure);
    }
    return found->full;
}

} // namespace corvane
