// Pictures: how the preview of a file stands in its resource fork.
//
// A picture is a record of ours: the letters "cvpc", its frame (top, left, bottom, right; 16 bits
// each, high byte first), 256 colours of three bytes, and a number of a colour for each pixel, row
// by row from the top.
#pragma once

#include "host/zone.h"
#include "output/world/world.h"

#include <cstddef>
#include <optional>
#include <span>

namespace corvane {

struct PreviewPicture {
    PixelFrame frame;
    std::span<const std::byte> colours;
    std::span<const std::byte> pixels;
};

/// None where the bytes are no picture: of another form, without area, or of another size than the
/// frame says.
std::optional<PreviewPicture> readPicture(std::span<const std::byte> bytes);

/// A picture of a world of 8 bits, whose frame it has. Null where the zone is full.
Handle makePicture(const World& world);

/// Draws the picture into `frame`, a part of the world.
void pictureWorld(const PreviewPicture& picture, const PixelFrame& frame, World* world);

/// Stores the preview of the file whose resource fork is open: the image over what the mask leaves
/// of a white world of that depth. Nothing where there is no such world.
void sampleWorld(const World* image, const World* mask, std::int32_t depth);

/// Stores icons of the image in the same way.
void finderWorld(const World* image);

} // namespace corvane
