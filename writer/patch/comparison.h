// What an edit did to an object: the art that the page's bytes make, and the art to be saved.
#pragma once

#include "host/artwork.h"
#include "writer/art/drawn_looks.h"

#include <array>

namespace corvane {

/// The parts in which two paths or compound paths differ. What editors do to numbers and colours
/// that mean the same is no difference.
struct ArtDifference {
    bool kind = false;   ///< a path became a compound path, or the other way round
    bool shape = false;  ///< points, or which subpaths are closed
    bool paints = false; ///< whether it is filled or stroked, or the rule of filling
    bool fill = false;   ///< the colour, as are the next
    bool stroke = false;
    bool lineWidth = false;
    bool dash = false;
    bool cap = false;
    bool join = false;
    bool miterLimit = false;
    bool flatness = false;
    bool letters = false;    ///< of text: what is shown, in which font, and how letters stand
    bool place = false;      ///< of text: where it begins, its size and direction; of images: where
    bool image = false;      ///< of images: which one
    LookState look = {};     ///< what must be set to lay it over what is behind it as it is now
    bool masksMoved = false; ///< its mask moved along with it

    bool any() const;
    bool strokeParts() const { return stroke || lineWidth || dash || cap || join || miterLimit; }
};

ArtDifference compareArt(Art was, Art is);

/// The parts in which two styles of the same kind of art differ.
ArtDifference compareStyles(const PathStyle& was, const PathStyle& is);

/// Whether two clips let through the same.
bool sameClip(Art was, Art is);

/// Whether the points of two paths or compound paths are the same, and what is closed.
bool sameShape(Art a, Art b);

/// Whether a person sees the same colour, and no amounts that were given exactly differ.
bool sameColour(const Colour& was, const Colour& is);

} // namespace corvane
