// A gradient drawn by fills of one colour each.
#pragma once

#include "app/artwork/paint/paint.h"
#include "host/artwork.h"

namespace corvane {

/// Fills `bounds` with the gradient, whose matrix leads to the coordinates of `bounds`. Every fill
/// reaches from where its colour begins to the far end of what is to be covered, under or over the
/// next one, so that no edge shows what lies below. At most some 16,000 fills.
///
/// SVG 1.1, 13.2: a gradient without length or last radius is its last colour; a matrix without
/// inverse paints nothing; a first circle that is not within the last one is moved into it, and if
/// it is not smaller the last colour is all that is seen. Radial gradients that repeat are drawn
/// for 1024 turns beyond the first one seen, and are their mean colour from there on.
void drawGradient(const Gradient&, const Rect& bounds, const DrawingProcedures&);

} // namespace corvane
