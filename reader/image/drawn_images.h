// Tells the host which images a page draws, for people who only look at a file.
#pragma once

#include "objects/object.h"
#include "reader/content/interpreter.h"

#include <cstdint>

namespace corvane {

/// An image that content draws at hand: its dictionary or stream, and its number (0: inline). Only
/// to a host that asks (`HostExtension::drawnImage`).
void tellDrawnImage(Interpreter& interpreter, const Object& image, std::int32_t number);

} // namespace corvane
