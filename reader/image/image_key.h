// What an image is called: by its object, and by all that decides what it looks like.
#pragma once

#include "reader/image/image_entries.h"
#include "reader/paint/default_spaces.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace corvane {

/// "12-0a1b2c3d4e5f6071": the number of the object, and a digest of its data as they stand in the
/// file, of the entries that count, of what these refer to and, for a stencil, of its colour
/// (0xRRGGBB; -1: it is none), else of the default spaces of the content that draws it. `data`: of
/// an inline image.
std::string imageKeyOf(const ImageEntries& entries, std::int32_t number,
                       std::optional<std::span<const std::byte>> data, std::int32_t stencilColour,
                       const DefaultSpaces& defaults);

} // namespace corvane
