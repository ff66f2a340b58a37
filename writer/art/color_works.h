// Colour operators.
#pragma once

#include "writer/art/walk.h"

namespace corvane {

/// Sets the colour for filling or for stroking. Patterns and gradients are a middle gray where the
/// walk has no paints. An unknown kind raises `type`.
void colorWorks(Walk& walk, const Colour& colour, bool isFill);

} // namespace corvane
