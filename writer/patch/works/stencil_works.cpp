#include "writer/patch/works/stencil_works.h"

#include "runtime/exception.h"
#include "writer/art/color_works.h"
#include "writer/art/outline.h"
#include "writer/art/path_works.h"
#include "writer/art/space_works.h"
#include "writer/patch/compare/look_difference.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/works/kept_works.h"

namespace corvane {

namespace {

/// How the square moved; nothing where the stencil cannot be drawn there.
std::optional<RealMatrix> movementFor(const PaintedArt& was, Art is,
                                      const ArtDifference& difference) {
    if (difference.kind || difference.paints || difference.strokeParts() || difference.look.mask) {
        return std::nullopt;
    }
    if (!difference.shape) {
        return RealMatrix();
    }
    return difference.masksMoved ? movementOf(was.art, is) : std::nullopt;
}

} // namespace

PageMovement movementOfStencil(const PatchTools& tools, const PaintedArt& was, Art is,
                               const ArtDifference& difference) {
    const RealMatrix movement = movementFor(was, is, difference).value_or(RealMatrix());
    const Surroundings& own = tools.trace.events()[was.event].behind;
    return {.masks = movesMask(own, difference) ? movement : RealMatrix(),
            .patterns = difference.movesPaint ? movement : RealMatrix()};
}

void stencilWorks(PatchTools& tools, const PaintedArt& was, const EditedObject& is,
                  const ArtDifference& difference) {
    Walk& walk = tools.walk;
    const TraceEvent& event = tools.trace.events()[was.event];
    const RealMatrix& ctm = tools.trace.matrix(event.behind.matrix);
    const std::optional<RealMatrix> back = inverse(ctm);
    if (!back) {
        failException(Exception::unpatchable);
    }
    const std::optional<RealMatrix> movement = movementFor(was, is.art, difference);
    const PathStyle style = leadingStyle(is.art);
    if (!movement || (difference.fill && needsMask(walk, style))) {
        spaceWorks(walk, *back);
        stateWorks(walk, wholeStateOf(is.appearance));
        return artWorks(walk, is.art);
    }
    lookWorks(tools, ctm, difference.look);
    if (difference.fill) {
        colorWorks(walk, style.fill, true);
    }
    if (difference.shape) {
        spaceWorks(walk, multiply(multiply(ctm, *movement), *back));
    }
    rangesWorks(tools, {{event.start, event.end}});
}

} // namespace corvane
