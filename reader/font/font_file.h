// The font programs that a document embeds, and the streams beside them.
#pragma once

#include "fonts/font_program.h"
#include "reader/document/cache.h"
#include "reader/font/cmap/cmap.h"
#include "runtime/memory.h"

#include <memory>

namespace corvane {

class PredefinedCMaps;

/// A font program and what it holds of the zone's limit.
struct EmbeddedProgram {
    std::shared_ptr<const FontProgram> program; ///< null where there is none, or it cannot be read
    ZoneCharge charge;
};

/// FontFile, FontFile2 or FontFile3 of a descriptor, whatever the key says of its kind.
EmbeddedProgram readEmbeddedProgram(DocumentCache& cache, const Object& descriptor);

/// The CMap that the value of `key` is or names. Null where there is none.
std::shared_ptr<const CMap> readCMapEntry(DocumentCache& cache, const Object& font,
                                          std::string_view key);

/// The predefined CMaps that this document has read.
PredefinedCMaps& predefinedCMaps(DocumentCache& cache);

} // namespace corvane
