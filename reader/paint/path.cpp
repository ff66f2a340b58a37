// Segments and subpaths.
#include "reader/paint/path.h"

#include "reader/content/art.h"
#include "reader/content/state.h"
#include "reader/paint/path_art.h"
#include "runtime/callbacks.h"
#include "runtime/memory.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

#include <algorithm>
#include <vector>

namespace corvane {

PathArt pathArt;

namespace {

/// The open subpath; the host gets its segments when it ends.
struct Subpath {
    std::vector<Segment> segments;
    ZoneCharge charge;
    RealPoint start; ///< user space; where the next one begins if no `m` says otherwise
};
Subpath subpath;

/// Segments are charged in steps that double from here.
constexpr std::size_t firstCharge = 1024;

void append(const Segment& segment) {
    if (subpath.segments.size() == subpath.segments.capacity()) {
        const std::size_t room = std::max(firstCharge, 2 * subpath.segments.size());
        subpath.charge.resize(static_cast<std::int64_t>(room * sizeof(Segment)));
        subpath.segments.reserve(room);
    }
    subpath.segments.push_back(segment);
}

void needPath() {
    if (pathArt.compound == Art::null) {
        failException(Exception::context);
    }
}

/// Gives the segments of the open subpath to the host; it stays open.
void sendSegments() {
    const auto count = static_cast<std::int32_t>(subpath.segments.size());
    callHost(slot::setPathSegmentCount, pathArt.object, count);
    callHost(slot::setPathSegments, pathArt.object, 0, count, subpath.segments.data());
}

/// Ends the open subpath without closing it. In the extended profile one that is a single point
/// goes: it would paint nothing.
void leaveSubpath() {
    if (pathArt.object == Art::null) {
        return;
    }
    if (rules().continuesClosedPaths && subpath.segments.size() == 1) {
        callHost(slot::disposeArt, pathArt.object);
    } else {
        sendSegments();
    }
    pathArt.object = Art::null;
}

void needSubpath() {
    needPath();
    if (pathArt.object == Art::null) {
        if (!rules().continuesClosedPaths) {
            failException(Exception::context);
        }
        movetoPath(subpath.start);
    }
}

} // namespace

void openPath() {
    pathArt = PathArt();
    subpath = Subpath();
}

void closePath() {
    openPath();
}

void dropPath() {
    if (pathArt.compound != Art::null) {
        callHost(slot::disposeArt, pathArt.compound);
    }
    pathArt = PathArt();
}

void beginPath() {
    if (pathArt.compound != Art::null) {
        return;
    }
    pathArt.compound = containers.make(ArtKind::compound);
    pathArt.object = Art::null;
    state.style.fillPaint = 0;
    state.style.strokePaint = 0;
    state.style.clip = 0;
}

void movetoPath(RealPoint point) {
    needPath();
    leaveSubpath();
    pathArt.object = newArt(ArtKind::path, Placement::inside, pathArt.compound);
    subpath.segments.clear();
    subpath.start = point;
    const Point anchor = transformState(point);
    append({anchor, anchor, anchor, 0});
}

void linetoPath(RealPoint point) {
    needSubpath();
    const Point anchor = transformState(point);
    append({anchor, anchor, anchor, 0});
}

void curvetoPath(RealPoint control1, RealPoint control2, RealPoint point) {
    needSubpath();
    const Point anchor = transformState(point);
    subpath.segments.back().out = transformState(control1);
    append({anchor, transformState(control2), anchor, 0});
}

void closetoPath() {
    needPath();
    if (pathArt.object == Art::null) {
        return;
    }
    std::vector<Segment>& segments = subpath.segments;
    if (segments.size() >= 2 &&
        callHost(slot::pointsEqual, &segments.front().anchor, &segments.back().anchor)) {
        segments.front().in = segments.back().in;
        segments.pop_back();
    }
    sendSegments();
    callHost(slot::setPathClosed, pathArt.object, std::uint8_t{1});
    pathArt.object = Art::null;
}

RealPoint startPath() {
    return subpath.start;
}

void endPath() {
    needPath();
    leaveSubpath();
    finishArt();
}

void fillPath() {
    needPath();
    state.style.fillPaint = state.fill.hidden ? 0 : 1;
    state.style.rule = FillRule::nonzero;
}

void eofillPath() {
    if (!rules().evenOddCarried) {
        raiseWarning(Warning::evenOdd);
    }
    fillPath();
    if (rules().evenOddCarried) {
        state.style.rule = FillRule::evenOdd;
    }
}

void strokePath() {
    needPath();
    state.style.strokePaint = state.stroke.hidden ? 0 : 1;
}

void clipPath() {
    needPath();
    state.style.clip = 1;
    state.clipRule = FillRule::nonzero;
}

void eoclipPath() {
    clipPath();
    if (rules().evenOddCarried) {
        state.clipRule = FillRule::evenOdd;
    }
}

} // namespace corvane
