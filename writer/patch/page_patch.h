// A save as patches: reads the page again, compares it with the artwork, and says what becomes of
// its content.
#pragma once

#include "reader/page/page_base.h"
#include "writer/art/drawn_looks.h"
#include "writer/font/new_fonts.h"
#include "writer/image/new_images.h"
#include "writer/page/resource_registry.h"
#include "writer/patch/content_patch.h"
#include "writer/patch/form/form_object.h"
#include "writer/patch/patch_counts.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace corvane {

struct PagePatch {
    ContentPatch page;
    std::deque<FormObject> forms; ///< that are drawn instead of forms that the file has
    std::unique_ptr<NewPaints> paints;
    NewFonts fonts;
    std::vector<NewImage> images; ///< that are drawn and the file does not have
    std::int32_t resetState = 0;  ///< number of the external graphics state to write; 0: none
};

/// Objects that patches need get numbers, and names in `resources`. Raises `unpatchable` where the
/// artwork cannot be had without harm to something else on the page, and `artworkMissing` where
/// half of the page or all of a kind is not in the artwork, unless the host says that this does
/// not matter. The host's document is then as it was.
PagePatch planPatch(DocumentCache& cache, const PageBase& base, ResourceRegistry& resources,
                    SavedLayers& layers);

} // namespace corvane
