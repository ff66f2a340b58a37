// Runs of text that are written apart: moved, painted otherwise, typed anew, new.
#pragma once

#include "writer/patch/base/edited_artwork.h"
#include "writer/patch/compare/comparison.h"
#include "writer/patch/patch_tools.h"

namespace corvane {

struct BaseContent;
struct PaintedArt;

/// Writes text of the page where the artwork has it, as a text object: its own bytes where its
/// letters are the same. The CTM and the state are those of the page's text. Raises `unpatchable`
/// where no font shows a letter.
void sourcedTextWorks(PatchTools& tools, const BaseContent& base, const PaintedArt& was,
                      const EditedObject& is, const ArtDifference& difference);

/// Writes text that the page does not have, in the space of the artboard. Raises as above.
void newTextWorks(PatchTools& tools, const EditedObject& is);

/// Clips with the text that is the clip of a group, in the space of the artboard. Raises as above.
void textClipWorks(PatchTools& tools, const EditedArtwork& artwork, const EditedGroup& group);

/// Shows again what glyph procedures drew, moved on the artboard; the CTM must have an inverse.
void movedGlyphsWorks(PatchTools& tools, const PaintedArt& was, const RealMatrix& movement);

/// The letters of it alone, within a text object: typed, or the page's own in another place.
void lettersWorks(PatchTools& tools, const BaseContent& base, const PaintedArt& was,
                  const EditedObject& is, const ArtDifference& difference);

} // namespace corvane
