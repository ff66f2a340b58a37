#include "writer/patch/works/changed_works.h"

#include "host/pen.h"
#include "reader/content/appearance.h"
#include "reader/content/losses.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "writer/art/color_works.h"
#include "writer/art/outline.h"
#include "writer/art/path_works.h"
#include "writer/art/segment_works.h"
#include "writer/art/style_works.h"
#include "writer/patch/compare/look_difference.h"
#include "writer/patch/compare/movement.h"
#include "writer/patch/works/kept_works.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace corvane {

namespace {

/// Digits behind the point by which a length in user space comes back as the same 16.16 length on
/// the artboard.
int lengthDigits(double value, double scale, Fixed length) {
    constexpr int most = 15;
    std::array<char, realRoom> text{};
    for (int digits = 0; digits < most; ++digits) {
        const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                       std::chars_format::fixed, digits);
        double back = 0;
        std::from_chars(text.data(), end.ptr, back);
        if (fixedFromReal(back * scale) == length) {
            return digits;
        }
    }
    return most;
}

/// Writes a length of the artboard in user space.
void lengthWorks(Walk& walk, Fixed length, double scale) {
    const double value = realFromFixed(length) / scale;
    walk.text.addReal(value, lengthDigits(value, scale, length));
}

/// What the operator that ends the changed path does: fills and strokes that no art shows go on.
PathStyle paintedStyle(const TraceEvent& event, const PathStyle& was, PathStyle is, bool isGuide) {
    if (isGuide) {
        is.fillPaint = 0;
        is.strokePaint = 0;
    }
    if (event.hidesFill && is.fillPaint == 0) {
        is.fillPaint = 1;
        is.rule = was.rule;
    }
    if (event.hidesStroke && is.strokePaint == 0) {
        is.strokePaint = 1;
    }
    return is;
}

/// Draws an object by several paintings: together they are one where something in force would show
/// through each.
void drawnWorks(PatchTools& tools, const Surroundings& own, Art art) {
    Walk& walk = tools.walk;
    enterWorks(walk);
    walk.text.addMatrix(inverse(tools.trace.matrix(own.matrix)).value_or(RealMatrix()));
    walk.text.add("cm\n");
    if (own.settings == 0) {
        artWorks(walk, art);
    } else {
        walk.text.add("/");
        walk.text.add(tools.groups.add(art));
        walk.text.add(" Do\n");
    }
    leaveWorks(walk);
}

/// By how much lines of that space grow on the artboard where they are widest.
double lineStretch(const RealMatrix& ctm) {
    const std::optional<StretchedPen> pen =
        hostHoldsPens() ? penUnder(ctm) : std::optional<StretchedPen>();
    return pen ? pen->stretch : meanStretch(ctm);
}

/// Whether lines of that space have another pen than those of the style.
bool needsPen(const PathStyle& style, const RealMatrix& ctm) {
    if (style.strokePaint == 0 || style.lineWidth == 0 || !hostHoldsPens()) {
        return false;
    }
    const std::optional<StretchedPen> own = penUnder(ctm);
    return own ? !samePen(own->pen, style.pen) : style.pen != Pen();
}

/// A stroke that no art shows, around a fill that the host draws.
PathStyle strokedStyle() {
    PathStyle style;
    style.strokePaint = 1;
    return style;
}

} // namespace

void maskInUserSpace(Walk& walk, const PathStyle& style, const RealMatrix& ctm) {
    const std::optional<RealMatrix> back = inverse(ctm);
    if (!back) {
        failException(Exception::unpatchable);
    }
    walk.text.addMatrix(withoutSignedZeros(*back));
    walk.text.add("cm\n");
    maskWorks(walk, style);
    walk.text.addMatrix(ctm);
    walk.text.add("cm\n");
}

