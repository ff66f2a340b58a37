// Images of the page for the host.
#pragma once

#include "host/image.h"
#include "objects/object.h"
#include "reader/document/cache.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

/// Tells the host of an image XObject, a resolved stream (`number`: of its object, 0 for a direct
/// one) and, where it wants them, its bytes. `fill` is what a stencil mask is painted in. Null
/// where it is no image at all.
Image deliverImage(DocumentCache&, const Object& stream, std::int32_t number, const Colour& fill);

/// The same for an inline image: its dictionary, with abbreviations as they stand, and its raw
/// bytes. The key of a bitmap letter, one that a glyph procedure draws, begins with "glyph".
Image deliverInlineImage(DocumentCache&, const Object& dictionary, std::span<const std::byte> data,
                         const Colour& fill, bool isGlyph);

} // namespace corvane
