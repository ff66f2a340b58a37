// The subpaths of a piece of art.
#pragma once

#include "runtime/charged_list.h"
#include "writer/art/segment_works.h"

#include <array>
#include <cstdint>
#include <span>

namespace corvane {

/// Every path that `art` is or holds, from the back to the front; groups may hold groups. Art of
/// another kind raises `type`.
ChargedList<Subpath> subpathsWithin(Art art);

/// The path whose style and flags count for a path or compound path; null where there is none.
Art leadingPath(Art art);
/// Its style; that of a new path where there is none.
PathStyle leadingStyle(Art art);

/// Reads the segments of a subpath, which outlives it, in blocks.
class SegmentReader {
public:
    explicit SegmentReader(const Subpath& subpath) : subpath_(subpath) {}

    /// Those from `first` on, as many as a block holds; valid until the next call.
    std::span<const Segment> read(std::int32_t first);

private:
    const Subpath& subpath_;
    std::array<Segment, 256> block_;
};

/// Calls `visit` for each segment of art, as `subpathsWithin` lists it.
template <class Visit>
void forEachSegment(Art art, const Visit& visit) {
    const ChargedList<Subpath> subpaths = subpathsWithin(art);
    for (const Subpath& subpath : subpaths.items()) {
        SegmentReader reader(subpath);
        for (std::int32_t at = 0; at < subpath.count;) {
            const std::span<const Segment> block = reader.read(at);
            for (const Segment& segment : block) {
                visit(segment);
            }
            at += static_cast<std::int32_t>(block.size());
        }
    }
}

} // namespace corvane
