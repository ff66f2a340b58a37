// Tiling patterns: what their content paints becomes the tile of a pattern of the host.
//
// Source: PDF Reference, 4.6.2.
#pragma once

#include "host/artwork.h"
#include "host/extension.h"
#include "host/matrix.h"
#include "objects/object.h"
#include "reader/document/cache.h"

#include <cstdint>
#include <optional>

namespace corvane {

struct Interpreter;

/// What a tiling pattern says of itself.
struct TilingPattern {
    bool isColoured = true;
    Box cell;
    double stepX = 0; ///< more than 0
    double stepY = 0;
    RealMatrix matrix; ///< from its space to the default space of the content that uses it
    ObjectOwner resources;
};

/// Nothing where the stream is no pattern that can be drawn.
std::optional<TilingPattern> readTiling(DocumentCache& cache, const Object& stream);

/// Draws the tile and makes a pattern of it. `base` leads from the default space of the content
/// that uses the pattern to the artboard, `colour` is that of a pattern without colours of its own,
/// `object` the number of its stream. Nothing where it cannot be drawn: within itself, for one.
std::optional<PaintSource> drawTiling(Interpreter& interpreter, const TilingPattern& pattern,
                                      const Object& stream, std::int32_t object,
                                      const RealMatrix& base, const Colour& colour);

} // namespace corvane
