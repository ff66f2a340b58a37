// Places at which patches stand: between operators, and behind all of a page's content.
#pragma once

#include "reader/content/content_trace.h"
#include "writer/patch/patch.h"

#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

/// The byte in front of which something new stands that comes before `event`: where a stream ends
/// there, its end, so that the stream need not be written again.
std::uint32_t placeBefore(const ContentTrace& trace, TraceIndex event);

/// What makes the end of the content a place where nothing is in force.
struct PageEnd {
    std::string before;         ///< to stand in front of all content
    std::vector<Patch> patches; ///< operators that would undo that
    std::string behind;
    Surroundings inForce;
};

/// Where `inherits`, the content begins with a state that cannot be set again, so what changed it
/// is undone.
PageEnd closePage(const ContentTrace& trace, bool inherits);

} // namespace corvane
