// Art of every kind, and groups within groups without recursion.
#pragma once

#include "writer/art/art_stack.h"
#include "writer/art/walk.h"

namespace corvane {

/// Writes `art` and all that it holds.
void objectWorks(Walk& walk, Art art);

/// The same, but for how the art itself is laid over what is behind it.
void plainWorks(Walk& walk, Art art);

/// Visits one piece of art; what a group holds is left on `pending`.
void objectWorks(Walk& walk, Art art, ArtStack& pending);
/// Takes one step: visits art, or ends a group.
void stepWorks(Walk& walk, const ArtStep& step, ArtStack& pending);
/// Visits a layer's own group: reading makes one anyway, so it is never written.
void layerArtWorks(Walk& walk, Art art, ArtStack& pending);

} // namespace corvane
