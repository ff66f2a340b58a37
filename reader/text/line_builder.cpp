#include "reader/text/line_builder.h"

#include "fonts/made/made_font.h"
#include "host/utf8.h"
#include "reader/text/line_rules.h"
#include "reader/text/page_fonts.h"
#include "runtime/fixed.h"
#include "runtime/matrix.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

double roundedAdvance(double ems) {
    return std::round(ems * madeUnits) / madeUnits;
}

/// One that stands by itself, or a mark that combines.
bool isAccent(std::string_view text) {
    if (text.empty()) {
        return false;
    }
    const char32_t character = decodeCharacter(text).code;
    constexpr std::u32string_view accents = U"^`~\u00A8\u00AF\u00B4\u00B8";
    return accents.find(character) != accents.npos || (character >= 0x2C6 && character <= 0x2DD) ||
           (character >= 0x300 && character <= 0x36F);
}

} // namespace

bool leadsBack(double number) {
    return number / 1000 > farthestBack;
}

bool spacesWidely(const TextState& text) {
    return text.size != 0 && text.characterSpacing / text.size >= blankGap;
}

LineBuilder::LineBuilder(LineTarget& target, const GraphicsState& state, const RealMatrix& space,
                         const PathStyle& style)
    : target_(target), open_(target.open()), state_(state.text), space_(space),
      isVertical_(state.text.font->font->isVertical()) {
    const TextState& text = state_;
    // A size below 0 turns letters upside down.
    const double sign = text.size < 0 ? -1 : 1;
    const double height = std::hypot(space.c, space.d);
    const double across = sign * text.horizontalScale / height;
    direction_ = {across * space.a, across * space.b, sign * space.c / height,
                  sign * space.d / height};
    stretch_ = isVertical_ ? -sign * height : sign * height / text.horizontalScale;
    run_.font = handleOf(*text.font);
    run_.size = fixedFromReal(std::abs(text.size) * height);
    ownRise_ = isVertical_ ? 0 : sign * text.rise * height;
    run_.spacing = isVertical_ ? 0 : fixedFromReal(sign * text.characterSpacing * height);
    run_.style = style;
    const Transparency& transparency = state.transparency;
    run_.fillOpacity = style.fillPaint != 0 ? transparency.fillOpacity : 1;
    run_.strokeOpacity = style.strokePaint != 0 ? transparency.strokeOpacity : 1;
}

/// On the artboard. What raises letters moves those of a column along it.
RealPoint LineBuilder::placeOf(double pen) const {
    const double rise = state_.rise;
    return transform(space_, isVertical_ ? RealPoint{0, pen + rise} : RealPoint{pen, 0});
}

/// How far along the open line, and across it.
RealPoint LineBuilder::onLine(double pen) const {
    const RealPoint at = transform(open_.back, placeOf(pen));
    return isVertical_ ? RealPoint{-at.y, at.x} : at;
}

bool LineBuilder::isOnLine(const RealPoint& at) const {
    return std::abs(at.y) <= sameBaseline * std::max(realFromFixed(run_.size), open_.size);
}

/// Indices and exponents, which most programs move and few raise by `Ts`.
bool LineBuilder::isRaised(const RealPoint& at) const {
    const double size = open_.firstSize;
    return !isVertical_ && !open_.isEmpty && realFromFixed(run_.size) <= indexSize * size &&
           at.y <= highestIndex * size && at.y >= -deepestIndex * size;
}

bool LineBuilder::goesOn(double pen) {
    if (!open_.isOpen || open_.isVertical != isVertical_ || !isParallel(direction_, open_.matrix) ||
        !target_.goesOn()) {
        return false;
    }
    const RealPoint at = onLine(pen);
    const bool isIndex = !isOnLine(at) && isRaised(at);
    return (isOnLine(at) || isIndex) &&
           isWithinReach(at.x, std::max(realFromFixed(run_.size), open_.size),
                         isIndex ? std::max(open_.accent, open_.index) : open_.accent);
}

/// Viewers put the leftmost letter of a line where the line begins, so none may stand farther back.
/// A letter goes back by `room` more: below its accent, which TeX shows first, or an index below
/// its exponent.
bool LineBuilder::isWithinReach(double at, double size, double room) const {
    const double gap = (at - open_.end) / size;
    const bool isInFront = at < -tolerance * size && !isVertical_;
    const double farthest = farthestBack + room / size;
    return gap <= widestGap && gap >= -farthest && !isInFront;
}

void LineBuilder::openLine(const TextLine& line) {
    open_ = OpenLine();
    open_.isOpen = true;
    open_.takesBefore = true;
    open_.isVertical = isVertical_;
    open_.matrix = realMatrix(line.matrix);
    open_.back = inverse(open_.matrix).value_or(RealMatrix());
}

void LineBuilder::beginLine(double pen) {
    RealMatrix matrix = direction_;
    const RealPoint origin = placeOf(pen);
    matrix.tx = origin.x;
    matrix.ty = origin.y;
    TextLine line{.matrix = hostMatrix(matrix), .isVertical = isVertical_};
    open_ = OpenLine();
    target_.beginLine(line);
    openLine(line);
}

void LineBuilder::beginRun(double pen, std::int32_t element) {
    if (!goesOn(pen)) {
        beginLine(pen);
    }
    startRun(pen, element);
}

void LineBuilder::startRun(double pen, std::int32_t element) {
    const RealPoint at = onLine(pen);
    origin_ = at.x - pen * stretch_;
    run_.rise = fixedFromReal(ownRise_ + (isOnLine(at) ? 0 : at.y));
    isInRun_ = true;
    runPen_ = pen;
    runElement_ = element;
    runStart_ = open_.modelEnd;
    text_.clear();
    pieces_.clear();
}

