// Forms that are laid over what is behind them as one thing.
//
// Source: PDF Reference, 7.5.5.
#pragma once

#include "host/appearance.h"
#include "objects/object.h"

#include <optional>

namespace corvane {

struct GraphicsState;
struct Interpreter;

/// How a form that is a transparency group is laid over what is behind it, by the state in force;
/// `inside`, the state that its content begins with, loses what counts for the group as a whole.
/// Nothing where the form is none: it is no more than what it paints.
std::optional<Appearance> enterTransparencyGroup(Interpreter& interpreter, const Object& form,
                                                 GraphicsState& inside);

} // namespace corvane
