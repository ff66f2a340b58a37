// Text of the artwork that does not say where it came from, known again by what it reads as and
// where it stands.
#pragma once

#include "writer/patch/base/base_content.h"
#include "writer/patch/base/edited_artwork.h"

namespace corvane {

/// Notes in `EditedObject::shown` which text of the content a line of the artwork is, where none of
/// its runs names a source: one with the same letters in the same fonts, size and place, run by
/// run, that no other text names. Of several, the first with the same paint, or the first. Where
/// `sourcesMeanIt` is not set, no source counts.
void knowText(const BaseContent& base, EditedArtwork& artwork, bool sourcesMeanIt);

} // namespace corvane
