// The subpaths of a piece of art.
#pragma once

#include "runtime/charged_list.h"
#include "writer/art/segment_works.h"

namespace corvane {

/// Every path that `art` is or holds, from the back to the front; groups may hold groups. Art of
/// another kind raises `type`.
ChargedList<Subpath> subpathsWithin(Art art);

/// The path whose style and flags count for a path or compound path; null where there is none.
Art leadingPath(Art art);

} // namespace corvane
