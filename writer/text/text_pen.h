// The strokes of letters that are set anew: they are stretched as the letters are, as SVG draws
// them.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"
#include "writer/art/walk.h"

namespace corvane {

/// How a run is painted in the space of the pen that its line makes.
struct PennedText {
    Pen pen;         ///< round where the run is not stroked, or no pen says it
    PathStyle style; ///< its lengths are those before the pen
    RealMatrix back; ///< from the artboard to the pen's space
    bool isRound() const { return pen == Pen(); }
};

/// Of a run of that style, in the line that has that matrix. The lengths of its style are the mean
/// ones on the artboard.
PennedText pennedText(const Matrix& line, const PathStyle& style);

/// Makes the pen the space of what is drawn next, where the CTM is that of the artboard.
void enterPenOf(Walk& walk, const PennedText& text);

} // namespace corvane