/// Ends the run, whose letters are in the record then.
ShownPart LineBuilder::partUpTo(double pen, std::int32_t element) {
    isInRun_ = false;
    run_.text = text_;
    run_.pieces = pieces_;
    return {.firstElement = runElement_,
            .endElement = element,
            .start = runStart_,
            .length = open_.modelEnd - runStart_,
            .pen = runPen_,
            .advance = pen - runPen_};
}

void LineBuilder::endRun(double pen, std::int32_t element) {
    target_.addRun(run_, partUpTo(pen, element));
    if (open_.isEmpty) {
        open_.firstSize = realFromFixed(run_.size);
    }
    open_.isEmpty = false;
    open_.index = run_.rise != 0 ? open_.end - along(runPen_) : 0;
    open_.size = realFromFixed(run_.size);
    open_.spacing = state_.size == 0 ? 0 : state_.characterSpacing / state_.size;
    if (open_.runsFromRight && !isVertical_) {
        target_.tellReach(lineSoFar());
    }
}

/// Of the open line. Where its last letter does not end it, programs do not agree on its length.
TextLine LineBuilder::lineSoFar() const {
    const bool isLast = open_.modelReach - open_.modelEnd <= tolerance * open_.size;
    return {.matrix = hostMatrix(open_.matrix),
            .reach = isLast ? std::max(fixedFromReal(open_.modelEnd), Fixed{0}) : 0};
}

/// Moves the glyph to come to its place.
void LineBuilder::append(std::string_view text, double at, double advance, std::int32_t face) {
    const double size = realFromFixed(run_.size);
    const double miss = (at - open_.modelEnd) / size;
    const std::int32_t latest = pieces_.empty() ? 0 : pieces_.back().face;
    if (std::abs(miss) > tolerance || face != latest) {
        const Fixed shift = fixedFromReal(miss);
        pieces_.push_back({static_cast<std::int32_t>(text_.size()), shift, face});
        open_.modelEnd += realFromFixed(shift) * size;
    }
    if (open_.isEmpty && text_.empty()) {
        open_.startsBlank = isBlank(text);
    }
    open_.runsFromRight = open_.runsFromRight || startsFromRight(text);
    text_ += text;
    // A code may mean hundreds of characters.
    const auto bytes =
        static_cast<std::int64_t>(text_.capacity() + pieces_.capacity() * sizeof(TextPiece));
    if (bytes > charge_.bytes()) {
        charge_.resize(bytes);
    }
    open_.modelEnd += roundedAdvance(advance) * size + realFromFixed(run_.spacing);
    open_.modelReach = std::max(open_.modelReach, open_.modelEnd);
    open_.endsBlank = isBlank(text);
}

/// A gap that reads as a blank gets one.
void LineBuilder::addGap(double at) {
    const bool isFirst = open_.isEmpty && text_.empty();
    const double gap = (at - open_.end) / realFromFixed(run_.size);
    if (!isFirst && !open_.endsBlank && gap >= blankGap) {
        append(" ", open_.modelEnd, state_.font->font->spaceAdvance(), 0);
    }
}

void LineBuilder::add(const PenGlyph& placed) {
    const ShownGlyph& glyph = placed.glyph;
    const double pen = placed.pen;
    if (isInRun_ && !isWithinReach(along(pen), realFromFixed(run_.size), open_.accent)) {
        endRun(pen, placed.element);
        open_.isOpen = false;
    }
    if (!isInRun_) {
        beginRun(pen, placed.element);
    }
    // Words of a column are not told apart by gaps.
    if (!isBlank(glyph.text) && !isVertical_) {
        addGap(along(pen));
    }
    append(glyph.text, along(pen), isVertical_ ? columnAdvance : glyph.advance, glyph.face);
    open_.end = along(pen + placed.advance);
    open_.accent = isAccent(glyph.text) ? std::max(0.0, placed.advance * stretch_) : 0;
}

/// In text space.
double LineBuilder::letterSpacing() const {
    return state_.characterSpacing * state_.horizontalScale;
}

/// Spaced letters stand apart all alike, and so do those before them on the line. Words are spaced
/// by it where letters stand together as well.
bool LineBuilder::makesWords(std::span<const PenGlyph> glyphs) {
    const double gap = blankGap * state_.size * state_.horizontalScale;
    bool standApart = false;
    bool standTogether = false;
    for (std::size_t i = 1; i < glyphs.size(); ++i) {
        const PenGlyph& before = glyphs[i - 1];
        if (isBlank(before.glyph.text) || isBlank(glyphs[i].glyph.text)) {
            continue;
        }
        const double end = before.pen + before.advance - letterSpacing();
        (glyphs[i].pen - end >= gap ? standApart : standTogether) = true;
    }
    const bool isPair = glyphs.size() == 2;
    return standApart && (standTogether || (isPair && goesOn(glyphs.front().pen) &&
                                            !open_.isEmpty && open_.spacing < blankGap));
}

bool LineBuilder::addSpacedWords(std::span<const PenGlyph> glyphs) {
    if (isVertical_ || stretch_ <= 0 || !spacesWidely(state_) || !makesWords(glyphs)) {
        return false;
    }
    run_.spacing = 0;
    for (PenGlyph placed : glyphs) {
        placed.advance -= letterSpacing();
        add(placed);
    }
    return true;
}

void LineBuilder::endAt(double pen, std::int32_t element) {
    if (isInRun_) {
        endRun(pen, element);
    }
}

} // namespace corvane
