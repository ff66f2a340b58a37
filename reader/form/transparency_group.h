// Forms that are laid over what is behind them as one thing.
//
// Source: PDF Reference, 7.5.5.
#pragma once

#include "host/appearance.h"
#include "objects/object.h"

namespace corvane {

struct GraphicsState;
struct Interpreter;

/// How the group of a form is laid over what is behind it, by the state in force. Of a form that is
/// a transparency group, `inside`, the state that its content begins with, loses what counts for
/// the group as a whole; other forms are no more than what they paint.
Appearance enterTransparencyGroup(Interpreter& interpreter, const Object& form,
                                  GraphicsState& inside);

} // namespace corvane
