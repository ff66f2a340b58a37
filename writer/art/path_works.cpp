#include "writer/art/path_works.h"

#include "host/pen.h"
#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/charged_list.h"
#include "runtime/rules.h"
#include "writer/art/drawn_works.h"
#include "writer/art/outline.h"
#include "writer/art/segment_works.h"
#include "writer/art/style_works.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace corvane {

namespace {

/// What is painted at once: subpaths from the back to the front.
struct PaintedPath {
    std::span<const Subpath> subpaths;
    PathStyle style;

    /// The one in front, written last, that answers for all.
    const Subpath& first() const { return subpaths.back(); }
    bool isEmpty() const {
        return std::ranges::all_of(subpaths, [](const Subpath& s) { return s.count == 0; });
    }
};

PathStyle styleOf(Art path) {
    PathStyle style;
    callHost(slot::getPathStyle, path, &style);
    return style;
}

bool isEvenOdd(const PathStyle& style) {
    return rules().evenOddCarried && style.rule == FillRule::evenOdd;
}

/// Fills with what the host draws, cut to the path.
void fillDrawn(Walk& walk, const PaintedPath& path) {
    enterWorks(walk);
    segmentWorks(walk, path.subpaths);
    walk.text.add(clipOperator(path.style));
    walk.text.add("n\n");
    for (const Subpath& subpath : path.subpaths) {
        if (path.style.fill.kind == ColourKind::gradient) {
            blendedWorks(walk, subpath.art);
        } else {
            patternWorks(walk, subpath.art);
        }
    }
    leaveWorks(walk);
}

/// The operator that closes the path as well where it is closed.
std::string_view closingOperator(const PathStyle& style, bool closed) {
    if (style.fillPaint != 0 && style.strokePaint != 0) {
        return closed ? "b\n" : "B\n";
    }
    if (style.strokePaint != 0) {
        return closed ? "s\n" : "S\n";
    }
    return style.fillPaint != 0 ? "f\n" : "n\n";
}

void paintWorks(Walk& walk, const PaintedPath& path) {
    if (path.first().guide) {
        walk.text.add("n\n");
        return;
    }
    if (path.style.clip != 0 && !rules().clipsByGroup) {
        walk.text.add(clipOperator(path.style));
    }
    walk.text.add(rules().closesSubpaths ? paintOperator(path.style, path.first().closed)
                                         : closingOperator(path.style, path.first().closed));
}

std::string_view maskOf(const Walk& walk, std::uint8_t isPainted, const Colour& colour) {
    return walk.paints == nullptr || isPainted == 0 ? std::string_view()
                                                    : walk.paints->maskOf(colour);
}

void plainPaintWorks(Walk& walk, const PaintedPath& path) {
    pathStyleWorks(walk, path.style);
    segmentWorks(walk, path.subpaths);
    paintWorks(walk, path);
}

/// A pen that is not round is the space in which the path is drawn.
void pennedWorks(Walk& walk, const PaintedPath& path) {
    if (path.style.strokePaint == 0 || path.style.pen == Pen() || path.first().guide) {
        return plainPaintWorks(walk, path);
    }
    enterWorks(walk);
    enterPen(walk, path.style.pen);
    plainPaintWorks(walk, path);
    walk.space.reset();
    leaveWorks(walk);
}

/// Fills and strokes apart, each within the mask of its own paint.
void maskedWorks(Walk& walk, const PaintedPath& path) {
    for (const bool isFill : {true, false}) {
        PaintedPath part = path;
        (isFill ? part.style.strokePaint : part.style.fillPaint) = 0;
        if (part.style.fillPaint == 0 && part.style.strokePaint == 0) {
            continue;
        }
        enterWorks(walk);
        maskWorks(walk, part.style);
        pennedWorks(walk, part);
        leaveWorks(walk);
    }
}

void paintedWorks(Walk& walk, PaintedPath path) {
    if (rules().emptyLeftOut && path.isEmpty()) {
        return;
    }
    if (needsMask(walk, path.style) && !path.first().guide) {
        return maskedWorks(walk, path);
    }
    if (walk.paints == nullptr && isDrawnByHost(path.style) && !path.first().guide) {
        fillDrawn(walk, path);
        path.style.fillPaint = 0;
        if (rules().emptyLeftOut && path.style.strokePaint == 0) {
            return;
        }
    }
    pennedWorks(walk, path);
}

/// The paths of a compound path, from the back to the front.
ChargedList<Subpath> subpathsOf(Art compound) {
    ChargedList<Art> children;
    for (Art child = firstChild(compound); child != Art::null; child = nextSibling(child)) {
        children.push(child);
    }
    ChargedList<Subpath> subpaths;
    while (!children.empty()) {
        subpaths.push(subpathOf(children.pop()));
    }
    return subpaths;
}

/// With what `change` makes of its style.
template <class Change>
void paintedAs(Walk& walk, Art art, const Change& change) {
    const ChargedList<Subpath> subpaths = subpathsWithin(art);
    if (!subpaths.empty()) {
        PathStyle style = styleOf(subpaths.items().back().art);
        change(style);
        paintedWorks(walk, {subpaths.items(), style});
    }
}

} // namespace

