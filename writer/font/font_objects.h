// The objects of a font that a save adds: a composite font with the codes of `Identity-H`, its
// descendant, descriptor, program, and what its codes mean (PDF Reference, 5.6 to 5.9).
#pragma once

#include "reader/document/cache.h"
#include "writer/font/new_font.h"

namespace corvane {

/// Writes them to the cache's output, under the numbers that the font has for them.
void writeFont(DocumentCache& cache, const NewFont& font);

} // namespace corvane
