#include "writer/patch/compare/comparison.h"

#include "host/light.h"
#include "host/pen.h"
#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "writer/art/color_works.h"
#include "writer/art/outline.h"
#include "writer/art/style_works.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/text/text_run.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <span>
#include <vector>

namespace corvane {

namespace {

/// Editors round coordinates to a few digits: a five-hundredth of a point is not seen.
constexpr Fixed pointRoom = fixedOne / 512;

bool isNear(Fixed a, Fixed b, Fixed room = pointRoom) {
    return std::abs(std::int64_t{a} - b) <= room;
}

bool isNear(const Point& a, const Point& b) {
    return isNear(a.x, b.x) && isNear(a.y, b.y);
}

/// The control points before the first anchor and behind the last of an open path are not seen.
bool sameSegment(const Segment& a, const Segment& b, bool isFirst, bool isLast) {
    return isNear(a.anchor, b.anchor) && (isFirst || isNear(a.in, b.in)) &&
           (isLast || isNear(a.out, b.out));
}

bool sameSubpath(const Subpath& a, const Subpath& b) {
    if (a.count != b.count || a.closed != b.closed) {
        return false;
    }
    SegmentReader ofA(a);
    SegmentReader ofB(b);
    for (std::int32_t at = 0; at < a.count;) {
        const std::span<const Segment> blockA = ofA.read(at);
        const std::span<const Segment> blockB = ofB.read(at);
        for (std::size_t i = 0; i < blockA.size(); ++i, ++at) {
            const bool isFirst = !a.closed && at == 0;
            const bool isLast = !a.closed && at + 1 == a.count;
            if (!sameSegment(blockA[i], blockB[i], isFirst, isLast)) {
                return false;
            }
        }
    }
    return true;
}

/// Whether the light of a colour has levels that eight bits say exactly: so does what an editor
/// writes.
struct VisibleColour {
    std::array<std::int64_t, 3> level{}; ///< 0 to 255
    bool isExact = false;
};

VisibleColour visible(const Colour& colour) {
    std::array<std::int64_t, 3> light{};
    if (colour.kind == ColourKind::gray) {
        light.fill(std::int64_t{fixedOne} - colour.component[0]);
    } else {
        const LightLevels levels = lightLevels(colour);
        light = {levels.red, levels.green, levels.blue};
    }
    VisibleColour seen{.isExact = true};
    for (std::size_t i = 0; i < light.size(); ++i) {
        const std::int64_t limited = std::clamp<std::int64_t>(light[i], 0, fixedOne);
        seen.level[i] = (limited * 255 + fixedOne / 2) / fixedOne;
        const std::int64_t back = (seen.level[i] * fixedOne + 127) / 255;
        seen.isExact = seen.isExact && std::abs(back - light[i]) <= 1;
    }
    return seen;
}

InkMixtureFacts mixtureOf(const Colour& colour) {
    InkMixtureFacts facts;
    callHost(slot::getInkMixture, colour.source, &facts);
    return facts;
}

/// Of mixtures their inks count: what is seen follows from them.
bool sameInks(const Colour& was, const Colour& is) {
    const InkMixtureFacts former = mixtureOf(was);
    const InkMixtureFacts now = mixtureOf(is);
    return former.names == now.names &&
           std::ranges::equal(former.tints, now.tints,
                              [](Fixed a, Fixed b) { return isNear(a, b, 1); });
}

/// A custom colour or a mixture of inks as the colour that is seen for it.
Colour standIn(const Colour& colour) {
    if (colour.kind == ColourKind::inks) {
        return mixtureOf(colour).seen;
    }
    if (colour.kind != ColourKind::custom) {
        return colour;
    }
    CustomColour ink;
    callHost(slot::getColorInfo, colour.source, &ink);
    Colour process{.kind = ColourKind::process};
    std::ranges::transform(ink.process, process.component, [&](Fixed amount) {
        return multiplyFixed(amount, fixedOne - colour.component[0]);
    });
    return process;
}

bool isPlain(const Colour& colour) {
    return colour.kind == ColourKind::gray || colour.kind == ColourKind::process;
}

/// Lengths agree to a thousandth of themselves or what is not seen.
bool sameLength(Fixed a, Fixed b) {
    return isNear(a, b, std::max<Fixed>(fixedOne / 4096, std::abs(a / 1000)));
}

bool sameDash(const PathStyle& a, const PathStyle& b) {
    return a.dashCount == b.dashCount &&
           (a.dashCount <= 0 || sameLength(a.dashPhase, b.dashPhase)) &&
           std::equal(a.dash,
                      a.dash + std::clamp<std::ptrdiff_t>(a.dashCount, 0, std::ssize(a.dash)),
                      b.dash, sameLength);
}

/// Artwork that knows no pens has lines of their mean width: that is no difference.
PathStyle asKnown(const PathStyle& was, const PathStyle& is) {
    if (was.pen == Pen() || is.pen != Pen()) {
        return was;
    }
    PathStyle even = stretched(was, meanStretch(penMatrix(was.pen)));
    even.pen = {};
    return sameLength(even.lineWidth, is.lineWidth) ? even : was;
}

bool isGuide(Art art) {
    const Art path = leadingPath(art);
    std::uint8_t guide = 0;
    if (path != Art::null) {
        callHost(slot::getPathGuide, path, &guide);
    }
    return guide != 0;
}

/// Opacity and blending; masks count as far as one is there.
void compareOwnLooks(Art was, Art is, ArtDifference& difference) {
    if (!hostHoldsAppearance()) {
        return;
    }
    const auto comparable = [](Art art) {
        const PathStyle style = leadingStyle(art);
        Appearance appearance = appearanceOf(art);
        appearance.fillOpacity *= style.fillPaint != 0 ? appearance.opacity : 0;
        appearance.strokeOpacity *= style.strokePaint != 0 ? appearance.opacity : 0;
        return appearance;
    };
    const Appearance a = comparable(was);
    const Appearance b = comparable(is);
    if (!sameOpacity(a.fillOpacity, b.fillOpacity)) {
        difference.look.fillOpacity = b.fillOpacity;
    }
    if (!sameOpacity(a.strokeOpacity, b.strokeOpacity)) {
        difference.look.strokeOpacity = b.strokeOpacity;
    }
    if (a.blend != b.blend) {
        difference.look.blend = b.blend;
    }
    if ((a.mask == SoftMask::null) != (b.mask == SoftMask::null)) {
        difference.look.mask = b.mask;
    }
}

} // namespace

bool ArtDifference::any() const {
    return kind || shape || paints || fill || strokeParts() || flatness || letters || place ||
           decorations || image || inside || !look.isEmpty();
}

bool sameOpacity(double a, double b) {
    constexpr double room = 1.0 / 512; // half a level of 255 is not seen
    return std::abs(a - b) <= room;
}

bool samePen(const Pen& a, const Pen& b) {
    constexpr double room = 1.0 / 1024; // lengths agree to as much
    return std::abs(a.xx - b.xx) <= room && std::abs(a.xy - b.xy) <= room &&
           std::abs(a.yy - b.yy) <= room;
}

bool sameColour(const Colour& was, const Colour& is) {
    if (compareColor(was, is)) {
        return true;
    }
    if (was.kind == ColourKind::inks && is.kind == ColourKind::inks) {
        return sameInks(was, is);
    }
    const Colour former = standIn(was);
    if (!isPlain(former) || !isPlain(is)) {
        return false;
    }
    const VisibleColour seen = visible(is);
    return seen.isExact && seen.level == visible(former).level;
}

bool sameShape(Art a, Art b) {
    const ChargedList<Subpath> ofA = subpathsWithin(a);
    const ChargedList<Subpath> ofB = subpathsWithin(b);
    return std::ranges::equal(ofA.items(), ofB.items(), sameSubpath);
}

ArtDifference compareArt(Art was, Art is, PaintComparison& paints) {
    PathStyle style = leadingStyle(is);
    if (isGuide(is)) {
        style.fillPaint = 0;
        style.strokePaint = 0;
    }
    const bool isShaped = !sameShape(was, is);
    ArtDifference difference =
        compareStyles(leadingStyle(was), style, paints,
                      isShaped ? [&] { return movementOf(was, is); } : MovementOfArt());
    difference.kind = artKind(was) != artKind(is);
    difference.shape = isShaped;
    compareOwnLooks(was, is, difference);
    return difference;
}

namespace {

/// The paints that are used in the end, and whether they are what they were.
class PaintChange {
public:
    PaintChange(const PathStyle& was, const PathStyle& is, PaintComparison& paints)
        : was_(was), is_(is), paints_(paints) {}

