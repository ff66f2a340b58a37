// A path under construction, while the space that it is constructed in becomes another.
#pragma once

#include "host/matrix.h"

namespace corvane {

struct Interpreter;

/// Moves the points that the path has so far from the space of `former` to that of the CTM in
/// force. A path stands in user space until it is painted: readers agree on that where `cm` or `Q`
/// stands within one, which the PDF Reference does not allow. Nothing in the original profile,
/// without a path, and where `former` has no inverse.
void followSpace(Interpreter& interpreter, const RealMatrix& former);

} // namespace corvane
