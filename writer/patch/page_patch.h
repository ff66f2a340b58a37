// A save as patches: reads the page again, compares it with the artwork, and says what becomes of
// its content.
#pragma once

#include "reader/page/page_base.h"
#include "writer/font/new_fonts.h"
#include "writer/art/drawn_looks.h"
#include "writer/image/new_images.h"
#include "writer/page/resource_registry.h"
#include "writer/patch/content_bytes.h"
#include "writer/patch/drawn_groups.h"
#include "writer/patch/moved_patterns.h"
#include "writer/patch/patch.h"

#include <cstdint>

namespace corvane {

/// What became of the objects, as a person counts them.
struct PatchCounts {
    std::int32_t kept = 0;
    std::int32_t changed = 0;
    std::int32_t added = 0;
    std::int32_t removed = 0;
    std::int32_t moved = 0;
};

struct PagePatch {
    ContentPatches content;
    ContentBytes bytes; ///< of the base
    std::vector<MovedPattern> patterns;
    DrawnGroups groups;
    DrawnLooks looks;
    NewFonts fonts;
    std::vector<NewImage> images; ///< that it draws and the file does not have
    PatchCounts counts;
    bool isDamaged = false;      ///< tokens of the base could not all be read
    std::int32_t resetState = 0; ///< number of the external graphics state to write; 0: none
};

/// Objects that patches need get numbers, and names in `resources`. Raises `unpatchable` where the
/// artwork cannot be had without harm to something else on the page, and `artworkMissing` where
/// half of the page or all of a kind is not in the artwork, unless the host says that this does
/// not matter. The host's document is then as it was.
PagePatch planPatch(DocumentCache& cache, const PageBase& base, ResourceRegistry& resources);

} // namespace corvane