bool isDrawnByHost(const PathStyle& style) {
    return style.fillPaint != 0 &&
           (style.fill.kind == ColourKind::gradient || style.fill.kind == ColourKind::pattern);
}

bool needsMask(const Walk& walk, const PathStyle& style) {
    return !maskOf(walk, style.fillPaint, style.fill).empty() ||
           !maskOf(walk, style.strokePaint, style.stroke).empty();
}

void maskWorks(Walk& walk, const PathStyle& style) {
    const std::string_view ofFill = maskOf(walk, style.fillPaint, style.fill);
    const std::string_view mask =
        ofFill.empty() ? maskOf(walk, style.strokePaint, style.stroke) : ofFill;
    if (!mask.empty()) {
        walk.text.add("/");
        walk.text.add(mask);
        walk.text.add(" gs\n");
    }
}

void enterPen(Walk& walk, const Pen& pen, const RealMatrix& fromArtboard) {
    const RealMatrix space = penMatrix(pen);
    walk.text.addMatrix(withoutSignedZeros(multiply(space, fromArtboard)));
    walk.text.add("cm\n");
    walk.space = userSpace(space);
}

std::string_view clipOperator(const PathStyle& style) {
    return isEvenOdd(style) ? "W*\n" : "W\n";
}

/// `f` makes reading close
/// the last subpath, `F` does not; there is no such pair for the even-odd rule.
std::string_view paintOperator(const PathStyle& style, bool endsClosed) {
    const bool evenOdd = isEvenOdd(style);
    if (style.fillPaint != 0 && style.strokePaint != 0) {
        return evenOdd ? "B*\n" : "B\n";
    }
    if (style.fillPaint != 0) {
        return evenOdd ? "f*\n" : endsClosed ? "f\n" : "F\n";
    }
    return style.strokePaint != 0 ? "S\n" : "n\n";
}

void pathWorks(Walk& walk, Art path) {
    const PathStyle style = styleOf(path);
    const Subpath subpath = subpathOf(path);
    paintedWorks(walk, {{&subpath, 1}, style});
}

void compoundWorks(Walk& walk, Art compound) {
    const ChargedList<Subpath> subpaths = subpathsOf(compound);
    if (!subpaths.empty()) {
        paintedWorks(walk, {subpaths.items(), styleOf(subpaths.items().back().art)});
    }
}

void fillOnlyWorks(Walk& walk, Art art) {
    paintedAs(walk, art, [](PathStyle& style) { style.strokePaint = 0; });
}

void strokeOnlyWorks(Walk& walk, Art art) {
    paintedAs(walk, art, [](PathStyle& style) { style.fillPaint = 0; });
}

void artWorks(Walk& walk, Art art) {
    if (artKind(art) == ArtKind::path) {
        pathWorks(walk, art);
    } else {
        compoundWorks(walk, art);
    }
}

void clipWorks(Walk& walk, Art clip) {
    const ChargedList<Subpath> subpaths = subpathsWithin(clip);
    PathStyle style;
    if (!subpaths.empty()) {
        style = styleOf(subpaths.items().back().art);
        style.fillPaint = 0;
        style.strokePaint = 0;
        pathStyleWorks(walk, style);
    }
    if (!segmentWorks(walk, subpaths.items())) {
        // Nothing shows through an empty clip, but there must be one.
        walk.text.add("0 0 0 0 re\n");
    }
    walk.text.add(clipOperator(style));
    walk.text.add("n\n");
}

} // namespace corvane
