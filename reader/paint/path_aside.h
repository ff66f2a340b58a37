// A path under construction, while groups around it end.
#pragma once

#include "host/artwork.h"

namespace corvane {

struct Interpreter;

/// Takes the path out of the groups that it stands in, so that those which hold nothing else are
/// seen to be empty when they end. The group that it stood in; null where there is no path.
Art takePathAside(Interpreter& interpreter);

/// Puts the path back, if that group goes on; if not, it gets its place when it is painted.
void putPathBack(Interpreter& interpreter, Art group);

} // namespace corvane
