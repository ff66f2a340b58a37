// Text that an operator shows, as runs of lines.
#pragma once

#include "objects/object.h"

#include <span>

namespace corvane {

struct Interpreter;

/// Whether the host has slots for text, and the profile reads it.
bool hostHoldsText();

/// Shows the strings of an array and moves by its numbers, in thousandths of the size. What the
/// host cannot hold is counted and moved past.
void showText(Interpreter& interpreter, std::span<const Object> elements);

} // namespace corvane
