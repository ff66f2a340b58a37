#include "writer/patch/art_extent.h"

#include "host/rectangle.h"
#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/matrix.h"
#include "writer/art/outline.h"
#include "writer/image/image_works.h"
#include "writer/patch/works/placed_image.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>

namespace corvane {

namespace {

/// How far a stroke of this style may paint from points of its path, in x and in y. Where all lines
/// are upright, a miter and a square cap reach half the width; else the limit says how far, and the
/// corner of a cap is 1.415 half widths away.
std::int64_t strokeReach(const PathStyle& style, bool isUpright) {
    if (style.strokePaint == 0) {
        return 0;
    }
    constexpr std::int64_t squareCap = 92733;       // 1.415
    constexpr std::int64_t hairline = fixedOne / 4; // as the thinnest line is shown
    const std::int64_t width =
        style.lineWidth == 0 ? hairline : std::abs(std::int64_t{style.lineWidth});
    const std::int64_t half = (width + 1) / 2;
    const std::int64_t miter = style.join == 0 ? style.miterLimit : 0;
    return isUpright ? half : half * std::max(squareCap, miter) / fixedOne + 1;
}

bool isAligned(const Point& a, const Point& b) {
    return a.x == b.x || a.y == b.y;
}

/// The points of a subpath; whether all its lines, and the one that closes it, are horizontal or
/// vertical.
bool addPoints(const Subpath& subpath, ArtExtent& extent) {
    bool isUpright = true;
    std::optional<Segment> first;
    Segment last;
    SegmentReader reader(subpath);
    for (std::int32_t at = 0; at < subpath.count;) {
        const std::span<const Segment> block = reader.read(at);
        for (const Segment& segment : block) {
            extent.add(segment.anchor);
            extent.add(segment.in);
            extent.add(segment.out);
            isUpright = isUpright && segment.in == segment.anchor &&
                        segment.out == segment.anchor &&
                        (!first || isAligned(last.anchor, segment.anchor));
            first = first ? first : std::optional(segment);
            last = segment;
        }
        at += static_cast<std::int32_t>(block.size());
    }
    return isUpright && (!first || isAligned(last.anchor, first->anchor));
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
        return ArtExtent::everything();
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
    bool isUpright = true;
    const ChargedList<Subpath> subpaths = subpathsWithin(art);
    for (const Subpath& subpath : subpaths.items()) {
        isUpright = addPoints(subpath, extent) && isUpright;
    }
    const std::int64_t reach = strokeReach(leadingStyle(art), isUpright);
    extent.left -= reach;
    extent.bottom -= reach;
    extent.right += reach;
    extent.top += reach;
    return extent;
}

ArtExtent extentOfPage() {
    Rect bounds;
    callHost(slot::getPageBounds, &bounds);
    const bool isNone = callHost(slot::rectEmpty, &bounds) != 0;
    return isNone ? ArtExtent::everything()
                  : ArtExtent{bounds.left, bounds.bottom, bounds.right, bounds.top};
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
    const std::optional<Rect> rectangle =
        rectangleOf(std::span(corners).first(static_cast<std::size_t>(subpaths[0].count)));
    return rectangle ? std::optional(ArtExtent{rectangle->left, rectangle->bottom, rectangle->right,
                                               rectangle->top})
                     : std::nullopt;
}

} // namespace corvane
