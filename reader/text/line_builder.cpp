#include "reader/text/line_builder.h"

#include "fonts/made_font.h"
#include "reader/content/appearance.h"
#include "reader/text/page_fonts.h"
#include "runtime/callbacks.h"
#include "runtime/matrix.h"

#include <cmath>

namespace corvane {

namespace {

// In ems. Words of justified text stand up to one apart, columns farther; kerning goes back by less
// than a third.
constexpr double widestGap = 1.0;
constexpr double farthestBack = 0.35;
/// A gap from here on reads as a blank: blanks of fonts are a quarter wide, letters that are moved
/// apart stand less.
constexpr double blankGap = 0.15;
/// By how much a glyph may miss its place.
constexpr double tolerance = 0.004;
/// By how much a baseline may miss the line, and a direction its own.
constexpr double sameBaseline = 0.008;
constexpr double sameDirection = 1e-4;

double roundedAdvance(double ems) {
    return std::round(ems * madeUnits) / madeUnits;
}

bool isNear(double a, double b) {
    return std::abs(a - b) <= sameDirection * std::max(1.0, std::abs(a));
}

bool isParallel(const RealMatrix& a, const RealMatrix& b) {
    return isNear(a.a, b.a) && isNear(a.b, b.b) && isNear(a.c, b.c) && isNear(a.d, b.d);
}

bool isBlank(std::string_view text) {
    return text == " " || text == "\xC2\xA0";
}

} // namespace

LineBuilder::LineBuilder(Interpreter& interpreter, const RealMatrix& space, const PathStyle& style)
    : interpreter_(interpreter), space_(space),
      isVertical_(interpreter.state.text.font->font->isVertical()) {
    const TextState& text = interpreter.state.text;
    // A size below 0 turns letters upside down.
    const double sign = text.size < 0 ? -1 : 1;
    const double height = std::hypot(space.c, space.d);
    const double across = sign * text.horizontalScale / height;
    direction_ = {across * space.a, across * space.b, sign * space.c / height,
                  sign * space.d / height};
    stretch_ = isVertical_ ? -sign * height : sign * height / text.horizontalScale;
    run_.font = handleOf(*text.font);
    run_.size = fixedFromReal(std::abs(text.size) * height);
    run_.rise = isVertical_ ? 0 : fixedFromReal(sign * text.rise * height);
    run_.spacing = isVertical_ ? 0 : fixedFromReal(sign * text.characterSpacing * height);
    run_.style = style;
    const Transparency& transparency = interpreter.state.transparency;
    run_.fillOpacity = style.fillPaint != 0 ? transparency.fillOpacity : 1;
    run_.strokeOpacity = style.strokePaint != 0 ? transparency.strokeOpacity : 1;
}

/// On the artboard. What raises letters moves those of a column along it.
RealPoint LineBuilder::placeOf(double pen) const {
    const double rise = interpreter_.state.text.rise;
    return transform(space_, isVertical_ ? RealPoint{0, pen + rise} : RealPoint{pen, 0});
}

/// How far along the open line, and across it.
RealPoint LineBuilder::onLine(double pen) {
    const RealPoint at = transform(line().back, placeOf(pen));
    return isVertical_ ? RealPoint{-at.y, at.x} : at;
}

bool LineBuilder::goesOn(double pen) {
    const OpenLine& open = line();
    const double size = realFromFixed(run_.size);
    if (open.art == Art::null || open.painted != interpreter_.level.painted ||
        open.settings != interpreter_.state.settings ||
        open.blend != interpreter_.state.transparency.blend ||
        open.mask != interpreter_.state.transparency.mask || open.isVertical != isVertical_ ||
        !isParallel(direction_, open.matrix) ||
        open.container != interpreter_.containers.container()) {
        return false;
    }
    const RealPoint at = onLine(pen);
    const double larger = std::max(size, open.size);
    const double gap = at.x - open.end;
    return std::abs(at.y) <= sameBaseline * larger && gap <= widestGap * larger &&
           gap >= -farthestBack * larger;
}

void LineBuilder::beginLine(double pen) {
    OpenLine& open = line();
    RealMatrix matrix = direction_;
    const RealPoint origin = placeOf(pen);
    matrix.tx = origin.x;
    matrix.ty = origin.y;
    open = OpenLine();
    open.art = interpreter_.containers.make(ArtKind::text);
    open.container = interpreter_.containers.container();
    open.settings = interpreter_.state.settings;
    open.blend = interpreter_.state.transparency.blend;
    open.mask = interpreter_.state.transparency.mask;
    open.isVertical = isVertical_;
    const TextLine told{.matrix = hostMatrix(matrix), .isVertical = isVertical_};
    callHost(slot::setTextLine, open.art, &told);
    tellAppearance(interpreter_, open.art, {}); // opacity is that of runs
    open.matrix = realMatrix(told.matrix);
    open.back = inverse(open.matrix).value_or(RealMatrix());
}

void LineBuilder::beginRun(double pen, std::int32_t element) {
    if (!goesOn(pen)) {
        beginLine(pen);
    }
    origin_ = onLine(pen).x - pen * stretch_;
    isInRun_ = true;
    runPen_ = pen;
    runElement_ = element;
    runStart_ = line().modelEnd;
    text_.clear();
    pieces_.clear();
}

void LineBuilder::endRun(double pen, std::int32_t element) {
    OpenLine& open = line();
    ContentLevel& level = interpreter_.level;
    open.end = along(pen);
    if (!isInRun_) {
        return;
    }
    isInRun_ = false;
    run_.text = text_;
    run_.pieces = pieces_;
    if (level.tellsSources) {
        run_.source = interpreter_.sourceFrom(level.span.start);
    }
    callHost(slot::addTextRun, open.art, &run_);
    open.painted = ++level.painted;
    open.size = realFromFixed(run_.size);
    level.shown.parts.push_back({.art = open.art,
                                 .run = open.runs++,
                                 .firstElement = runElement_,
                                 .endElement = element,
                                 .start = runStart_,
                                 .length = open.modelEnd - runStart_,
                                 .pen = runPen_,
                                 .advance = pen - runPen_});
}

/// Moves the glyph to come to its place.
void LineBuilder::append(std::string_view text, double at, double advance, std::int32_t face) {
    OpenLine& open = line();
    const double size = realFromFixed(run_.size);
    const double miss = (at - open.modelEnd) / size;
    const std::int32_t latest = pieces_.empty() ? 0 : pieces_.back().face;
    if (std::abs(miss) > tolerance || face != latest) {
        const Fixed shift = fixedFromReal(miss);
        pieces_.push_back({static_cast<std::int32_t>(text_.size()), shift, face});
        open.modelEnd += realFromFixed(shift) * size;
    }
    text_ += text;
    // A code may mean hundreds of characters.
    const auto bytes =
        static_cast<std::int64_t>(text_.capacity() + pieces_.capacity() * sizeof(TextPiece));
    if (bytes > charge_.bytes()) {
        charge_.resize(bytes);
    }
    open.modelEnd += roundedAdvance(advance) * size + realFromFixed(run_.spacing);
    open.endsBlank = isBlank(text);
}

/// A gap that reads as a blank gets one.
void LineBuilder::addGap(double at) {
    OpenLine& open = line();
    const bool isFirst = open.runs == 0 && text_.empty();
    const double gap = (at - open.end) / realFromFixed(run_.size);
    if (!isFirst && !open.endsBlank && gap >= blankGap) {
        append(" ", open.modelEnd, interpreter_.state.text.font->font->spaceAdvance(), 0);
    }
}

void LineBuilder::add(const ShownGlyph& glyph, double pen, double advance, std::int32_t element) {
    const double size = realFromFixed(run_.size);
    if (isInRun_) {
        const double gap = (along(pen) - line().end) / size;
        if (gap > widestGap || gap < -farthestBack) {
            endRun(pen, element);
            line().art = Art::null;
        }
    }
    if (!isInRun_) {
        beginRun(pen, element);
    }
    // Words of a column are not told apart by gaps.
    if (!isBlank(glyph.text) && !isVertical_) {
        addGap(along(pen));
    }
    append(glyph.text, along(pen), isVertical_ ? columnAdvance : glyph.advance, glyph.face);
    line().end = along(pen + advance);
}

void LineBuilder::endAt(double pen, std::int32_t element) {
    if (isInRun_) {
        endRun(pen, element);
    }
}

} // namespace corvane
