// ActualText: what marked content says that its text reads as (PDF Reference, 10.8.3).
#pragma once

#include "writer/patch/compare/matching.h"
#include "writer/patch/patch.h"
#include "writer/patch/patch_tools.h"
#include "writer/patch/place/paint_order.h"
#include "writer/patch/text/property_lists.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Takes ActualText out of marked content whose text was retyped, removed or moved elsewhere: what
/// reads the page would go on reading the old words. The tag and its other properties stay.
void patchActualText(PatchTools& tools, PropertyLists& lists, const Matching& matching,
                     const PaintOrder& order, std::vector<Patch>& patches);

/// The bytes of such an operator without ActualText; nothing where they have none. Of a list that
/// the resources hold it names a copy.
std::optional<std::string> withoutActualText(std::string_view bytes, PropertyLists& lists);

} // namespace corvane
