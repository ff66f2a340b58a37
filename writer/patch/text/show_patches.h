// Patches where the page's text stands: what is gone leaves the way that it went.
#pragma once

#include "writer/patch/compare/matching.h"
#include "writer/patch/patch.h"
#include "writer/patch/patch_tools.h"
#include "writer/patch/place/paint_order.h"

#include <vector>

namespace corvane {

/// Whether a run whose letters or place an edit changed can be shown where its own bytes stand, in
/// the text object that goes on behind it. Only there does it keep marked content that begins
/// within the text object.
bool isShownInPlace(const ContentTrace& trace, const PaintedArt& was,
                    const ArtDifference& difference);

/// Takes runs that are gone, or are written apart, out of the operators that show them; writes what
/// is shown in place. What is shown behind them on the line stays where it is. Raises `unpatchable`
/// where the bytes are not what was read.
void patchShows(PatchTools& tools, const BaseContent& base, const EditedArtwork& artwork,
                const Matching& matching, const PaintOrder& order, std::vector<Patch>& patches);

/// What goes between the end of a text object and its beginning again, in front of what goes on
/// with it: its BT, and the place that it had come to.
void resumeTextWorks(PatchTools& tools, const TextObjectPlace& place);

} // namespace corvane
