// The art of the path under construction, and what becomes of it when the path ends.
#pragma once

#include "host/artwork.h"

namespace corvane {

struct GraphicsState;
struct Interpreter;

/// Styles the finished path and, where it clips, makes it the clip of a new group, which becomes
/// the container. A path of one subpath leaves its compound path; one without is disposed of.
void finishArt(Interpreter& interpreter);

/// The style of the state, its lengths scaled to the page.
PathStyle scaledStyle(const GraphicsState& state);

} // namespace corvane
