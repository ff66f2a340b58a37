// Segments and subpaths.
#include "reader/paint/path.h"

#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "reader/group/art_place.h"
#include "reader/paint/path_art.h"
#include "runtime/callbacks.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// Segments are charged in steps that double from here.
constexpr std::size_t firstCharge = 1024;

void append(PathConstruction& path, const Segment& segment) {
    if (path.segments.size() == path.segments.capacity()) {
        const std::size_t room = std::max(firstCharge, 2 * path.segments.size());
        path.charge.resize(static_cast<std::int64_t>(room * sizeof(Segment)));
        path.segments.reserve(room);
    }
    path.segments.push_back(segment);
}

/// The path under construction; none: `context`.
PathConstruction& openPath(Interpreter& interpreter) {
    if (interpreter.level.path.compound == Art::null) {
        failException(Exception::context);
    }
    return interpreter.level.path;
}

/// Gives the segments of the open subpath to the host; it stays open.
void sendSegments(PathConstruction& path) {
    const auto count = static_cast<std::int32_t>(path.segments.size());
    callHost(slot::setPathSegmentCount, path.object, count);
    callHost(slot::setPathSegments, path.object, 0, count, path.segments.data());
}

/// Ends the open subpath without closing it. In the extended profile one that is a single point
/// goes, unless it is needed: it would paint nothing.
void leaveSubpath(PathConstruction& path, bool needsPoint = false) {
    if (path.object == Art::null) {
        return;
    }
    if (rules().continuesClosedPaths && path.segments.size() == 1 && !needsPoint) {
        callHost(slot::disposeArt, path.object);
    } else {
        sendSegments(path);
    }
    path.object = Art::null;
}

/// The path under construction, in which a subpath is open.
PathConstruction& openSubpath(Interpreter& interpreter) {
    PathConstruction& path = openPath(interpreter);
    if (path.object == Art::null) {
        if (!rules().continuesClosedPaths) {
            failException(Exception::context);
        }
        movetoPath(interpreter, path.start);
    }
    return path;
}

} // namespace

void dropPath(Interpreter& interpreter) {
    const PathConstruction path = std::exchange(interpreter.level.path, {});
    if (path.compound == Art::null) {
        return;
    }
    callHost(slot::disposeArt, path.compound);
    if (rules().lazyGroups && !interpreter.containers.isOpen(path.holder)) {
        interpreter.containers.dropBare();
    }
}

void beginPath(Interpreter& interpreter) {
    PathConstruction& path = interpreter.level.path;
    if (path.compound != Art::null) {
        return;
    }
    path.holder = interpreter.containers.container();
    path.compound = makeArt(ArtKind::compound, path.holder);
    path.object = Art::null;
    path.firstByte = interpreter.level.span.start;
    path.painted = interpreter.level.painted;
    path.hidesFill = false;
    path.hidesStroke = false;
    PathStyle& style = interpreter.state.style;
    style.fillPaint = 0;
    style.strokePaint = 0;
    style.clip = 0;
}

void movetoPath(Interpreter& interpreter, RealPoint point) {
    PathConstruction& path = openPath(interpreter);
    leaveSubpath(path);
    path.object = newArt(ArtKind::path, Placement::inside, path.compound);
    path.segments.clear();
    path.start = point;
    const Point anchor = transformState(interpreter, point);
    append(path, {anchor, anchor, anchor, 0});
}

void linetoPath(Interpreter& interpreter, RealPoint point) {
    PathConstruction& path = openSubpath(interpreter);
    const Point anchor = transformState(interpreter, point);
    append(path, {anchor, anchor, anchor, 0});
}

void curvetoPath(Interpreter& interpreter, RealPoint control1, RealPoint control2,
                 RealPoint point) {
    PathConstruction& path = openSubpath(interpreter);
    const Point anchor = transformState(interpreter, point);
    path.segments.back().out = transformState(interpreter, control1);
    append(path, {anchor, transformState(interpreter, control2), anchor, 0});
}

void closetoPath(Interpreter& interpreter) {
    PathConstruction& path = openPath(interpreter);
    if (path.object == Art::null) {
        return;
    }
    std::vector<Segment>& segments = path.segments;
    if (segments.size() >= 2 &&
        callHost(slot::pointsEqual, &segments.front().anchor, &segments.back().anchor)) {
        segments.front().in = segments.back().in;
        segments.pop_back();
    }
    sendSegments(path);
    callHost(slot::setPathClosed, path.object, std::uint8_t{1});
    path.object = Art::null;
}

void endPath(Interpreter& interpreter) {
    PathConstruction& path = openPath(interpreter);
    // A clip of a point lets nothing through.
    const bool clipsAll = interpreter.state.style.clip != 0 && path.object != Art::null &&
                          firstChild(path.compound) == path.object &&
                          nextSibling(path.object) == Art::null;
    leaveSubpath(path, clipsAll);
    finishArt(interpreter);
}

void fillPath(Interpreter& interpreter) {
    PathConstruction& path = openPath(interpreter);
    GraphicsState& state = interpreter.state;
    path.hidesFill = state.fill.hidden;
    state.style.fillPaint = state.fill.hidden ? 0 : 1;
    state.style.rule = FillRule::nonzero;
}

void eofillPath(Interpreter& interpreter) {
    if (!rules().evenOddCarried) {
        raiseWarning(Warning::evenOdd);
    }
    fillPath(interpreter);
    if (rules().evenOddCarried) {
        interpreter.state.style.rule = FillRule::evenOdd;
    }
}

void strokePath(Interpreter& interpreter) {
    PathConstruction& path = openPath(interpreter);
    path.hidesStroke = interpreter.state.stroke.hidden;
    interpreter.state.style.strokePaint = interpreter.state.stroke.hidden ? 0 : 1;
}

void clipPath(Interpreter& interpreter) {
    openPath(interpreter);
    interpreter.state.style.clip = 1;
    interpreter.state.clipRule = FillRule::nonzero;
}

void eoclipPath(Interpreter& interpreter) {
    clipPath(interpreter);
    if (rules().evenOddCarried) {
        interpreter.state.clipRule = FillRule::evenOdd;
    }
}

} // namespace corvane
