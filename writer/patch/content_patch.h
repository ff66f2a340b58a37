// The patches to one content, and the objects that they need.
#pragma once

#include "writer/patch/compare/matching.h"
#include "writer/patch/content_bytes.h"
#include "writer/patch/moved_patterns.h"
#include "writer/patch/patch.h"
#include "writer/patch/patch_counts.h"
#include "writer/patch/patch_tools.h"
#include "writer/patch/text/property_lists.h"
#include "writer/patch/works/drawn_groups.h"

#include <vector>

namespace corvane {

struct ContentPatch {
    ContentPatches content;
    ContentBytes bytes; ///< of the base
    std::vector<MovedPattern> patterns;
    std::vector<PropertyList> lists;
    DrawnGroups groups;
    DrawnLooks looks;
    PatchCounts counts;
    bool isDamaged = false; ///< tokens of the base could not all be read
};

/// What becomes of a content that the artwork has so. Forms within it have the objects that are
/// drawn. Raises `unpatchable` where the artwork cannot be had without harm to something else.
ContentPatch patchContent(PatchTools& tools, const EditedArtwork& artwork,
                          const Matching& matching);
/// The content as it is, for another object.
ContentPatch keepContent(PatchTools& tools);

} // namespace corvane
