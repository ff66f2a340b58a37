// Where the runs of the artwork's lines begin.
#pragma once

#include "writer/patch/base/base_content.h"
#include "writer/patch/base/edited_artwork.h"
#include "writer/text/set_text.h"

namespace corvane {

/// Sets the start of each run, also of those that clip: those whose letters are as they were are as
/// long as they are on the page. All others are laid out in `text`, which is not finished yet, and
/// get a number there.
void layOutText(const BaseContent& base, EditedArtwork& artwork, SetText& text);

} // namespace corvane
