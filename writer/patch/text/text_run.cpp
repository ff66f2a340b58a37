#include "writer/patch/text/text_run.h"

#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "writer/art/text/text_clip.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

/// By which an editor's rounding may change the sides of the em of text, in parts of that.
constexpr double frameRoom = 1.0 / 2000;
/// For shifts and spacing, in ems.
constexpr double shiftRoom = 1.0 / 400;

bool isNear(double a, double b, double room) {
    return std::abs(a - b) <= room;
}

bool samePieces(const TextRun& a, const TextRun& b) {
    return std::ranges::equal(a.pieces, b.pieces, [](const TextPiece& x, const TextPiece& y) {
        return x.start == y.start && x.face == y.face && x.turn == y.turn &&
               isNear(realFromFixed(x.shift), realFromFixed(y.shift), shiftRoom);
    });
}

/// In ems of the run.
double inEms(Fixed length, const TextRun& run) {
    return run.size == 0 ? 0 : realFromFixed(length) / realFromFixed(run.size);
}

bool sameLetters(const TextRun& a, const TextRun& b) {
    return a.text == b.text && a.font == b.font && samePieces(a, b) &&
           isNear(inEms(a.spacing, a), inEms(b.spacing, b), shiftRoom) &&
           isNear(inEms(a.rise, a), inEms(b.rise, b), shiftRoom);
}

/// Of the paints that are used.
bool sameOpacities(const TextRun& a, const TextRun& b) {
    return (b.style.fillPaint == 0 || sameOpacity(a.fillOpacity, b.fillOpacity)) &&
           (b.style.strokePaint == 0 || sameOpacity(a.strokeOpacity, b.strokeOpacity));
}

/// Whether letters stand otherwise than one behind the other.
bool movesLetters(const TextLine& line) {
    return line.length != 0 || !line.path.empty();
}

bool sameFrame(const RealMatrix& a, const RealMatrix& b) {
    const double em = std::max({std::hypot(a.a, a.b), std::hypot(a.c, a.d), placeRoom});
    const auto alike = [&](double x, double y) { return isNear(x, y, em * frameRoom); };
    return alike(a.a, b.a) && alike(a.b, b.b) && alike(a.c, b.c) && alike(a.d, b.d) &&
           isNear(a.tx, b.tx, placeRoom) && isNear(a.ty, b.ty, placeRoom);
}

} // namespace

TextRun runOf(Art text, std::int32_t run) {
    TextRun found;
    callHost(slot::getTextRun, text, run, &found);
    return found;
}

TextLine lineOf(Art text) {
    TextLine line;
    callHost(slot::getTextLine, text, &line);
    return line;
}

RealMatrix frameOf(Art text, const TextRun& run, double start) {
    const TextLine line = lineOf(text);
    const RealMatrix matrix{realFromFixed(line.matrix.a),  realFromFixed(line.matrix.b),
                            realFromFixed(line.matrix.c),  realFromFixed(line.matrix.d),
                            realFromFixed(line.matrix.tx), realFromFixed(line.matrix.ty)};
    const double size = realFromFixed(run.size);
    const RealPoint along = line.isVertical ? RealPoint{0, -start} : RealPoint{start, 0};
    return multiply({.a = size, .d = size, .tx = along.x, .ty = along.y}, matrix);
}

RealMatrix frameOfPage(const BaseContent& base, const PaintedArt& was) {
    const ShownPart& part = base.trace.textPart(was.part);
    return frameOf(was.art, runOf(was.art, part.run), part.start);
}

std::optional<double> startLike(Art was, Art is) {
    const TextAnchor anchor = lineOf(is).anchor;
    if (anchor == TextAnchor::start) {
        return 0;
    }
    const Fixed reach = lineOf(was).reach;
    const Fixed size = runOf(was, 0).size;
    if (anchor == TextAnchor::middle || reach == 0 || size == 0) {
        return std::nullopt;
    }
    return -realFromFixed(reach) * realFromFixed(runOf(is, 0).size) / realFromFixed(size);
}

ArtDifference compareText(const BaseContent& base, const PaintedArt& was, const EditedObject& is) {
    const TextRun former = runOf(was.art, base.trace.textPart(was.part).run);
    const TextRun run = runOf(is.art, is.run);
    const bool isMoved = !sameFrame(frameOfPage(base, was), frameOf(is.art, run, is.start));
    ArtDifference difference = compareStyles(
        former.style, run.style, base.paints,
        isMoved ? [&] { return std::optional(movementOfText(base, was, is)); } : MovementOfArt());
    difference.letters = !sameLetters(former, run) || movesLetters(lineOf(is.art));
    difference.place = isMoved;
    difference.decorations = !run.decorations.empty();
    return difference;
}

namespace {

std::int32_t countRuns(Art text) {
    std::int32_t count = 0;
    callHost(slot::getTextRunCount, text, &count);
    return count;
}

/// Whether lines have the same letters in the same places, the first one moved so, in paints that
/// `samePaint` takes for the same.
template <class SamePaint>
bool sameLine(Art was, Art is, const SamePaint& samePaint, const RealMatrix& movement = {}) {
    const std::int32_t count = countRuns(was);
    const std::optional<double> start = startLike(was, is);
    bool isSame = start && count == countRuns(is) && !movesLetters(lineOf(is));
    for (std::int32_t i = 0; isSame && i < count; ++i) {
        const TextRun former = runOf(was, i);
        const TextRun run = runOf(is, i);
        isSame = sameLetters(former, run) && samePaint(former, run) && run.decorations.empty() &&
                 sameFrame(multiply(frameOf(was, former, 0), movement), frameOf(is, run, *start));
    }
    return isSame;
}

} // namespace

bool sameLetters(Art was, Art is) {
    const std::int32_t count = countRuns(was);
    bool isSame = count == countRuns(is);
    for (std::int32_t i = 0; isSame && i < count; ++i) {
        isSame = sameLetters(runOf(was, i), runOf(is, i));
    }
    return isSame;
}

bool sameTextClip(Art was, Art is) {
    const ChargedList<Art> former = clipTexts(was);
    const ChargedList<Art> texts = clipTexts(is);
    const auto clipsAlike = [](const TextRun& a, const TextRun& b) {
        return a.style.clip == b.style.clip;
    };
    return std::ranges::equal(former.items(), texts.items(),
                              [&](Art a, Art b) { return sameLine(a, b, clipsAlike); });
}

bool sameText(Art was, Art is, PaintComparison& paints, const RealMatrix& movement) {
    const auto moved = [&] { return std::optional(movement); };
    const auto paintedAlike = [&](const TextRun& a, const TextRun& b) {
        return sameOpacities(a, b) && !compareStyles(a.style, b.style, paints, moved).any();
    };
    return sameLine(was, is, paintedAlike, movement);
}

RealMatrix movementOfText(const BaseContent& base, const PaintedArt& was, const EditedObject& is) {
    const std::optional<RealMatrix> back = inverse(frameOfPage(base, was));
    const RealMatrix to = frameOf(is.art, runOf(is.art, is.run), is.start);
    if (!back || !isFinite(to)) {
        failException(Exception::unpatchable);
    }
    return multiply(*back, to);
}

} // namespace corvane
