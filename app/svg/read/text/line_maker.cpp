#include "app/svg/read/text/line_maker.h"

#include "app/svg/text/line_order.h"
#include "app/svg/text/text_direction.h"
#include "app/svg/text/text_shift.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace corvane {

namespace {

/// What 16.16 makes of a turned line's second column, whose length is 1.
constexpr double roundedUnit = 0x1p-12;

/// The 16.16 number that a length of ours was, so that sums of them are exact.
double asWritten(double length) {
    return static_cast<double>(fixedNumber(length)) / fixedOne;
}

bool looksAlike(const LetterLook& left, const LetterLook& right) {
    return left.element == right.element && left.font == right.font && left.size == right.size &&
           left.spacing == right.spacing && left.style == right.style &&
           left.fillOpacity == right.fillOpacity && left.strokeOpacity == right.strokeOpacity &&
           left.decorations == right.decorations;
}

} // namespace

void LineMaker::startLine(const LetterPlace& place, const LetterLook& look) {
    finishLine();
    line_ = {.isVertical = frame_.isVertical,
             .anchor = frame_.isColumn ? TextAnchor::start : look.anchor,
             .order = look.order};
    before_ = {};
    isOpen_ = true;
    isOfPage_ = inPageFont_ = mayTurn_ = isMixed_ = passedEnd_ = false;
    if (path_) {
        startOnPath(place);
        return;
    }
    const double before = across_; // a line that says nothing of it keeps the baseline
    double x = place.x.value_or(frame_.isVertical ? origin_.x + before : 0);
    double y = place.y.value_or(frame_.isVertical ? 0 : origin_.y + before);
    across_ = carried_ = 0;
    if (!context_.ours) {
        x += place.dx;
        y += place.dy;
    }
    origin_ = {x, y};
    turn_ = place.rotate;
    isTurned_ = turn_ != 0 && !context_.holdsAppearance;
}

void LineMaker::startOnPath(const LetterPlace& place) {
    if (frame_.isVertical) {
        context_.tally.add("textPath");
    }
    isTurned_ = false;
    carried_ = 0;
    across_ = context_.ours ? 0 : place.dy;
    const double along = place.x.value_or(0) + (context_.ours ? 0 : place.dx);
    line_.path = path_->segments;
    line_.isPathClosed = path_->isClosed;
    line_.pathStart = fixedNumber(path_->start + along * meanStretch(frame_.toArt));
}

/// The matrix of a line on a path: what is left of the one to the artboard without its turn. Only
/// where lengths are the same in all directions do letters look the same everywhere on the path.
RealMatrix LineMaker::matrixOnPath() const {
    constexpr double mostSkew = 0.01;
    const RealMatrix matrix = withoutTurn(frame_.toArt);
    const double mean = meanStretch(matrix);
    if (std::abs(matrix.a - mean) > mostSkew * mean || std::abs(matrix.c) > mostSkew * mean) {
        context_.tally.add("textPath");
    }
    return {mean, 0, 0, std::copysign(mean, matrix.d), 0, 0};
}

/// Null where the line has no extent, or too much.
Art LineMaker::makeLine() {
    const double angle = turn_ * std::numbers::pi / 180;
    const RealMatrix turn{std::cos(angle), std::sin(angle), -std::sin(angle),
                          std::cos(angle), origin_.x,       origin_.y};
    const RealMatrix placed{1, 0, 0, 1, origin_.x, origin_.y};
    RealMatrix matrix = path_ ? matrixOnPath() : multiply(isTurned_ ? turn : placed, frame_.toArt);
    matrix.c = -matrix.c;
    matrix.d = -matrix.d;
    scale_ = std::hypot(matrix.c, matrix.d);
    if (std::abs(scale_ - 1) < roundedUnit) {
        scale_ = 1;
    }
    if (!isFinite(matrix) || !(scale_ > 0) || std::isinf(scale_)) {
        context_.tally.add("transform");
        return Art::null;
    }
    if (scale_ != 1) {
        matrix = multiply({1 / scale_, 0, 0, 1 / scale_, 0, 0}, matrix);
    }
    line_.matrix = fixedMatrix(matrix);
    return context_.document.make(ArtKind::text, frame_.place.placement, frame_.place.reference);
}

void LineMaker::startRun(const LetterLook& look, double rise) {
    finishRun();
    look_ = look;
    rise_ = rise;
    face_ = 0;
    letterTurn_ = 0;
}