void strokeWorks(Walk& walk, const PathStyle& style, const ArtDifference& difference,
                 double scale) {
    if (difference.stroke) {
        colorWorks(walk, style.stroke, false);
    }
    if (difference.lineWidth) {
        lengthWorks(walk, style.lineWidth, scale);
        walk.text.add("w\n");
    }
    if (difference.dash) {
        walk.text.add("[ ");
        for (const Fixed length : std::span(style.dash)
                                      .first(static_cast<std::size_t>(
                                          std::clamp<std::int16_t>(style.dashCount, 0, 6)))) {
            lengthWorks(walk, length, scale);
        }
        walk.text.add("] ");
        lengthWorks(walk, style.dashPhase, scale);
        walk.text.add("d\n");
    }
    // Cap, join and limit are the same in every space.
    if (difference.cap) {
        capWorks(walk, style.cap);
    }
    if (difference.join) {
        joinWorks(walk, style.join);
    }
    if (difference.miterLimit) {
        walk.text.add(std::max(style.miterLimit, fixedOne));
        walk.text.add("M\n");
    }
}

PageMovement movementOfPaint(const PatchTools& tools, const PathSource& source, Art art,
                             const ArtDifference& difference) {
    const TraceEvent& event = tools.trace.events()[source.event];
    const bool isMasked = movesMask(event.behind, difference);
    const bool movesPatterns = difference.movesPaint || event.hidesFill || event.hidesStroke;
    if (!difference.shape || (!isMasked && !movesPatterns)) {
        return {};
    }
    const RealMatrix movement = movementOf(source.art, art).value_or(RealMatrix());
    return {.masks = isMasked ? movement : RealMatrix(),
            .patterns = movesPatterns ? movement : RealMatrix()};
}

void changedWorks(PatchTools& tools, const PathSource& source, Art art, ArtDifference difference) {
    Walk& walk = tools.walk;
    const ContentTrace& trace = tools.trace;
    const TraceEvent& event = trace.events()[source.event];
    const RealMatrix& ctm = trace.matrix(event.behind.matrix);
    const ChargedList<Subpath> subpaths = subpathsWithin(art);
    if (subpaths.empty()) {
        return;
    }
    const PathStyle was = leadingStyle(source.art);
    const PathStyle is = leadingStyle(art);
    const bool isMasked = needsMask(walk, is);
    const bool isOneMask = isMasked && (is.fillPaint == 0 || is.strokePaint == 0) &&
                           (event.behind.settings & softMaskSetting) == 0;
    const bool isDrawn = walk.paints == nullptr ? isDrawnByHost(is) : isMasked && !isOneMask;
    if (isDrawn) {
        drawnWorks(tools, event.behind, art);
        if (!event.hidesStroke || is.strokePaint != 0) {
            return;
        }
    }
    if (isOneMask) {
        maskInUserSpace(walk, is, ctm);
    }
    if (difference.fill && !isDrawn) {
        colorWorks(walk, is.fill, true);
    }
    const bool hasOwnSpace = !isDrawn && needsPen(is, ctm);
    if (hasOwnSpace) {
        difference.lineWidth = difference.dash = difference.shape = true;
        enterPen(walk, is.pen, inverse(ctm).value_or(RealMatrix()));
    }
    strokeWorks(walk, is, difference, hasOwnSpace ? 1 : lineStretch(ctm));
    if (difference.flatness) {
        flatnessWorks(walk, is.resolution);
    }
    const bool hasOwnShape = difference.shape || difference.kind;
    if (hasOwnShape) {
        walk.space = hasOwnSpace ? walk.space : userSpace(ctm);
        segmentWorks(walk, subpaths.items());
        walk.space.reset();
    } else {
        rangesWorks(tools, constructionBytes(trace, source.event, false));
    }
    if (hasOwnShape || difference.paints || isDrawn) {
        const Subpath& front = subpaths.items().back();
        if (!hasOwnShape && front.closed) {
            walk.text.add("h\n"); // the operator that went may have closed it
        }
        walk.text.add(paintOperator(
            isDrawn ? strokedStyle() : paintedStyle(event, was, is, front.guide), front.closed));
    } else {
        wordWorks(tools, event);
    }
}

} // namespace corvane
