// Where the letters of a line stand.
#pragma once

#include "host/matrix.h"
#include "writer/text/line_items.h"

#include <span>
#include <vector>

namespace corvane {

/// A glyph of a stretch: its place is in ems from where the stretch begins.
struct StretchGlyph {
    std::string codes;              ///< of a font of the page
    std::uint32_t noted = notNoted; ///< of a font of the machine
    double x = 0;
    double y = 0;
    double advance = 0; ///< as the font says, without spacing
    std::int32_t count = 1;
};

/// Glyphs of one font on one baseline.
struct PlacedStretch {
    PageFont* pageFont = nullptr; ///< or:
    NewFont* added = nullptr;
    RealMatrix frame; ///< from its space, in which the run's size is its size, to the artboard
    std::vector<StretchGlyph> glyphs;
};

/// A stretch of the line that lines go along: `frame` leads from the line's space, where it begins
/// at the origin, to the artboard.
struct DecoratedPart {
    RealMatrix frame;
    double length = 0;
};

struct PlacedRun {
    double start = 0;        ///< its left end, along the line
    bool isVertical = false; ///< its letters go down
    bool stays = false;      ///< as the page shows it: it has no stretches
    NotedReason reason;      ///< why it cannot be written, if it cannot
    std::vector<PlacedStretch> stretches;
    std::vector<DecoratedPart> decorated; ///< of a run with decorations
    LetterLines lines;                    ///< where these are
};

/// The runs of a line, in its order. Those behind one that cannot be written are where they would
/// be if it were empty.
std::vector<PlacedRun> layOutLine(const TextLine& line, std::span<const LineRun> runs,
                                  const PageFonts* ofPage, FontChoice& choice);

} // namespace corvane
