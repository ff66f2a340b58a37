// Colour operators.
#pragma once

#include "writer/art/walk.h"

namespace corvane {

/// Sets the colour for filling or for stroking. Patterns and gradients, which the host draws, are a
/// middle gray here. An unknown kind raises `type`.
void colorWorks(Walk& walk, const Colour& colour, bool isFill);

} // namespace corvane
