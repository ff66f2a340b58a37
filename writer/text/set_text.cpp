#include "writer/text/set_text.h"

#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "runtime/reason.h"
#include "writer/text/text_state.h"

#include <cmath>
#include <string>
#include <utility>

namespace corvane {

namespace {

std::int64_t memoryOf(const PlacedRun& run) {
    std::size_t bytes = sizeof(PlacedRun);
    for (const PlacedStretch& stretch : run.stretches) {
        bytes += sizeof(PlacedStretch) + stretch.glyphs.size() * sizeof(StretchGlyph);
    }
    bytes += run.decorated.size() * sizeof(DecoratedPart);
    return static_cast<std::int64_t>(bytes);
}

/// A gap as its digits can say it.
double sayable(double ems) {
    constexpr double steps = 100'000; // of a thousandth of an em, `gapDigits`
    return std::round(ems * steps) / steps;
}

/// The array of a stretch, from its first glyph on.
class ShowWriter {
public:
    ShowWriter(Walk& walk, const TextRun& letters, double forward)
        : walk_(walk), size_(realFromFixed(letters.size)), rise_(realFromFixed(letters.rise)),
          spacing_(realFromFixed(letters.spacing) / size_), forward_(forward) {}

    void add(const StretchGlyph& glyph, std::string_view codes) {
        if (codes.empty()) {
            return; // a blank: what follows it stands further on
        }
        if (sayable(glyph.y) != y_) {
            end();
            y_ = sayable(glyph.y);
            riseWorks(walk_, rise_ + y_ * size_);
        }
        begin();
        if (const double gap = sayable(glyph.x - pen_); gap != 0) {
            flush();
            gapWorks(walk_, forward_ * gap);
            pen_ += gap;
        }
        codes_ += codes;
        pen_ += glyph.advance + spacing_ * glyph.count;
    }

    /// The rise is then what the run says.
    void finish() {
        end();
        if (y_ != 0) {
            riseWorks(walk_, rise_);
        }
    }

private:
    void begin() {
        if (!isOpen_) {
            walk_.text.add("[");
            isOpen_ = true;
        }
    }
    void flush() { stringWorks(walk_, std::exchange(codes_, {})); }
    void end() {
        if (isOpen_) {
            flush();
            walk_.text.add("] TJ\n");
            isOpen_ = false;
        }
    }

    Walk& walk_;
    double size_;
    double rise_;
    double spacing_; // ems
    double forward_;
    double pen_ = 0;
    double y_ = 0;
    bool isOpen_ = false;
    std::string codes_;
};

} // namespace

SetText::Index SetText::add(const TextLine& line, std::span<const LineRun> runs) {
    const auto first = static_cast<Index>(runs_.size());
    for (PlacedRun& run : layOutLine(line, runs, ofPage_, choice_)) {
        bytes_ += memoryOf(run);
        runs_.push_back(std::move(run));
    }
    charge_.resize(bytes_);
    return first;
}

void SetText::refuse(Index run) const {
    const NotedReason& reason = runs_[run].reason;
    if (reason.reason != Reason::none) {
        noteReason(reason.reason, reason.name);
        failException(Exception::unpatchable);
    }
}

void SetText::write(Walk& walk, Index run, const TextRun& letters, const RealMatrix& back,
                    FontResourceNames& names) {
    refuse(run);
    const PlacedRun& placed = runs_[run];
    if (letters.size <= 0 || placed.stays) {
        failException(Exception::unpatchable); // its source may be another one than it was
    }
    // The pen of a column goes down, and its rise is to the right.
    const double forward = placed.isVertical ? -1 : 1;
    const double rise = realFromFixed(letters.rise);
    const PlacedStretch* last = nullptr;
    for (const PlacedStretch& stretch : placed.stretches) {
        RealMatrix frame = multiply(stretch.frame, back);
        if (!isFinite(frame)) {
            failException(Exception::unpatchable);
        }
        if (last == nullptr || last->pageFont != stretch.pageFont || last->added != stretch.added) {
            walk.text.addName(stretch.pageFont != nullptr
                                  ? names.of(*stretch.pageFont)
                                  : fonts_.use(*stretch.added, names.resources()));
            walk.text.addReal(realFromFixed(letters.size));
            walk.text.add("Tf ");
        }
        if (last == nullptr) {
            textStateWorks(walk, {.characterSpacing = forward * realFromFixed(letters.spacing),
                                  .rise = placed.isVertical ? 0 : rise,
                                  .mode = textModeOf(letters.style)});
        }
        if (placed.isVertical) {
            frame = multiply({.tx = rise}, frame);
        }
        textMatrixWorks(walk, frame);
        ShowWriter show(walk, letters, forward);
        for (const StretchGlyph& glyph : stretch.glyphs) {
            show.add(glyph,
                     glyph.noted != notNoted ? stretch.added->code(glyph.noted) : glyph.codes);
        }
        show.finish();
        last = &stretch;
    }
}

} // namespace corvane