    bool keepsFill(const RealMatrix& movement = {}) const {
        return is_.fillPaint == 0 || (was_.fillPaint != 0 && isSame(was_.fill, is_.fill, movement));
    }
    bool keepsStroke(const RealMatrix& movement = {}) const {
        return is_.strokePaint == 0 ||
               (was_.strokePaint != 0 && isSame(was_.stroke, is_.stroke, movement));
    }
    /// Whether any of them can move.
    bool liesOnPage() const {
        return (is_.fillPaint != 0 && isSource(is_.fill)) ||
               (is_.strokePaint != 0 && isSource(is_.stroke));
    }

private:
    static bool isSource(const Colour& colour) {
        return colour.kind == ColourKind::gradient || colour.kind == ColourKind::pattern;
    }
    bool isSame(const Colour& was, const Colour& is, const RealMatrix& movement) const {
        return isSource(was) && isSource(is) ? paints_.same(was, is, movement)
                                             : sameColour(was, is);
    }

    const PathStyle& was_;
    const PathStyle& is_;
    PaintComparison& paints_;
};

} // namespace

PathStyle stretched(PathStyle style, double stretch) {
    const auto scale = [&](Fixed& length) {
        length = fixedFromReal(realFromFixed(length) * stretch);
    };
    scale(style.lineWidth);
    scale(style.dashPhase);
    std::ranges::for_each(style.dash, scale);
    return style;
}

ArtDifference compareStyles(const PathStyle& was, const PathStyle& b, PaintComparison& paints,
                            const MovementOfArt& movement) {
    const PathStyle a = asKnown(was, b);
    ArtDifference difference;
    difference.paints = (a.fillPaint != 0) != (b.fillPaint != 0) ||
                        (a.strokePaint != 0) != (b.strokePaint != 0) ||
                        (b.fillPaint != 0 && a.rule != b.rule);
    const PaintChange change(a, b, paints);
    difference.fill = !change.keepsFill();
    difference.stroke = !change.keepsStroke();
    if ((difference.fill || difference.stroke) && movement && change.liesOnPage()) {
        const std::optional<RealMatrix> moved = movement();
        if (moved && change.keepsFill(*moved) && change.keepsStroke(*moved)) {
            difference.movesPaint = true;
            difference.fill = false;
            difference.stroke = false;
        }
    }
    if (b.strokePaint != 0) {
        difference.lineWidth = !sameLength(a.lineWidth, b.lineWidth);
        difference.dash = !sameDash(a, b);
        difference.pen = b.lineWidth != 0 && !samePen(a.pen, b.pen);
        difference.cap = a.cap != b.cap;
        difference.join = a.join != b.join;
        difference.miterLimit = !sameLength(a.miterLimit, std::max(b.miterLimit, fixedOne));
    }
    // Editors drop what is not seen.
    difference.flatness = a.resolution != b.resolution && b.resolution != PathStyle().resolution;
    return difference;
}

bool sameClip(Art was, Art is) {
    if (isTextClip(was) || isTextClip(is)) {
        return isTextClip(was) && isTextClip(is) && sameTextClip(was, is);
    }
    return leadingStyle(was).rule == leadingStyle(is).rule && sameShape(was, is);
}

} // namespace corvane
