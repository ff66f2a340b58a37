// Icons of a file: its image in a black frame.
#include "filters/file/file_resources.h"
#include "host/parameters.h"
#include "output/world/picture.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

constexpr std::int16_t iconNumber = -16455;
constexpr std::int32_t iconSide = 32;
constexpr std::int32_t imageSide = 30; ///< room for the frame around it
constexpr std::uint32_t black = 0;

/// In the middle of an icon; the longer side fills it.
PixelFrame iconFrame(const World& image) {
    const std::int32_t longest = std::max(image.frame.width(), image.frame.height());
    const auto scaled = [&](std::int32_t side) {
        return (2 * imageSide * side + longest) / (2 * longest);
    };
    const std::int32_t width = scaled(image.frame.width());
    const std::int32_t height = scaled(image.frame.height());
    const std::int32_t left = (iconSide + 1 - width) / 2;
    const std::int32_t top = (iconSide + 1 - height) / 2;
    return {left, top, left + width, top + height};
}

PixelFrame grown(const PixelFrame& frame) {
    return {frame.left - 1, frame.top - 1, frame.right + 1, frame.bottom + 1};
}

void drawIcon(const World& image, World* icon) {
    const PixelFrame frame = iconFrame(image);
    copyWorld(&image, image.frame, icon, frame, CopyMode::dither);
    paintWorld(icon, grown(frame), black, 1);
}

void saveIcon(const WorldOwner& icon, std::int32_t rowBytes, std::uint32_t type) {
    if (const Handle bytes = handleWorld(rowBytes, icon->frame.height(), icon.get())) {
        saveFile(bytes, type, iconNumber);
    }
}

} // namespace

void finderWorld(const World* image) {
    if (image == nullptr) {
        return;
    }
    if (const WorldOwner list = allocateWorld(iconSide, 2 * iconSide, 1, imageTables)) {
        drawIcon(*image, list.get());
        PixelFrame below = grown(iconFrame(*image));
        below.top += iconSide;
        below.bottom += iconSide;
        paintWorld(list.get(), below, black);
        saveIcon(list, iconSide / 8, fourCharacters("ICN#"));
    }
    if (const WorldOwner icon = allocateWorld(iconSide, iconSide, 8, imageTables)) {
        drawIcon(*image, icon.get());
        saveIcon(icon, iconSide, fourCharacters("icl8"));
    }
}

} // namespace corvane
