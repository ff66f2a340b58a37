// A line of text as items: glyphs in a row of one run and one font, from left to right.
#pragma once

#include "host/text.h"
#include "reader/text/page_fonts.h"
#include "runtime/reason.h"
#include "writer/text/font_choice.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace corvane {

/// A run as it goes into a line.
struct LineRun {
    TextRun run;
    /// Where it stays as the page shows it, its length in the line's space, which may be below 0;
    /// otherwise it is typed.
    std::optional<double> shownLength = {};

    bool isTyped() const { return !shownLength; }
};

/// A glyph in its row. Lengths are in ems of the run.
struct LineGlyph {
    std::string codes; ///< of a font of the page; of a blank that it does not have none
    std::uint32_t noted = notNoted; ///< of a font of the machine, as `NewFont::note` says
    double advance = 0;             ///< as the font says
    double way = 0;                 ///< how far the pen goes: kerned, but without spacing
    double x = 0;                   ///< from the pen to where it stands
    double y = 0;
    double before = 0;      ///< how far the line moves it and all that is right of it
    double behind = 0;      ///< the same, without itself
    std::int32_t count = 1; ///< of codes
    bool endsLetter = true; ///< spacing stands behind it
    double turn = 0;        ///< about where the pen is at its letter, clockwise, in degrees
};

struct LineItem {
    std::size_t run = 0;
    PageFont* pageFont = nullptr; ///< neither font: a run that stays as the page shows it
    NewFont* added = nullptr;
    std::vector<LineGlyph> glyphs;
};

/// Why the text of a run cannot be written.
struct LineFault {
    std::size_t run = 0;
    NotedReason reason;
};

struct LineItems {
    std::vector<LineItem> items;
    std::vector<LineFault> faults; ///< such runs have no items
};

/// `ofPage` may be null. Text of a line that stands as it is read is put in order run by run, in
/// other lines as a whole.
LineItems itemsOf(const TextLine& line, std::span<const LineRun> runs, const PageFonts* ofPage,
                  FontChoice& choice);

} // namespace corvane
