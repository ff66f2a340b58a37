#include "reader/paint/path_space.h"

#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"

#include <algorithm>
#include <array>
#include <span>

namespace corvane {

namespace {

/// Segments come from the host in blocks of this many.
constexpr std::int32_t blockSize = 256;

/// What a subpath and a segment count as, in the steps of a page's work.
constexpr std::int64_t subpathSteps = 100;
constexpr std::int64_t segmentSteps = 20;

void moveSegments(std::span<Segment> segments, const RealMatrix& movement) {
    const auto move = [&](Point& point) {
        const RealPoint to = transform(movement, {realFromFixed(point.x), realFromFixed(point.y)});
        point = {fixedFromReal(to.x), fixedFromReal(to.y)};
    };
    for (Segment& segment : segments) {
        move(segment.anchor);
        move(segment.in);
        move(segment.out);
    }
}

/// Moves a subpath that the host has already; the segments that it has.
std::int32_t moveSubpath(Art subpath, const RealMatrix& movement) {
    std::int32_t count = 0;
    callHost(slot::getPathSegmentCount, subpath, &count);
    std::array<Segment, blockSize> block;
    for (std::int32_t at = 0; at < count; at += blockSize) {
        const std::int32_t size = std::min(blockSize, count - at);
        callHost(slot::getPathSegments, subpath, at, size, block.data());
        moveSegments(std::span(block).first(static_cast<std::size_t>(size)), movement);
        callHost(slot::setPathSegments, subpath, at, size, block.data());
    }
    return count;
}

} // namespace

void followSpace(Interpreter& interpreter, const RealMatrix& former) {
    PathConstruction& path = interpreter.level.path;
    const RealMatrix& ctm = interpreter.state.exactCtm;
    if (!rules().exactNumbers || path.compound == Art::null || former == ctm) {
        return;
    }
    const std::optional<RealMatrix> back = inverse(former);
    if (!back) {
        return;
    }
    const RealMatrix movement = multiply(*back, ctm);
    for (Art subpath = firstChild(path.compound); subpath != Art::null;
         subpath = nextSibling(subpath)) {
        if (subpath != path.object) {
            interpreter.progress.work(subpathSteps + segmentSteps * moveSubpath(subpath, movement));
        }
    }
    if (path.object != Art::null) {
        moveSegments(path.segments, movement);
        interpreter.progress.work(segmentSteps * std::ssize(path.segments));
    }
}

} // namespace corvane
