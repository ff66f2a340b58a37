// What an edit did to an object: the art that the page's bytes make, and the art to be saved.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"
#include "writer/art/drawn_looks.h"
#include "writer/patch/compare/paint_comparison.h"

#include <functional>
#include <optional>

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
    bool pen = false;
    bool flatness = false;
    bool letters = false; ///< of text: what is shown, in which font, and how letters stand
    bool place = false;   ///< of text: where it begins, its size and direction; of others: where
    bool decorations = false; ///< of text: lines along it, which the page does not have
    bool image = false;       ///< of images: which one
    bool inside = false;      ///< of forms: what they hold, and how that is clipped
    LookState look = {};      ///< what must be set to lay it over what is behind it as it is now
    /// No differences of the paint and the look: gradients and patterns moved as the object did,
    /// and so did its mask.
    bool movesPaint = false;
    bool masksMoved = false;

    bool any() const;
    bool strokeParts() const {
        return stroke || lineWidth || dash || cap || join || miterLimit || pen;
    }
};

ArtDifference compareArt(Art was, Art is, PaintComparison& paints);

/// How art moved on the artboard, if it moved as a whole; asked for where paints need it.
using MovementOfArt = std::function<std::optional<RealMatrix>()>;

/// The parts in which two styles of the same kind of art differ. Gradients and patterns that moved
/// as the art did are no difference.
ArtDifference compareStyles(const PathStyle& was, const PathStyle& is, PaintComparison& paints,
                            const MovementOfArt& movement = {});

/// With the lengths of its lines so many times as long.
PathStyle stretched(PathStyle style, double stretch);

/// Whether two clips let through the same.
bool sameClip(Art was, Art is);

/// Whether the points of two paths or compound paths are the same, and what is closed.
bool sameShape(Art a, Art b);

/// Whether two opacities look the same: editors write three digits.
bool sameOpacity(double a, double b);

/// Whether two pens draw lines that look the same.
bool samePen(const Pen& a, const Pen& b);

/// Whether a person sees the same colour, and no amounts that were given exactly differ.
bool sameColour(const Colour& was, const Colour& is);

} // namespace corvane
