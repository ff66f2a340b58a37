// A form of the page in the artwork: the group that it is, what became of it, and what the content
// around it draws for it.
#pragma once

#include "host/matrix.h"
#include "writer/patch/base/base_content.h"
#include "writer/patch/base/edited_artwork.h"
#include "writer/patch/compare/matching.h"
#include "writer/patch/patch_counts.h"

#include <cstdint>
#include <optional>

namespace corvane {

struct EditedForm {
    Art group = Art::null;
    Art clip = Art::null; ///< of the group; null: it does not clip
    const BaseContent* base = nullptr;
    EditedArtwork inside = {};
    std::int32_t leaves = 0; ///< objects that it holds, those of forms within it included

    // By `compareForm`:

    Matching matching = {};
    bool isChanged = false;                  ///< it is drawn otherwise than by moving it as a whole
    bool isClipChanged = false;              ///< the clip of the group is another one
    std::optional<RealMatrix> movement = {}; ///< on the artboard, where all of it was moved

    bool isElsewhere = false; ///< another content than the one that drew it draws it
    bool isCopy = false;      ///< it is not the one group that the page's form became

    // By `planForm`:

    std::int32_t number = 0; ///< of the object that is drawn in its place; 0: the page's
    PatchCounts counts = {}; ///< of what it holds
};

} // namespace corvane
