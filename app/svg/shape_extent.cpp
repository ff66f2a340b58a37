#include "app/svg/shape_extent.h"

#include "app/svg/style.h"
#include "app/svg/subpaths.h"
#include "app/svg/text/text_clip.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace corvane {

namespace {

/// The points of a shape, and what their lines are like.
struct Outline {
    Extent points;
    bool upright = true; ///< every line is horizontal or vertical
};

bool aligned(Point a, Point b) {
    return a.x == b.x || a.y == b.y;
}

void addSubpath(Outline& outline, const Segments& segments) {
    if (segments.empty()) {
        return;
    }
    outline.upright = outline.upright && segments.straight();
    Point last = segments[segments.size() - 1].anchor;
    for (const Segment& segment : segments) {
        outline.points.add(segment.anchor);
        outline.points.add(segment.in);
        outline.points.add(segment.out);
        outline.upright = outline.upright && aligned(last, segment.anchor);
        last = segment.anchor;
    }
}

/// How far the stroke reaches beyond the line's points in x and in y. At right angles a miter, like
/// a square cap, reaches half the width; in general the limit says how far, and a cap's corner is
/// 1.415 half widths away.
std::int64_t strokeReach(const PathStyle& style, bool upright) {
    const std::int64_t half = (visibleWidth(style) + 1) / 2;
    if (upright) {
        return half;
    }
    constexpr std::int64_t squareCap = 92733; // 1.415
    const std::int64_t miter = style.join == 0 ? style.miterLimit : 0;
    return (half * std::max(squareCap, miter) >> 16) + 1;
}

/// a, b and c do not lie on one line. Products of distances take 66 bits: they are compared in the
/// low 64 and, for the rest, roughly.
bool turns(Point a, Point b, Point c) {
    const std::int64_t bx = std::int64_t{b.x} - a.x;
    const std::int64_t by = std::int64_t{b.y} - a.y;
    const std::int64_t cx = std::int64_t{c.x} - a.x;
    const std::int64_t cy = std::int64_t{c.y} - a.y;
    const auto low = [](std::int64_t value) { return static_cast<std::uint64_t>(value); };
    const auto high = [](std::int64_t value) { return static_cast<double>(value); };
    return low(bx) * low(cy) != low(by) * low(cx) ||
           std::abs(high(bx) * high(cy) - high(by) * high(cx)) > 0x1p62;
}

bool hasArea(const Segments& segments) {
    if (segments.empty()) {
        return false;
    }
    const Point start = segments[0].anchor;
    Point other = start;
    for (const Segment& segment : segments) {
        for (const Point point : {segment.anchor, segment.in, segment.out}) {
            if (other == start) {
                other = point;
            } else if (turns(start, other, point)) {
                return true;
            }
        }
    }
    return false;
}

bool isRectangle(const Segments& segments) {
    const std::int32_t count = segments.size();
    if (!segments.straight() || count < 4 || count > 5) {
        return false;
    }
    std::array<Point, 4> corner;
    for (std::int32_t i = 0; i < 4; ++i) {
        corner[static_cast<std::size_t>(i)] = segments[i].anchor;
    }
    if (count == 5 && segments[4].anchor != corner[0]) {
        return false;
    }
    const bool acrossFirst = corner[0].y == corner[1].y && corner[1].x == corner[2].x &&
                             corner[2].y == corner[3].y && corner[3].x == corner[0].x;
    const bool upFirst = corner[0].x == corner[1].x && corner[1].y == corner[2].y &&
                         corner[2].x == corner[3].x && corner[3].y == corner[0].y;
    return acrossFirst || upFirst;
}

} // namespace

Extent paintedExtent(const Document& document, Art shape) {
    const Art leading = leadingPath(document, shape);
    if (leading == Art::null || document.guide(leading)) {
        return {};
    }
    const PathStyle& style = document.style(leading);
    if (style.strokePaint == 0 && style.fillPaint == 0) {
        return {};
    }
    Outline outline;
    forEachSubpath(document, shape,
                   [&](Art path) { addSubpath(outline, document.segments(path)); });
    Extent extent = outline.points;
    if (style.strokePaint != 0 && extent.left <= extent.right) {
        const std::int64_t reach = strokeReach(style, outline.upright && style.pen == Pen());
        extent.left -= reach;
        extent.bottom -= reach;
        extent.right += reach;
        extent.top += reach;
    }
    return extent;
}

ClipShape clipShape(const Document& document, Art shape) {
    ClipShape clip;
    if (isTextClip(document, shape)) {
        return {.bounds = Extent::everything(), .rectangle = false, .blank = false};
    }
    int drawn = 0;
    forEachSubpath(document, shape, [&](Art path) {
        const Segments segments = document.segments(path);
        Outline outline;
        addSubpath(outline, segments);
        clip.bounds.add(outline.points);
        clip.blank = clip.blank && !hasArea(segments);
        clip.rectangle = drawn == 0 && isRectangle(segments);
        drawn += segments.empty() ? 0 : 1;
    });
    return clip;
}

} // namespace corvane
