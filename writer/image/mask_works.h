// Images of the original profile as objects: what the files become that placed art is linked to.
//
// Three ways are tried in turn. The samples that an EPSF file holds are coded anew; without them
// its preview is drawn; without that an 8 by 8 black square stands for it.
#pragma once

#include "objects/mask.h"
#include "reader/document/cache.h"

namespace corvane {

/// Writes the entry of an "XObject" dictionary.
void referMask(DocumentCache& cache, const Mask& mask);

/// Writes the image. Raises `host` where the host does not know the file, `io` where it cannot be
/// read or ends early, and what writing raises.
void writeMask(DocumentCache& cache, const Mask& mask);

// Each of the ways; false, and nothing written, where it is none for this file.

bool photoMask(DocumentCache& cache, const Mask& mask);
bool quickMask(DocumentCache& cache, const Mask& mask);
bool emptyMask(DocumentCache& cache, const Mask& mask);

} // namespace corvane
