// The objects of the fonts that the art walk met. The standard fonts are named, others described.
#pragma once

#include "objects/family.h"
#include "reader/document/cache.h"

namespace corvane {

/// Writes the entry of a "Font" dictionary.
void referFamily(DocumentCache& cache, const Family& family);

/// Writes the font, and where it is none of the 14 standard ones its widths and its descriptor.
/// Raises `structure` where the host does not list it, `fontFamily` where nothing is known of its
/// shapes, and `type` for an unknown technology or encoding.
void writeFamily(DocumentCache& cache, const Family& family);

} // namespace corvane
