#include "writer/patch/art_extent.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/matrix.h"
#include "writer/art/outline.h"
#include "writer/image/image_works.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>
#include <array>
#include <span>

namespace corvane {

namespace {

/// How far from its path a stroke of this style may paint.
std::int64_t strokeReach(const PathStyle& style) {
    if (style.strokePaint == 0) {
        return 0;
    }
    constexpr std::int64_t twice = std::int64_t{2} * fixedOne;
    const std::int64_t half = (std::int64_t{style.lineWidth} + 1) / 2;
    // A square cap reaches 1.42 half widths away, a miter as many as its limit says.
    const std::int64_t factor =
        style.join == 0 ? std::max<std::int64_t>(style.miterLimit, twice) : twice;
    return half * factor / fixedOne + fixedOne / 4;
}

} // namespace

void ArtExtent::add(const Point& point) {
    left = std::min<std::int64_t>(left, point.x);
    bottom = std::min<std::int64_t>(bottom, point.y);
    right = std::max<std::int64_t>(right, point.x);
    top = std::max<std::int64_t>(top, point.y);
}

void ArtExtent::add(const ArtExtent& other) {
    left = std::min(left, other.left);
    bottom = std::min(bottom, other.bottom);
    right = std::max(right, other.right);
    top = std::max(top, other.top);
}

ArtExtent extentOf(Art art) {
    if (artKind(art) == ArtKind::text || artKind(art) == ArtKind::group) {
        return {INT64_MIN, INT64_MIN, INT64_MAX, INT64_MAX};
    }
    ArtExtent extent;
    if (artKind(art) == ArtKind::placed) {
        const RealMatrix matrix = realMatrix(placedImage(art).matrix);
        for (const RealPoint& corner : unitSquare) {
            const RealPoint at = transform(matrix, corner);
            extent.add(Point{fixedFromReal(at.x), fixedFromReal(at.y)});
        }
        return extent;
    }
    forEachSegment(art, [&](const Segment& segment) {
        extent.add(segment.anchor);
        extent.add(segment.in);
        extent.add(segment.out);
    });
    const std::int64_t reach = strokeReach(leadingStyle(art));
    extent.left -= reach;
    extent.bottom -= reach;
    extent.right += reach;
    extent.top += reach;
    return extent;
}

std::optional<ArtExtent> rectangleOf(Art clip) {
    if (isTextClip(clip)) {
        return std::nullopt;
    }
    const ChargedList<Subpath> subpaths = subpathsWithin(clip);
    if (subpaths.size() != 1 || (subpaths[0].count != 4 && subpaths[0].count != 5)) {
        return std::nullopt;
    }
    std::array<Segment, 5> corners;
    callHost(slot::getPathSegments, subpaths[0].art, 0, subpaths[0].count, corners.data());
    if (subpaths[0].count == 4) {
        corners[4] = corners[0];
    }
    ArtExtent extent;
    bool isRectangle = corners[4].anchor == corners[0].anchor;
    for (std::size_t i = 0; i < 4; ++i) {
        const Segment& from = corners[i];
        const Segment& to = corners[i + 1];
        const bool isStraight = from.out == from.anchor && to.in == to.anchor;
        // Sides along the x axis and the y axis take turns.
        const bool isLevel = from.anchor.y == to.anchor.y;
        const bool isUpright = from.anchor.x == to.anchor.x;
        const bool firstIsLevel = corners[0].anchor.y == corners[1].anchor.y;
        isRectangle =
            isRectangle && isStraight && (firstIsLevel == (i % 2 == 0) ? isLevel : isUpright);
        extent.add(from.anchor);
    }
    return isRectangle ? std::optional(extent) : std::nullopt;
}

} // namespace corvane
