#include "writer/patch/compare/look.h"

#include "runtime/callbacks.h"
#include "writer/art/outline.h"

namespace corvane {

namespace {

std::int64_t cellOf(Fixed value, Fixed step) {
    static_assert(Look::cell == 1 << 15);
    return (std::int64_t{value} + step) >> 15;
}

} // namespace

std::size_t LookCells::Hash::operator()(const LookCells& cells) const {
    std::uint64_t mixed = static_cast<std::uint64_t>(cells.anchors);
    for (const std::int64_t part : {cells.firstX, cells.firstY, cells.lastX, cells.lastY}) {
        mixed = (mixed ^ static_cast<std::uint64_t>(part)) * 0x9E3779B97F4A7C15U;
        mixed ^= mixed >> 29;
    }
    return static_cast<std::size_t>(mixed);
}

LookCells Look::cells(Fixed firstX, Fixed firstY, Fixed lastX, Fixed lastY) const {
    return {anchors, cellOf(first.x, firstX), cellOf(first.y, firstY), cellOf(last.x, lastX),
            cellOf(last.y, lastY)};
}

Look lookOf(Art art) {
    Look look;
    const ChargedList<Subpath> subpaths = subpathsWithin(art);
    for (const Subpath& subpath : subpaths.items()) {
        if (subpath.count == 0) {
            continue;
        }
        Segment segment;
        if (look.anchors == 0) {
            callHost(slot::getPathSegments, subpath.art, 0, 1, &segment);
            look.first = segment.anchor;
        }
        callHost(slot::getPathSegments, subpath.art, subpath.count - 1, 1, &segment);
        look.last = segment.anchor;
        look.anchors += subpath.count;
    }
    return look;
}

} // namespace corvane
