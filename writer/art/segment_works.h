// Path construction: the segments of the host's paths as operators.
#pragma once

#include "writer/art/walk.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// One path of the host: a subpath of what is written.
struct Subpath {
    Art art = Art::null;
    std::int32_t count = 0; ///< of segments
    bool closed = false;
    bool guide = false;
};

/// Asks the host. Art that is no path raises `range`.
Subpath subpathOf(Art art);

void segmentWorks(Walk& walk, const Subpath& subpath);
/// One subpath after the other; whether there was any segment.
bool segmentWorks(Walk& walk, std::span<const Subpath> subpaths);

} // namespace corvane
