// Shadings for the content at hand, within what a page may cost.
#pragma once

#include "reader/shading/shading.h"

#include <optional>

namespace corvane {

struct Interpreter;

/// The shading that an object describes, counted as work of the page, and its losses noted. Nothing
/// where the host has none, where none can be computed, or the page has no room for more.
std::optional<Shading> takeShading(Interpreter& interpreter, const Object& object);

} // namespace corvane
