// Device spaces in what a save writes, where the page has default colour spaces (PDF Reference,
// 4.5.4): device colours would look otherwise there than the artwork has them.
//
// Readers differ in which contents inherit default spaces. So all that is written uses spaces of
// its own as soon as any content of the page has a default: gray and RGB of a screen's profile,
// and inks that are mixed in RGB as artwork shows them.
#pragma once

#include "reader/document/cache.h"
#include "reader/paint/colour_space.h"

#include <cstdint>
#include <string>

namespace corvane {

/// Forgets what was named; a save begins.
void openPlainSpaces();

/// The number of the space in which colours of a device space look as the artwork has them; 0: the
/// device space does. The objects that it needs get their numbers now.
std::int32_t plainSpace(DocumentCache& cache, ColourSpace::Kind device);

/// The same as the text of an object: "/DeviceRGB", or "12 0 R".
std::string plainSpaceText(DocumentCache& cache, ColourSpace::Kind device);

/// Writes what was named to the cache's output.
void writePlainSpaces(DocumentCache& cache);

} // namespace corvane
