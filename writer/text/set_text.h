// Text that is set anew: laid out first, and written when all of it is.
#pragma once

#include "host/matrix.h"
#include "reader/text/page_fonts.h"
#include "writer/art/walk.h"
#include "writer/font/new_fonts.h"
#include "writer/text/decoration_works.h"
#include "writer/text/font_choice.h"
#include "writer/text/font_names.h"
#include "writer/text/line_layout.h"

#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace corvane {

class SetText {
public:
    /// A number of a run that was laid out.
    using Index = std::uint32_t;

    /// `ofPage` may be null.
    explicit SetText(const PageFonts* ofPage) : ofPage_(ofPage) {}
    SetText(const SetText&) = delete;
    SetText& operator=(const SetText&) = delete;

    /// Lays out a line; the number of its first run, which the others follow.
    Index add(const TextLine& line, std::span<const LineRun> runs);
    double startOf(Index run) const { return runs_[run].start; }

    /// All is laid out.
    void finish() { fonts_.finish(); }

    /// Writes the letters of a run that is typed, within a text object, in a content where fonts
    /// have those names. `back` leads from the artboard to the space in force. Raises `unpatchable`
    /// where no font shows a letter.
    void write(Walk& walk, Index run, const TextRun& letters, const RealMatrix& back,
               FontResourceNames& names);

    /// Writes the lines along a run, outside a text object. Its paint is in force.
    void decorate(Walk& walk, Index run, const TextRun& letters, const RealMatrix& back,
                  LineDepth depth) const {
        decorationWorks(walk, runs_[run], letters, back, depth);
    }

    /// Raises `unpatchable` where no font shows a letter of the run.
    void refuse(Index run) const;

    const NewFonts& fonts() const { return fonts_; }
    NewFonts takeFonts() { return std::move(fonts_); }

private:
    std::string_view nameOf(const PlacedStretch& stretch);

    const PageFonts* ofPage_;
    NewFonts fonts_;
    FontChoice choice_{fonts_};
    std::deque<PlacedRun> runs_;
    std::int64_t bytes_ = 0;
    ZoneCharge charge_;
};

} // namespace corvane
