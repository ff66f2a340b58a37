#include "writer/art/segment_works.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/rules.h"

#include <algorithm>

namespace corvane {

namespace {

bool samePoint(const Point& a, const Point& b) {
    return a == b || callHost(slot::pointsEqual, &a, &b);
}

bool isStraight(const Segment& from, const Segment& to) {
    return samePoint(from.out, from.anchor) && samePoint(to.in, to.anchor);
}

void writeSegment(Walk& walk, const Segment& from, const Segment& to) {
    const bool leavesStraight = samePoint(from.out, from.anchor);
    const bool arrivesStraight = samePoint(to.in, to.anchor);
    if (leavesStraight && arrivesStraight) {
        walk.add(to.anchor);
        walk.text.add("l\n");
        return;
    }
    if (!leavesStraight) {
        walk.add(from.out);
    }
    if (!arrivesStraight) {
        walk.add(to.in);
    }
    walk.add(to.anchor);
    walk.text.add(leavesStraight ? "v\n" : arrivesStraight ? "y\n" : "c\n");
}

/// Ends a closed subpath. Readers take a last point that lies on the first for the closing one:
/// there the step between the two is written, so that they take that.
void closeSubpath(Walk& walk, const Segment& last, const Segment& first, bool isPoint) {
    if (!rules().closesSubpaths) {
        writeSegment(walk, last, first);
        return;
    }
    const bool liesOnStart = !isPoint && samePoint(last.anchor, first.anchor);
    if (liesOnStart || !isStraight(last, first)) {
        writeSegment(walk, last, first);
    }
    walk.text.add("h\n");
}

} // namespace

Subpath subpathOf(Art art) {
    if (artKind(art) != ArtKind::path) {
        failException(Exception::range);
    }
    Subpath subpath{.art = art};
    std::uint8_t closed = 0;
    std::uint8_t guide = 0;
    callHost(slot::getPathSegmentCount, art, &subpath.count);
    callHost(slot::getPathClosed, art, &closed, 0);
    callHost(slot::getPathGuide, art, &guide);
    if (subpath.count < 0) {
        failException(Exception::host);
    }
    subpath.closed = closed != 0;
    subpath.guide = guide != 0;
    return subpath;
}

void segmentWorks(Walk& walk, const Subpath& subpath) {
    const auto block = static_cast<std::int32_t>(walk.segments.size());
    Segment first;
    Segment last;
    for (std::int32_t start = 0; start < subpath.count; start += block) {
        const std::int32_t count = std::min(subpath.count - start, block);
        callHost(slot::getPathSegments, subpath.art, start, count, walk.segments.data());
        std::span<const Segment> segments(walk.segments.data(), static_cast<std::size_t>(count));
        if (start == 0) {
            first = last = segments.front();
            walk.add(first.anchor);
            walk.text.add("m\n");
            segments = segments.subspan(1);
        }
        for (const Segment& segment : segments) {
            writeSegment(walk, last, segment);
            last = segment;
        }
        if (subpath.count - start <= block) {
            break;
        }
    }
    if (subpath.closed && subpath.count > 0) {
        closeSubpath(walk, last, first, subpath.count == 1);
    }
}

bool segmentWorks(Walk& walk, std::span<const Subpath> subpaths) {
    bool any = false;
    for (const Subpath& subpath : subpaths) {
        segmentWorks(walk, subpath);
        any = any || subpath.count > 0;
    }
    return any;
}

} // namespace corvane
