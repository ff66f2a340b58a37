// What a save did to the objects of the artwork.
#pragma once

#include <cstdint>

namespace corvane {

/// What became of the objects, as a person counts them: a form is as many as it holds.
struct PatchCounts {
    std::int32_t kept = 0;
    std::int32_t changed = 0;
    std::int32_t added = 0;
    std::int32_t removed = 0;
    std::int32_t moved = 0;

    PatchCounts& operator+=(const PatchCounts& other) {
        kept += other.kept;
        changed += other.changed;
        added += other.added;
        removed += other.removed;
        moved += other.moved;
        return *this;
    }
};

} // namespace corvane
