#include "app/svg/read/text/line_maker.h"

#include "app/svg/text_shift.h"

#include <cmath>
#include <numbers>

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
           left.spacing == right.spacing && left.style == right.style;
}

} // namespace

void LineMaker::startLine(const LetterPlace& place) {
    finishRun();
    const double before = across_; // a line that says nothing of it keeps the baseline
    double x = place.x.value_or(frame_.isVertical ? origin_.x + before : 0);
    double y = place.y.value_or(frame_.isVertical ? 0 : origin_.y + before);
    across_ = carried_ = 0;
    before_ = {};
    if (!context_.ours) {
        x += place.dx;
        y += place.dy;
    }
    origin_ = {x, y};
    turn_ = place.rotate;
    isOpen_ = true;
    isTurned_ = turn_ != 0;
    art_ = Art::null;
}

/// Null where the line has no extent, or too much.
Art LineMaker::makeLine() {
    const double angle = turn_ * std::numbers::pi / 180;
    const RealMatrix turn{std::cos(angle), std::sin(angle), -std::sin(angle),
                          std::cos(angle), origin_.x,       origin_.y};
    const RealMatrix placed{1, 0, 0, 1, origin_.x, origin_.y};
    RealMatrix matrix = multiply(isTurned_ ? turn : placed, frame_.toArt);
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
    const Art art =
        context_.document.make(ArtKind::text, frame_.place.placement, frame_.place.reference);
    context_.document.setTextLine(art,
                                  {.matrix = fixedMatrix(matrix), .isVertical = frame_.isVertical});
    return art;
}

void LineMaker::startRun(const LetterLook& look, double rise) {
    finishRun();
    look_ = look;
    rise_ = rise;
    face_ = 0;
}

void LineMaker::addPiece(double shift, std::int32_t face) {
    const double em = context_.ours ? asWritten(look_.size) : look_.size;
    const Fixed moved = shift == 0 || !(em > 0) ? 0 : shiftOfLength(shift, em);
    if (moved != 0 || face != face_) {
        pieces_.push_back({static_cast<std::int32_t>(text_.size()), moved, face});
        face_ = face;
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

void LineMaker::add(std::string_view letter, bool blank, const LetterPlace& place,
                    const LetterLook& look) {
    const std::optional<double>& along = frame_.isVertical ? place.y : place.x;
    const std::optional<double>& across = frame_.isVertical ? place.x : place.y;
    const bool starts = !isOpen_ || along.has_value();
    if (starts) {
        dropLastBlank();
        startLine(place);
    } else if (across && !frame_.isColumn) {
        across_ = *across - (frame_.isVertical ? origin_.x : origin_.y);
    }
    double shift = carried_;
    carried_ = blank ? look.wordSpacing : 0;
    if (frame_.isColumn) {
        shift = columnShift(place, look);
    } else if (!starts || context_.ours) {
        shift += frame_.isVertical ? place.dy : place.dx;
        const double step = frame_.isVertical ? place.dx : place.dy;
        across_ += context_.ours ? asWritten(step) : step;
    }
    if ((!starts && isTurned_) || (!starts && place.rotate != 0)) {
        context_.tally.add("rotate"); // where the letter begins is not known
    }
    const double rise = (frame_.isVertical ? across_ : -across_) + look.rise;
    if (text_.empty() || rise != rise_ || !looksAlike(look, look_)) {
        startRun(look, rise);
    }
    addPiece(shift, look.face);
    text_ += letter;
    endsInBlank_ = blank && !look.keepsBlanks;
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

void LineMaker::finishRun() {
    TextRun run;
    if (text_.empty()) {
        pieces_.clear();
        return;
    }
    const bool isFirst = art_ == Art::null;
    if (isFirst) {
        art_ = makeLine();
    }
    run.size = fixedNumber(look_.size * scale_);
    if (art_ != Art::null && run.size > 0) {
        run.font = look_.font;
        run.rise = fixedNumber(rise_ * scale_);
        run.spacing = fixedNumber(look_.spacing * scale_);
        run.text = text_;
        run.pieces = pieces_;
        run.style = look_.style;
        run.source = look_.source.value_or(ArtSource{});
        context_.document.addTextRun(art_, run);
        made_ = true;
        if (isFirst && !look_.source && !context_.document.fonts().facts(run.font).isPageFont) {
            context_.tally.add("text"); // pages get no new fonts yet
        }
    }
    text_.clear();
    pieces_.clear();
}

bool LineMaker::finish() {
    dropLastBlank();
    finishRun();
    return made_;
}

} // namespace corvane
