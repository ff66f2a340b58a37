// The content loop: runs content streams, operator by operator.
#pragma once

#include "objects/object.h"

#include <span>

namespace corvane {

struct Interpreter;

/// Interprets the streams of one content, within its `ContentScope`. Tokens end with a stream;
/// operands and the graphics state do not, for streams may be divided between any two tokens (PDF
/// Reference, 3.6.2). An operator that fails for reasons of the content itself is warned of and
/// skipped; what else is raised ends the reading.
void runContent(Interpreter& interpreter, std::span<const ObjectOwner> streams);

} // namespace corvane
