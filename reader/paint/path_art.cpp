#include "reader/paint/path_art.h"

#include "host/pen.h"
#include "host/rectangle.h"
#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "reader/content/losses.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace corvane {

namespace {

PathStyle scaledBy(const GraphicsState& state, double scale) {
    PathStyle style = state.style;
    style.fill = state.fill.ink.value_or(style.fill);
    style.stroke = state.stroke.ink.value_or(style.stroke);
    const auto scaled = [&](double length) { return fixedFromReal(length * scale); };
    style.lineWidth = scaled(state.lineWidth);
    style.dashPhase = scaled(state.dashPhase);
    std::ranges::transform(state.dash, style.dash, scaled);
    return style;
}

/// Lines of the thinnest width that a device draws have no pen.
std::optional<StretchedPen> penOf(const Interpreter& interpreter) {
    const GraphicsState& state = interpreter.state;
    return interpreter.readsPens && state.lineWidth != 0 ? penUnder(state.exactCtm) : std::nullopt;
}

/// The style that the host gets.
PathStyle hostStyle(const Interpreter& interpreter, bool clip) {
    const GraphicsState& state = interpreter.state;
    const StretchedPen pen = penOf(interpreter).value_or(StretchedPen{{}, scaleState(state)});
    PathStyle style = scaledBy(state, pen.stretch);
    style.pen = pen.pen;
    style.clip = clip ? 1 : 0;
    if (clip) {
        style.rule = state.clipRule;
        if (rules().clipsUnpainted) {
            style.fillPaint = 0;
            style.strokePaint = 0;
        }
    }
    return style;
}

/// Other art than paths and what holds them raises `host`.
void applyStyle(Art art, const PathStyle& style) {
    switch (artKind(art)) {
    case ArtKind::path:
        callHost(slot::setPathStyle, art, &style);
        return;
    case ArtKind::group:
    case ArtKind::compound:
        for (Art child = firstChild(art); child != Art::null; child = nextSibling(child)) {
            applyStyle(child, style);
        }
        return;
    default:
        failException(Exception::host);
    }
}

/// Moves an only child out of its compound path; what the path is then. Null where there was no
/// child.
Art unwrapCompound(Art compound) {
    const Art child = firstChild(compound);
    if (child == Art::null) {
        callHost(slot::disposeArt, compound);
        return Art::null;
    }
    if (nextSibling(child) != Art::null) {
        return compound;
    }
    callHost(slot::reorderArt, child, Placement::inFront, compound);
    callHost(slot::disposeArt, compound);
    return child;
}

/// Tells the host which bytes made the path.
void tellSource(Interpreter& interpreter, Art path, bool isPainted) {
    ContentLevel& level = interpreter.level;
    if (level.tellsSources) {
        const ArtSource source = interpreter.sourceFrom(level.ended.start);
        callHost(slot::setArtSource, path, &source);
    }
    level.painted += isPainted ? 1 : 0;
}

/// Whether a clip along the last subpath leaves all that is seen of the content, but for slivers at
/// its edge: programs clip to the page, in numbers that they round.
bool leavesAll(const ContentLevel& level) {
    constexpr double room = 0.125;
    const std::optional<Rect> rectangle = rectangleOf(level.path.segments);
    const bool hasArea = level.area.left < level.area.right && level.area.bottom < level.area.top;
    return hasArea && rectangle && realFromFixed(rectangle->left) <= level.area.left + room &&
           realFromFixed(rectangle->bottom) <= level.area.bottom + room &&
           realFromFixed(rectangle->right) >= level.area.right - room &&
           realFromFixed(rectangle->top) >= level.area.top - room;
}

/// Makes the path the clip of a new group; what is left of it to be seen: a copy, or null.
Art clipWith(Interpreter& interpreter, Art path) {
    const GraphicsState& state = interpreter.state;
    Art copy = Art::null;
    if (state.style.fillPaint != 0 || state.style.strokePaint != 0) {
        callHost(slot::duplicateArt, path, Placement::behind, path, &copy);
        if (copy == Art::null) {
            failException(Exception::host);
        }
    }
    const Art group = newArt(ArtKind::group, Placement::behind, path);
    interpreter.containers.enter(group);
    callHost(slot::reorderArt, path, Placement::inside, group);
    callHost(slot::setGroupClipped, group, std::uint8_t{1});
    applyStyle(path, hostStyle(interpreter, true));
    return copy;
}

} // namespace

PathStyle scaledStyle(const GraphicsState& state) {
    return scaledBy(state, scaleState(state));
}

void finishArt(Interpreter& interpreter) {
    ContentLevel& level = interpreter.level;
    const GraphicsState& state = interpreter.state;
    level.path.object = Art::null;
    const Art path = unwrapCompound(std::exchange(level.path.compound, Art::null));
    const bool clips = state.style.clip != 0;
    level.ended = {.start = level.path.firstByte,
                   .clips = clips,
                   .hidesFill = level.path.hidesFill,
                   .hidesStroke = level.path.hidesStroke};
    if (path == Art::null) {
        return;
    }
    const bool isPainted = !clips || state.style.fillPaint != 0 || state.style.strokePaint != 0;
    if (!isPainted && rules().lazyGroups && artKind(path) == ArtKind::path && leavesAll(level)) {
        callHost(slot::disposeArt, path);
        level.ended.clips = false;
        return;
    }
    if (clips && rules().lazyGroups && interpreter.containers.isFull()) {
        callHost(slot::disposeArt, path);
        failException(Exception::structure);
    }
    if (rules().lazyGroups) {
        // The clips at the end of a path count: a `Q` may stand within it. So may text, which is
        // painted before the path is.
        const bool holdsText = level.painted != level.path.painted;
        interpreter.containers.bringAlong(path, holdsText ? Art::null : level.path.holder);
    }
    applyStyle(path, hostStyle(interpreter, false));
    tellSource(interpreter, path, isPainted);
    if (state.style.strokePaint != 0 && state.lineWidth != 0) {
        noteStrokeLoss(interpreter, state.exactCtm);
    }
    if (clips) {
        level.ended.art = clipWith(interpreter, path);
        level.ended.clip = path;
    } else {
        level.ended.art = path;
    }
    if (isPainted && level.ended.art != Art::null) {
        tellAppearance(interpreter, level.ended.art,
                       {state.style.fillPaint != 0, state.style.strokePaint != 0});
    }
}

} // namespace corvane
