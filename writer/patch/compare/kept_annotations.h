// Annotations of the artwork, which a save leaves as they are.
#pragma once

#include "writer/patch/base/base_reading.h"
#include "writer/patch/compare/unmarked_annotations.h"

namespace corvane {

/// Tells the host of each annotation that the artwork names and has otherwise than the file;
/// whether there is one. An annotation that the file does not have any more is passed over. Where
/// the artwork names none, one that is not among `unmarked` counts if something of what is `added`
/// to the page lies where it is: that may be the annotation, changed by an editor.
bool tellChangedAnnotations(DocumentCache& cache, const BaseReading& base,
                            const ChargedList<Art>& named, const ChargedList<Art>& added,
                            const UnmarkedAnnotations& unmarked);

} // namespace corvane
