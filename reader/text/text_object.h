// The text object of a content (BT to ET), the line of art that its text goes on with, and what of
// it clips what comes behind it.
#pragma once

#include "host/appearance.h"
#include "host/artwork.h"
#include "host/matrix.h"
#include "reader/text/clip_text.h"
#include "reader/text/open_line.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// The art of the open line, and what was in force when that was begun.
struct LineArt {
    Art art = Art::null;
    Art container = Art::null;  ///< that it was made in
    Art clipped = Art::null;    ///< the group of the innermost clip
    bool isLayered = false;     ///< in marked content of a layer
    std::int32_t painted = 0;   ///< objects of the content when its last run was made
    std::uint16_t settings = 0; ///< of `gs`, as the next three
    BlendMode blend = BlendMode::normal;
    SoftMask mask = SoftMask::null;
    Overprint overprint;
    RenderingIntent intent = RenderingIntent::relativeColorimetric;
    std::int32_t runs = 0;
};

struct TextObject {
    RealMatrix matrix;     ///< of text space; moves along with what is shown
    RealMatrix lineMatrix; ///< where the line began
    OpenLine line;
    LineArt art;
    ClipText clip; ///< what it showed so far adds to the clip at its end
};

/// A part of what one operator shows: the elements of its array from `first` up to `end`, as one
/// run of a line.
struct ShownPart {
    Art art = Art::null;
    std::int32_t run = 0;
    std::int32_t firstElement = 0;
    std::int32_t endElement = 0;
    double start = 0;      ///< in the line's space: where the run begins
    double length = 0;     ///< in the line's space: to where the next run begins
    double pen = 0;        ///< in text space: where the run begins, from where the operator begins
    double advance = 0;    ///< in text space, along the line, to where the next part begins
    bool isBefore = false; ///< of the runs that the line had: those go on by its length
    double gap = 0; ///< in the line's space: of what is before them, how far they go on besides
};

/// What the operator that showed text last became.
struct ShownText {
    std::vector<ShownPart> parts;
    bool isDrawn = false; ///< by glyph procedures: one part, whose art is a group of paths
    bool hides = false;   ///< it shows what artwork cannot hold, and is no art
    double advance = 0;   ///< in text space, along the line
    RealMatrix matrix;    ///< the text matrix before it was shown
};

} // namespace corvane
