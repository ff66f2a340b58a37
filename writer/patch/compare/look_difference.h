// How objects are laid over what is behind them: what an edit changed of it.
#pragma once

#include "host/appearance.h"
#include "host/matrix.h"
#include "reader/content/content_trace.h"
#include "writer/patch/compare/comparison.h"
#include "writer/patch/compare/movement.h"

#include <map>
#include <optional>
#include <tuple>
#include <utility>

namespace corvane {

struct PatchTools;

/// The look of an object, and with which paints it is painted.
struct ObjectLook {
    Appearance appearance;
    bool fills = true;
    bool strokes = false;
};

/// Compares soft masks, and remembers what it found: many objects may have the same.
class MaskComparison {
public:
    enum class Relation {
        same,
        moved, ///< it moved as the object did
        other
    };

    /// `movement`, if it is known, is that of the object.
    Relation compare(SoftMask was, SoftMask is, const std::optional<RealMatrix>& movement);

private:
    bool isSame(SoftMask was, SoftMask is, const RealMatrix& movement);

    std::map<std::tuple<SoftMask, SoftMask, MovementKey>, bool> known_;
    PaintComparison paints_; // of what masks hold
};

/// Notes how two looks differ.
void compareLooks(const ObjectLook& was, const ObjectLook& is, MaskComparison& masks,
                  const std::optional<RealMatrix>& movement, ArtDifference& difference);

/// Whether the mask in which an object of the page stands moves with it, and is to be set again in
/// its new place.
bool movesMask(const Surroundings& own, const ArtDifference& difference);

/// Sets what differs, where `ctm` is in force.
void lookWorks(PatchTools& tools, const RealMatrix& ctm, const LookState& look);

} // namespace corvane
