// What settings of a page do that artwork cannot hold: found where they are made, and counted as
// omissions.
#pragma once

#include "host/matrix.h"
#include "objects/object.h"

namespace corvane {

struct ColourSpace;
struct Interpreter;

/// Of an external graphics state (`gs`), for what is not taken from it.
void noteStateLosses(Interpreter& interpreter, const Object& entries);

/// Of a rendering intent other than the one that a page begins with.
void noteIntentLoss(Interpreter& interpreter, const Object& intent);

/// Of a space that colours are given in, and of those within it.
void noteSpaceLosses(Interpreter& interpreter, const ColourSpace& space);

/// Of the spaces that take the place of device spaces on the page in use (PDF Reference, 4.5.4).
void noteDefaultSpaces(Interpreter& interpreter);

/// Of a stroke of that matrix: whether its width depends on its direction.
void noteStrokeLoss(Interpreter& interpreter, const RealMatrix& matrix);

} // namespace corvane
