// Operators for images of the original profile: files that placed art is linked to.
#pragma once

namespace corvane {

struct Interpreter;

namespace classic {

/// `BI`, `ID`, `EI`: an inline image. `ID` without `BI` raises `mark`.
void beginImageOperator(Interpreter& interpreter);
void dataImageOperator(Interpreter& interpreter);
void endImageOperator(Interpreter& interpreter);

/// `Do`: an image; of other XObjects only a warning is raised.
void doObjectOperator(Interpreter& interpreter);

} // namespace classic

} // namespace corvane
