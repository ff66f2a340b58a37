// Shifts between letters: ems of a run in the artwork, lengths in SVG.
#pragma once

#include "app/artwork/geometry.h"
#include "host/text.h"

namespace corvane {

/// The shift that a length is where the em is `em` long.
inline Fixed shiftOfLength(double length, double em) {
    return fixedNumber(length / em);
}

inline double lengthOfShift(Fixed shift, double em) {
    return static_cast<double>(shift) / fixedOne * em;
}

} // namespace corvane
