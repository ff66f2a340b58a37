// The data of a cross-reference stream (PDF Reference 1.5, 3.4.7).
#pragma once

#include "writer/update/listed_objects.h"

#include <span>
#include <string>

namespace corvane {

struct SectionData {
    std::string entries; ///< in three fields, high bytes first: type, then offset and generation or
                         ///< object stream and index
    std::string widths;  ///< of the fields, the narrowest that hold every entry; what W says
    std::string index;   ///< first number and count of each run of numbers; what Index says
};

/// The objects ascend by number. The type has a byte of its own, though the widths might leave it
/// out where all objects stand in the file: some readers expect it, and compressed it takes
/// nothing.
SectionData sectionData(std::span<const ListedObject> objects);

} // namespace corvane
