// Images that are drawn become placed art.
#pragma once

#include "reader/image/page_images.h"

#include <cstdint>

namespace corvane {

struct Interpreter;

/// Whether the host has images for art.
bool hostHoldsImages();

/// Draws an image in the unit square: makes placed art of the bytes from `start` to the end of the
/// operator, which is `ContentLevel::placed` then. An image that cannot be told is counted as left
/// out; one that lies where nothing can be seen makes nothing.
void placeImage(Interpreter& interpreter, const KnownImage& image, std::int64_t start);

} // namespace corvane
