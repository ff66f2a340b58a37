#include "writer/text/line_layout.h"

#include "runtime/matrix.h"
#include "writer/text/text_path.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <utility>

namespace corvane {

namespace {

/// What the matrix of a line on a path says: size and slant, as on a level baseline.
RealMatrix unturned(const RealMatrix& matrix) {
    const double length = std::hypot(matrix.a, matrix.b);
    if (length == 0) {
        return {matrix.a, matrix.b, matrix.c, matrix.d, 0, 0};
    }
    const double x = matrix.a / length;
    const double y = matrix.b / length;
    return multiply({matrix.a, matrix.b, matrix.c, matrix.d, 0, 0}, {x, -y, y, x, 0, 0});
}

/// Turns about the point of the baseline that is the origin; letters stand `rise` above it.
RealMatrix turnOf(double degrees, RealPoint rise) {
    constexpr double steps = 0x1p30; // so that quarters of a turn are exact
    const double angle = -degrees * std::numbers::pi / 180;
    const double cosine = std::round(std::cos(angle) * steps) / steps;
    const double sine = std::round(std::sin(angle) * steps) / steps;
    const RealMatrix turn{cosine, sine, -sine, cosine, 0, 0};
    return multiply(multiply({.tx = -rise.x, .ty = -rise.y}, turn), {.tx = rise.x, .ty = rise.y});
}

class Layout {
public:
    Layout(const TextLine& line, std::span<const LineRun> runs, std::vector<LineItem> items)
        : line_(line), runs_(runs), items_(std::move(items)), placed_(runs.size()),
          matrix_(realMatrix(line.matrix)) {}

    std::vector<PlacedRun> place() {
        constexpr double unknown = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < placed_.size(); ++i) {
            placed_[i].start = unknown;
            placed_[i].isVertical = line_.isVertical;
            placed_[i].stays = !runs_[i].isTyped();
        }
        measure();
        fit();
        for (std::size_t i = 0; i < items_.size(); ++i) {
            placeItem(i);
        }
        double last = shift_;
        for (PlacedRun& run : placed_) {
            run.start = std::isinf(run.start) ? last : run.start;
            last = run.start;
        }
        return std::move(placed_);
    }

private:
    double sizeOf(const LineItem& item) const { return realFromFixed(runs_[item.run].run.size); }
    double spacingOf(const LineItem& item) const {
        return realFromFixed(runs_[item.run].run.spacing);
    }

    /// How far the pen goes for a glyph, in the line's space, what is asked of the whole aside.
    double wayOf(const LineItem& item, const LineGlyph& glyph) const {
        return (glyph.before + glyph.way + glyph.behind) * sizeOf(item) +
               (glyph.endsLetter ? spacingOf(item) * glyph.count : 0);
    }
    double lengthOf(const LineItem& item) const {
        double length = item.glyphs.empty() ? runs_[item.run].shownLength.value_or(0) : 0;
        for (const LineGlyph& glyph : item.glyphs) {
            length += wayOf(item, glyph);
        }
        return length;
    }

    void measure() {
        for (const LineItem& item : items_) {
            length_ += lengthOf(item);
            for (const LineGlyph& glyph : item.glyphs) {
                letters_ += glyph.endsLetter ? 1 : 0;
            }
        }
    }

    /// Makes the line as long as it has to be, and moves it to its anchor.
    void fit() {
        const double wanted = realFromFixed(line_.length);
        if (wanted > 0 && length_ > 0 && line_.stretchesLetters) {
            stretch_ = wanted / length_;
        } else if (wanted > 0 && letters_ > 1) {
            room_ = (wanted - length_) / static_cast<double>(letters_ - 1);
        }
        const double length = wanted > 0 && (stretch_ != 1 || room_ != 0) ? wanted : length_;
        shift_ = line_.anchor == TextAnchor::middle ? -length / 2
                 : line_.anchor == TextAnchor::end  ? -length
                                                    : 0;
        if (!line_.path.empty()) {
            path_.emplace(line_.path, line_.isPathClosed);
            matrix_ = unturned(matrix_);
        }
        pen_ = shift_;
    }

    /// The space of a run's letters at a place of the line, on the artboard.
    RealMatrix frameAt(double along) const {
        const RealPoint origin = line_.isVertical ? RealPoint{0, -along} : RealPoint{along, 0};
        return multiply({.a = stretch_, .d = 1, .tx = origin.x, .ty = origin.y}, matrix_);
    }

