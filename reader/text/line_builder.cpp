#include "reader/text/line_builder.h"

#include "fonts/made_font.h"
#include "host/utf8.h"
#include "reader/text/page_fonts.h"
#include "runtime/fixed.h"
#include "runtime/matrix.h"

#include <algorithm>
#include <cmath>
#include <numeric>

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

bool isBlank(std::string_view text) {
    return text == " " || text == "\xC2\xA0";
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
    run_.rise = isVertical_ ? 0 : fixedFromReal(sign * text.rise * height);
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

bool LineBuilder::goesOn(double pen) {
    if (!open_.isOpen || open_.isVertical != isVertical_ || !isParallel(direction_, open_.matrix) ||
        !target_.goesOn()) {
        return false;
    }
    const RealPoint at = onLine(pen);
    const double larger = std::max(realFromFixed(run_.size), open_.size);
    return std::abs(at.y) <= sameBaseline * larger && isWithinReach(at.x, larger);
}

/// Viewers put the leftmost letter of a line where the line begins, so none may stand farther back.
/// A letter goes back below its accent, which TeX shows first.
bool LineBuilder::isWithinReach(double at, double size) const {
    const double gap = (at - open_.end) / size;
    const bool isInFront = at < -tolerance * size && !isVertical_;
    const double farthest = farthestBack + open_.accent / size;
    return gap <= widestGap && gap >= -farthest && !isInFront;
}

void LineBuilder::beginLine(double pen) {
    RealMatrix matrix = direction_;
    const RealPoint origin = placeOf(pen);
    matrix.tx = origin.x;
    matrix.ty = origin.y;
    TextLine line{.matrix = hostMatrix(matrix), .isVertical = isVertical_};
    open_ = OpenLine();
    target_.beginLine(line);
    open_.isOpen = true;
    open_.isVertical = isVertical_;
    open_.matrix = realMatrix(line.matrix);
    open_.back = inverse(open_.matrix).value_or(RealMatrix());
}

void LineBuilder::beginRun(double pen, std::int32_t element) {
    if (!goesOn(pen)) {
        beginLine(pen);
    }
    origin_ = onLine(pen).x - pen * stretch_;
    isInRun_ = true;
    runPen_ = pen;
    runElement_ = element;
    runStart_ = open_.modelEnd;
    text_.clear();
    pieces_.clear();
}

void LineBuilder::endRun(double pen, std::int32_t element) {
    isInRun_ = false;
    run_.text = text_;
    run_.pieces = pieces_;
    target_.addRun(run_, {.firstElement = runElement_,
                          .endElement = element,
                          .start = runStart_,
                          .length = open_.modelEnd - runStart_,
                          .pen = runPen_,
                          .advance = pen - runPen_});
    open_.isEmpty = false;
    open_.size = realFromFixed(run_.size);
    open_.spacing = state_.size == 0 ? 0 : state_.characterSpacing / state_.size;
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
    text_ += text;
    // A code may mean hundreds of characters.
    const auto bytes =
        static_cast<std::int64_t>(text_.capacity() + pieces_.capacity() * sizeof(TextPiece));
    if (bytes > charge_.bytes()) {
        charge_.resize(bytes);
    }
    open_.modelEnd += roundedAdvance(advance) * size + realFromFixed(run_.spacing);
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
    if (isInRun_ && !isWithinReach(along(pen), realFromFixed(run_.size))) {
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

/// `shown` and `standing` are the same glyphs, in the two orders.
void LineBuilder::addLineFromRight(std::span<const PenGlyph> shown,
                                   std::span<const PenGlyph> standing, double pen,
                                   std::int32_t end) {
    open_.isOpen = false;
    beginRun(standing.front().pen, shown.front().element);
    runPen_ = shown.front().pen;
    double reached = along(standing.front().pen);
    for (const PenGlyph& placed : standing) {
        open_.end = reached; // marks stand on letters
        if (!isBlank(placed.glyph.text)) {
            addGap(along(placed.pen));
        }
        append(placed.glyph.text, along(placed.pen), placed.glyph.advance, placed.glyph.face);
        reached = std::max(reached, along(placed.pen + placed.advance));
    }
    endRun(pen, end);
    open_.isOpen = false;
}

bool LineBuilder::addFromRight(std::span<const PenGlyph> glyphs, double pen, std::int32_t end) {
    if (isVertical_ || stretch_ <= 0) {
        return false;
    }
    std::vector<std::size_t> order(glyphs.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return glyphs[i].pen; });
    struct Line {
        std::size_t first = 0; // in the order of showing, as the next
        std::size_t last = 0;
        std::vector<PenGlyph> standing;
    };
    std::vector<Line> lines;
    const double size = realFromFixed(run_.size);
    double reached = 0;
    for (const std::size_t i : order) {
        const double at = along(glyphs[i].pen);
        if (lines.empty() || at - reached > widestGap * size) {
            lines.push_back({.first = i, .last = i, .standing = {}});
            reached = at;
        }
        Line& line = lines.back();
        line.first = std::min(line.first, i);
        line.last = std::max(line.last, i);
        line.standing.push_back(glyphs[i]);
        reached = std::max(reached, along(glyphs[i].pen + glyphs[i].advance));
    }
    std::ranges::sort(lines, {}, &Line::first);
    const auto isApart = [&](const Line& line) {
        return line.last - line.first + 1 == line.standing.size() &&
               (line.first == 0 || glyphs[line.first].element != glyphs[line.first - 1].element);
    };
    if (!std::ranges::all_of(lines, isApart)) {
        return false;
    }
    for (const Line& line : lines) {
        const std::size_t next = line.last + 1;
        const bool isLast = next == glyphs.size();
        addLineFromRight(glyphs.subspan(line.first, line.standing.size()), line.standing,
                         isLast ? pen : glyphs[next].pen, isLast ? end : glyphs[next].element);
    }
    return true;
}

void LineBuilder::endAt(double pen, std::int32_t element) {
    if (isInRun_) {
        endRun(pen, element);
    }
}

} // namespace corvane
