// Patches: which bytes of the content go, and what stands in their place.
#pragma once

#include "runtime/memory.h"
#include "writer/patch/path_bytes.h"

#include <string>
#include <vector>

namespace corvane {

struct Patch {
    ByteRange range;  ///< of the content; empty: nothing goes
    std::string text; ///< begins and ends where a token may
};

/// What becomes of a page's content.
struct ContentPatches {
    std::string before;         ///< in front of all of the content
    std::vector<Patch> patches; ///< in their order, none into another
    std::string behind;         ///< behind all of the content
    ZoneCharge charge;          ///< of all the texts

    bool isNothing() const { return before.empty() && patches.empty() && behind.empty(); }
};

} // namespace corvane