void LineMaker::addPiece(double shift, std::int32_t face, double turn) {
    const double em = context_.ours ? asWritten(look_.size) : look_.size;
    const Fixed moved = shift == 0 || !(em > 0) ? 0 : shiftOfLength(shift, em);
    const Fixed turned = std::isfinite(turn) ? fixedNumber(std::fmod(turn, 360)) : 0;
    if (moved != 0 || face != face_ || turned != letterTurn_) {
        pieces_.push_back({static_cast<std::int32_t>(text_.size()), moved, face, turned});
        face_ = face;
        letterTurn_ = turned;
    }
}

/// A length holds for a line that has all letters of its element, and no others.
void LineMaker::voidLength(const FittedLength& fitted) {
    if (fitted.element != 0 && fitted.element != voided_) {
        context_.tally.add("textLength");
        voided_ = fitted.element;
    }
}

void LineMaker::fit(const LetterLook& look, bool starts) {
    if (starts) {
        fitted_ = look.fitted;
        const bool again = fitted_.element == lastFitted_ || fitted_.element == voided_;
        if (fitted_.element != 0 && again) {
            voidLength(fitted_);
            if (lastArt_ != Art::null) {
                TextLine last = context_.document.textLine(lastArt_);
                last.length = 0;
                context_.document.setTextLine(lastArt_, last);
            }
            lastArt_ = Art::null;
            fitted_ = {};
        }
    } else if (look.fitted.element != fitted_.element) {
        voidLength(look.fitted);
        voidLength(fitted_);
        fitted_ = {};
    }
}

/// Of a letter within a line.
void LineMaker::countWhatIsLost(const Letter& letter, const LetterPlace& place,
                                const LetterLook& look) {
    if (isTurned_ || (place.rotate != 0 && !context_.holdsAppearance)) {
        context_.tally.add("rotate"); // where the letter begins is not known
    }
    if (passedEnd_ && !letter.isBlank) {
        context_.tally.add("white-space"); // the text was to go on in a new line
    }
    if (look.order != line_.order && !letter.isBlank && !isMixed_) {
        context_.tally.add("unicode-bidi");
        isMixed_ = true;
        line_.order = std::max(line_.order, TextOrder::leftToRight);
    }
}

/// Of the next letter of a column. One that was typed behind another has no place of its own.
double LineMaker::columnShift(const LetterPlace& place, const LetterLook& look) {
    const double size = asWritten(look.size);
    const double shift = place.x ? place.dy - columnStep(size, before_) : 0;
    before_ = {size, asWritten(look.spacing)};
    across_ = asWritten(place.dx);
    return shift;
}

void LineMaker::add(const Letter& letter, const LetterPlace& place, const LetterLook& look) {
    const std::optional<double>& along = frame_.isVertical ? place.y : place.x;
    const std::optional<double>& across = frame_.isVertical ? place.x : place.y;
    const bool starts = !isOpen_ || along.has_value();
    const bool isDropped = letter.isBlank && (letter.endsLine || !look.keepsBlanks);
    if (leftPath_ && !along && !isDropped) {
        context_.tally.add("textPath"); // where its letters end is not known
    }
    if (starts) {
        dropLastBlank();
        startLine(place, look);
    } else {
        countWhatIsLost(letter, place, look);
        if (across && !path_ && !frame_.isColumn) {
            const double moved = *across - (frame_.isVertical ? origin_.x : origin_.y);
            if (moved != across_ && line_.anchor != TextAnchor::start) {
                context_.tally.add("text-anchor"); // of a part of the line
            }
            across_ = moved;
        }
    }
    leftPath_ = leftPath_ && isDropped;
    passedEnd_ = letter.endsLine || (passedEnd_ && letter.isBlank);
    if (starts || !isDropped) {
        fit(look, starts);
    }
    double shift = carried_;
    carried_ = letter.isBlank ? look.wordSpacing : 0;
    if (frame_.isColumn) {
        shift = columnShift(place, look);
    } else if (!starts || context_.ours) {
        shift += frame_.isVertical ? place.dy : place.dx;
        const double step = frame_.isVertical ? place.dx : place.dy;
        across_ += context_.ours ? asWritten(step) : step;
    }
    const double rise = (frame_.isVertical ? across_ : -across_) + look.rise;
    if (text_.empty() || rise != rise_ || !looksAlike(look, look_)) {
        startRun(look, rise);
    }
    addPiece(shift, look.face, context_.holdsAppearance && !path_ ? place.rotate : 0);
    if (path_ && place.rotate != 0) {
        context_.tally.add("rotate"); // it would come to the turn of the path
    }
    text_ += letter.text;
    isOfPage_ = isOfPage_ || look.source.has_value();
    mayTurn_ = mayTurn_ || holdsRightToLeft(letter.text);
    endsInBlank_ = isDropped;
}

