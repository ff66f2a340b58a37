#include "reader/shading/box_art.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <array>
#include <span>

namespace corvane {

namespace {

/// Segments come from the host in blocks of this many.
constexpr std::int32_t blockSize = 256;

void addPath(Box& box, Art path) {
    std::int32_t count = 0;
    callHost(slot::getPathSegmentCount, path, &count);
    std::array<Segment, blockSize> block;
    for (std::int32_t at = 0; at < count; at += blockSize) {
        const std::int32_t size = std::min(blockSize, count - at);
        callHost(slot::getPathSegments, path, at, size, block.data());
        for (const Segment& segment : std::span(block).first(static_cast<std::size_t>(size))) {
            for (const Point& point : {segment.anchor, segment.in, segment.out}) {
                const double x = realFromFixed(point.x);
                const double y = realFromFixed(point.y);
                box = {std::min(box.left, x), std::min(box.bottom, y), std::max(box.right, x),
                       std::max(box.top, y)};
            }
        }
    }
}

} // namespace

void setCorners(Art path, const Box& box, const RealMatrix& matrix) {
    const auto corner = [&](double x, double y) {
        const RealPoint to = transform(matrix, {x, y});
        const Point point{fixedFromReal(to.x), fixedFromReal(to.y)};
        return Segment{point, point, point, 0};
    };
    const std::array corners = {corner(box.left, box.bottom), corner(box.right, box.bottom),
                                corner(box.right, box.top), corner(box.left, box.top)};
    const auto count = static_cast<std::int32_t>(corners.size());
    callHost(slot::setPathSegmentCount, path, count);
    callHost(slot::setPathSegments, path, 0, count, corners.data());
    callHost(slot::setPathClosed, path, std::uint8_t{1});
}

Box boxOfArt(Art art) {
    constexpr double far = 1e9;
    Box box{far, far, -far, -far};
    if (artKind(art) == ArtKind::path) {
        addPath(box, art);
        return box;
    }
    for (Art child = firstChild(art); child != Art::null; child = nextSibling(child)) {
        if (artKind(child) == ArtKind::path) {
            addPath(box, child);
        }
    }
    return box;
}

} // namespace corvane
