// Annotations of the artwork, which a save leaves as they are.
#pragma once

#include "writer/patch/base/base_reading.h"
#include "writer/patch/base/edited_artwork.h"

namespace corvane {

/// Tells the host of each annotation that the artwork has otherwise than the file. If there is one,
/// raises `annotationChanged`, unless the host insists. An annotation that the file does not have
/// any more is passed over.
void refuseChangedAnnotations(const BaseReading& base, const EditedArtwork& artwork);

} // namespace corvane