void LineMaker::enterPath(TextPath path) {
    dropLastBlank();
    finishLine();
    isOpen_ = false;
    path_ = std::move(path);
}

void LineMaker::leavePath() {
    dropLastBlank();
    finishLine();
    isOpen_ = false;
    across_ = 0;
    path_.reset();
    leftPath_ = true;
}

/// At the end of a line.
void LineMaker::dropLastBlank() {
    if (!endsInBlank_ || text_.empty()) {
        return;
    }
    text_.pop_back();
    if (!pieces_.empty() && pieces_.back().start == std::ssize(text_)) {
        pieces_.pop_back();
    }
    endsInBlank_ = false;
}

/// Of the run. Along a path and down a column there are none.
std::vector<TextDecoration> LineMaker::decorations() const {
    std::vector<TextDecoration> found;
    if (path_ || frame_.isVertical) {
        if (!look_.decorations.empty()) {
            context_.tally.add("text-decoration");
        }
        return found;
    }
    for (const LetterDecoration& each : look_.decorations) {
        TextDecoration& lines = found.emplace_back(each.lines);
        lines.size = fixedNumber(each.size * scale_);
        lines.thickness = fixedNumber(each.thickness * scale_);
    }
    return found;
}

void LineMaker::finishRun() {
    TextRun run;
    if (text_.empty()) {
        pieces_.clear();
        return;
    }
    if (art_ == Art::null) {
        art_ = makeLine();
    }
    run.size = fixedNumber(look_.size * scale_);
    if (art_ != Art::null && run.size > 0) {
        run.font = look_.font;
        run.rise = fixedNumber(rise_ * scale_);
        run.spacing = fixedNumber(look_.spacing * scale_);
        run.style = look_.style;
        run.fillOpacity = look_.fillOpacity;
        run.strokeOpacity = look_.strokeOpacity;
        run.source = look_.source.value_or(ArtSource{});
        runs_.push_back({run, text_, pieces_, decorations()});
        inPageFont_ = inPageFont_ || context_.document.fonts().facts(run.font).isPageFont;
        made_ = true;
    }
    text_.clear();
    pieces_.clear();
}

/// Lines of a page stand as they are seen, as it has them.
void LineMaker::addRuns() {
    std::vector<TextRun> runs;
    for (LineRun& each : runs_) {
        runs.push_back(each.run);
        runs.back().text = each.text;
        runs.back().pieces = each.pieces;
        runs.back().decorations = each.decorations;
    }
    std::optional<OrderedLine> seen;
    // Where this program puts the place of a line.
    const bool isPlaced =
        line_.anchor == TextAnchor::start ||
        (line_.anchor == TextAnchor::end && line_.order == TextOrder::rightToLeft);
    const bool isKept = isOfPage_ || (inPageFont_ && isPlaced);
    if (isKept && mayTurn_ && !path_ && !frame_.isVertical) {
        seen = asSeen(runs, line_.order);
    } else if (isOfPage_ && !mayTurn_ && line_.order == TextOrder::leftToRight) {
        line_.order = TextOrder::visual;
    }
    for (std::size_t i = 0; i < runs.size(); ++i) {
        TextRun& run = runs[seen ? seen->runs[i].run : i];
        if (seen) {
            run.text = seen->runs[i].text;
            run.pieces = seen->runs[i].pieces;
            line_.order = seen->order;
        }
        context_.document.addTextRun(art_, run);
    }
    runs_.clear();
}

/// Only now is known what holds for the whole line.
void LineMaker::finishLine() {
    finishRun();
    if (art_ == Art::null) {
        return;
    }
    addRuns();
    line_.length = fixedNumber(fitted_.length * scale_);
    line_.stretchesLetters = line_.length != 0 && fitted_.stretchesLetters;
    context_.document.setTextLine(art_, line_);
    if (frame_.appearance != Appearance()) {
        context_.document.setAppearance(art_, frame_.appearance);
    }
    lastArt_ = art_;
    lastFitted_ = fitted_.element;
    art_ = Art::null;
}

bool LineMaker::finish() {
    dropLastBlank();
    finishLine();
    return made_;
}

} // namespace corvane
