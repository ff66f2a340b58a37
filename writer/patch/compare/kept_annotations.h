// Annotations of the artwork, which a save leaves as they are.
#pragma once

#include "writer/patch/base/base_reading.h"
#include "writer/patch/base/edited_artwork.h"
#include "writer/patch/compare/matching.h"
#include "writer/patch/compare/unmarked_annotations.h"

namespace corvane {

/// Tells the host of each annotation that the artwork has otherwise than the file. If there is one,
/// raises `annotationChanged`, unless the host insists. An annotation that the file does not have
/// any more is passed over. Where the artwork names none, one that is not among `unmarked` counts
/// if something new lies where it is: that may be the annotation, changed by an editor.
void refuseChangedAnnotations(const BaseReading& base, const EditedArtwork& artwork,
                              const Matching& matching, const UnmarkedAnnotations& unmarked);

} // namespace corvane
