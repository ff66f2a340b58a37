// Shifts between letters: ems of a run in the artwork, lengths in SVG.
//
// A column is written letter by letter, each set as in a line of its own, because many programs
// cannot set a column: `x` and the anchor put the letter in the middle of it, `dy` below the
// letter before.
#pragma once

#include "app/artwork/geometry/geometry.h"
#include "host/text.h"

namespace corvane {

/// The shift that a length is where the em is `em` long.
inline Fixed shiftOfLength(double length, double em) {
    return fixedNumber(length / em);
}

inline double lengthOfShift(Fixed shift, double em) {
    return static_cast<double>(shift) / fixedOne * em;
}

/// The letter before one in a column, in lengths of SVG; the first has none.
struct ColumnLetter {
    double size = 0;
    double spacing = 0; ///< behind it
};

/// The way down to the baseline of a letter without a shift.
inline double columnStep(double size, const ColumnLetter& before) {
    return columnAdvance * before.size + before.spacing + columnOrigin * (size - before.size);
}

} // namespace corvane