    void placeItem(std::size_t number) {
        LineItem& item = items_[number];
        PlacedRun& run = placed_[item.run];
        run.start = std::min(run.start, pen_);
        if (run.decorated.empty() && item.added != nullptr) {
            run.lines = item.added->font().facts().lines;
        }
        if (item.glyphs.empty()) {
            const double start = pen_;
            pen_ += lengthOf(item);
            turn_ = 0;
            turned_ = RealMatrix();
            decorate(item, start, true);
            return;
        }
        if (path_) {
            return placeOnPath(item, run);
        }
        const double size = sizeOf(item);
        const bool goesOn = !run.stretches.empty() && number > 0 &&
                            items_[number - 1].run == item.run &&
                            run.stretches.back().pageFont == item.pageFont &&
                            run.stretches.back().added == item.added;
        bool begins = !goesOn;
        for (LineGlyph& glyph : item.glyphs) {
            const double start = pen_;
            pen_ += glyph.before * size * stretch_;
            const bool turns = endedLetter_ && (glyph.turn != 0 || turn_ != 0);
            if (begins || turns) {
                turn_ = glyph.turn;
                turned_ = turn_ == 0 ? RealMatrix() : turnOf(turn_, riseOf(item));
                run.stretches.push_back({.pageFont = item.pageFont,
                                         .added = item.added,
                                         .frame = multiply(turned_, frameAt(pen_)),
                                         .glyphs = {}});
                stretchStart_ = pen_;
                begins = false;
            }
            endedLetter_ = glyph.endsLetter;
            run.stretches.back().glyphs.push_back(
                placedGlyph(glyph, (pen_ - stretchStart_) / (size * stretch_)));
            moveOn(item, glyph);
            decorate(item, turns ? stretchStart_ : start, turns);
        }
    }

    RealPoint riseOf(const LineItem& item) const {
        const double rise = realFromFixed(runs_[item.run].run.rise);
        return line_.isVertical ? RealPoint{rise, 0} : RealPoint{0, rise};
    }

    /// From a place of the line to the pen.
    void decorate(const LineItem& item, double start, bool begins) {
        if (runs_[item.run].run.decorations.empty()) {
            return;
        }
        std::vector<DecoratedPart>& parts = placed_[item.run].decorated;
        if (begins || parts.empty() || decoratedTo_ != start) {
            parts.push_back({.frame = multiply(turned_, frameAt(start))});
        }
        parts.back().length += (pen_ - start) / stretch_;
        decoratedTo_ = pen_;
    }

    static StretchGlyph placedGlyph(LineGlyph& glyph, double x) {
        return {.codes = std::move(glyph.codes),
                .noted = glyph.noted,
                .x = x + glyph.x,
                .y = glyph.y,
                .advance = glyph.advance,
                .count = glyph.count};
    }

    /// From where the glyph's own way begins.
    void moveOn(const LineItem& item, const LineGlyph& glyph) {
        pen_ += (wayOf(item, glyph) - glyph.before * sizeOf(item)) * stretch_ +
                (glyph.endsLetter ? room_ : 0);
    }

    /// Each glyph by itself; its middle is on the path.
    void placeOnPath(LineItem& item, PlacedRun& run) {
        const double size = sizeOf(item);
        const double scale = std::hypot(matrix_.a, matrix_.b);
        for (LineGlyph& glyph : item.glyphs) {
            pen_ += glyph.before * size * stretch_;
            const double half = glyph.way * size * stretch_ / 2;
            const double middle = realFromFixed(line_.pathStart) + (pen_ + half) * scale;
            if (const std::optional<RealMatrix> place = path_->at(middle)) {
                StretchGlyph placed = placedGlyph(glyph, 0);
                placed.x = 0;
                const double back = -half + glyph.x * size * stretch_;
                run.stretches.push_back({.pageFont = item.pageFont,
                                         .added = item.added,
                                         .frame = multiply(frameAt(back), *place),
                                         .glyphs = {std::move(placed)}});
            }
            moveOn(item, glyph);
        }
    }

    const TextLine& line_;
    std::span<const LineRun> runs_;
    std::vector<LineItem> items_;
    std::vector<PlacedRun> placed_;
    RealMatrix matrix_;
    std::optional<MeasuredPath> path_;
    double length_ = 0;       // of the line as its fonts have it
    std::size_t letters_ = 0; // that spacing may stand behind
    double stretch_ = 1;      // of letters
    double room_ = 0;         // more behind each letter
    double shift_ = 0;        // of the whole line
    double pen_ = 0;
    double stretchStart_ = 0;
    double turn_ = 0;   // of the stretch
    RealMatrix turned_; // by that
    bool endedLetter_ = true;
    double decoratedTo_ = 0;
};

} // namespace

std::vector<PlacedRun> layOutLine(const TextLine& line, std::span<const LineRun> runs,
                                  const PageFonts* ofPage, FontChoice& choice) {
    LineItems items = itemsOf(line, runs, ofPage, choice);
    std::vector<PlacedRun> placed = Layout(line, runs, std::move(items.items)).place();
    for (LineFault& fault : items.faults) {
        placed[fault.run].reason = std::move(fault.reason);
    }
    return placed;
}

} // namespace corvane
