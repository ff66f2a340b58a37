// The page that artwork was opened from, read again: what a save compares the artwork with.
#pragma once

#include "host/artwork.h"
#include "reader/content/content_trace.h"
#include "reader/page/page_base.h"
#include "reader/text/page_fonts.h"
#include "writer/patch/compare/look_difference.h"
#include "writer/patch/compare/paint_comparison.h"
#include "writer/patch/place/layer_chains.h"

namespace corvane {

struct BaseReading {
    Art root = Art::null;        ///< holds the art of the page; in no layer
    Art annotations = Art::null; ///< the same of its annotations; null where it has none
    ContentTrace trace;
    PageFonts fonts; ///< of its text
    /// Paints and masks of the page beside those of the artwork: comparing reads nothing else.
    mutable PaintComparison paints;
    mutable MaskComparison masks;
    mutable PatchLayers layers; ///< of page and artwork
};

/// Reads the content of the base through the host's table into a group that is in no layer, as
/// opening did. Warns of nothing. Whoever reads gives the art back, whatever was raised.
void readBase(DocumentCache& cache, const PageBase& base, BaseReading& reading);

/// Gives the art of the base back to the host.
void disposeBase(BaseReading& reading);

} // namespace corvane
