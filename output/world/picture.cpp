#include "output/world/picture.h"

#include "filters/file/file_resources.h"
#include "host/parameters.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace corvane {

namespace {

constexpr std::uint32_t pictureType = fourCharacters("PICT");
constexpr std::int16_t previewNumber = 256;

constexpr std::array mark = {std::byte{'c'}, std::byte{'v'}, std::byte{'p'}, std::byte{'c'}};
constexpr std::size_t frameAt = mark.size();
constexpr std::size_t coloursAt = frameAt + 8;
constexpr std::size_t colourBytes = 768;
constexpr std::size_t pixelsAt = coloursAt + colourBytes;

std::int32_t shortAt(std::span<const std::byte> bytes, std::size_t at) {
    const auto value =
        std::to_integer<unsigned>(bytes[at]) << 8 | std::to_integer<unsigned>(bytes[at + 1]);
    return static_cast<std::int16_t>(value);
}

void putShort(std::span<std::byte> bytes, std::size_t at, std::int32_t value) {
    bytes[at] = static_cast<std::byte>(value >> 8);
    bytes[at + 1] = static_cast<std::byte>(value);
}

} // namespace

std::optional<PreviewPicture> readPicture(std::span<const std::byte> bytes) {
    if (bytes.size() < pixelsAt || !std::ranges::equal(bytes.first(mark.size()), mark)) {
        return std::nullopt;
    }
    PreviewPicture picture{.frame = {.left = shortAt(bytes, frameAt + 2),
                                     .top = shortAt(bytes, frameAt),
                                     .right = shortAt(bytes, frameAt + 6),
                                     .bottom = shortAt(bytes, frameAt + 4)},
                           .colours = bytes.subspan(coloursAt, colourBytes),
                           .pixels = bytes.subspan(pixelsAt)};
    const bool isWhole =
        !picture.frame.isEmpty() && static_cast<std::uint64_t>(picture.frame.width()) *
                                            static_cast<std::uint64_t>(picture.frame.height()) ==
                                        picture.pixels.size();
    return isWhole ? std::optional(picture) : std::nullopt;
}

Handle makePicture(const World& world) {
    const std::vector<std::byte> pixels =
        pixelWorld(world.frame.width(), world.frame.height(), &world);
    const std::vector<std::byte> colours = indexWorld(&world, world.depth, imageTables);
    if (colours.size() != colourBytes) {
        return {};
    }
    const std::size_t size = pixelsAt + pixels.size();
    const Handle handle = NewHandleClear(static_cast<std::int32_t>(size));
    if (!handle) {
        return {};
    }
    const std::span<std::byte> bytes((*handle).get(), size);
    std::ranges::copy(mark, bytes.begin());
    putShort(bytes, frameAt + 4, world.frame.bottom);
    putShort(bytes, frameAt + 6, world.frame.right);
    std::memcpy(bytes.data() + coloursAt, colours.data(), colours.size());
    std::memcpy(bytes.data() + pixelsAt, pixels.data(), pixels.size());
    return handle;
}

void pictureWorld(const PreviewPicture& picture, const PixelFrame& frame, World* world) {
    if (world == nullptr || frame.isEmpty()) {
        return;
    }
    const std::int32_t width = std::min(frame.right, world->frame.right);
    const std::int32_t height = std::min(frame.bottom, world->frame.bottom);
    for (std::int32_t y = std::max(frame.top, 0); y < height; ++y) {
        const std::int64_t fromY =
            std::int64_t{y - frame.top} * picture.frame.height() / frame.height();
        for (std::int32_t x = std::max(frame.left, 0); x < width; ++x) {
            const std::int64_t fromX =
                std::int64_t{x - frame.left} * picture.frame.width() / frame.width();
            const auto at = static_cast<std::size_t>(fromY * picture.frame.width() + fromX);
            const std::size_t entry = 3 * std::to_integer<std::size_t>(picture.pixels[at]);
            std::uint32_t colour = 0;
            for (std::size_t i = 0; i < 3; ++i) {
                colour = colour << 8 | std::to_integer<std::uint32_t>(picture.colours[entry + i]);
            }
            world->setColour(x, y, colour);
        }
    }
}

void sampleWorld(const World* image, const World* mask, std::int32_t depth) {
    if (image == nullptr) {
        return;
    }
    const PixelFrame& frame = image->frame;
    const WorldOwner world = allocateWorld(frame.right, frame.bottom, depth, imageTables);
    if (world == nullptr) {
        return;
    }
    copyWorld(mask, frame, world.get(), frame, CopyMode::inkClears);
    copyWorld(image, frame, world.get(), frame, CopyMode::inkAdds);
    if (const Handle picture = makePicture(*world)) {
        saveFile(picture, pictureType, previewNumber);
    }
}

} // namespace corvane
