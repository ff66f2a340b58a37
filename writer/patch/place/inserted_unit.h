// What is written apart in one piece: an object, or all that a group holds which is laid over
// others as one thing.
#pragma once

#include "writer/patch/compare/matching.h"

#include <cstdint>
#include <optional>

namespace corvane {

class GatheredState;

/// What was in force where the objects of a unit stood on the page, as far as all of them had it.
struct FormerPlace {
    TraceIndex mark = 0;           ///< the innermost marked content around all
    TraceIndex clip = 0;           ///< the innermost clip around all
    std::uint32_t hiddenClips = 0; ///< clips without art, which are around each of them
    std::uint32_t roles = 0;       ///< parts of the state that operators had set for each of them
    TraceIndex latest = 0;         ///< the last event that painted one of them
};

/// Objects that follow one another in the artwork.
struct InsertedUnit {
    EditedIndex first = 0;
    EditedIndex end = 0;                    ///< one behind the last
    EditedIndex group = 0;                  ///< around all of them
    bool isText = false;                    ///< some of it is
    std::optional<FormerPlace> former = {}; ///< nothing: all of it is new
};

/// The unit that an object, which is the first of it, is written in. Raises `unpatchable` where its
/// objects stood within different clips without art, which no one place has.
InsertedUnit unitFrom(EditedIndex first, const BaseContent& base, const EditedArtwork& artwork,
                      const Matching& matching, GatheredState& state);

} // namespace corvane
