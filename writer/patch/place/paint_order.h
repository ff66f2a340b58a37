// Where each object of the artwork is painted: where it stood on the page, or written apart between
// two that stay.
#pragma once

#include "writer/patch/compare/clip_matching.h"

#include <vector>

namespace corvane {

class GatheredState;

/// A place between two operators of the content where what is new can be drawn.
struct InsertionPoint {
    bool isAtEnd = false; ///< behind all of the content, where nothing is in force any more
    TraceIndex event = 0; ///< otherwise: in front of this event
    Surroundings inForce = {};
    /// Clips of the object's own groups that are in force there; it draws the inner ones itself.
    /// No clip within a group that is laid over others as one thing is.
    std::uint32_t ownClips = 0;
    std::uint32_t ownLayers = 0; ///< the same of layers
};

/// An object that is written apart.
struct Insertion {
    EditedIndex object = 0;
    InsertionPoint point;
};

struct PaintOrder {
    std::vector<bool>
        stays; ///< by object: it is painted by the page's own bytes, or in their place
    std::vector<Insertion> insertions; ///< in the order of painting
};

/// Keeps the longest run of objects that are still in the order of the page, each within the same
/// clips, and finds places for all others. Raises `unpatchable` where an object has none.
PaintOrder orderObjects(const BaseContent& base, const EditedArtwork& artwork,
                        const Matching& matching, const ClipMatching& clips, GatheredState& state);

} // namespace corvane
