// What the page has and the artwork does not: much of it may be an editor's weakness.
#pragma once

#include "writer/patch/base/edited_artwork.h"
#include "writer/patch/compare/matching.h"

namespace corvane {

/// Raises `artworkMissing` where more than one object is missing, and that is half of the page or
/// all of a kind; the host is told how much. Not where the host says that this does not matter.
/// What forms hold counts, not the forms; what came out of a form, with its source, is there.
void refuseMissing(const BaseContents& contents, const Matching& matching,
                   const EditedArtwork& artwork, const EditedForms& forms);

} // namespace corvane
