// The data of a cross-reference stream (PDF Reference 1.5, 3.4.7) for the objects of an update.
#pragma once

#include <string>

namespace corvane {

struct SectionData {
    std::string entries; ///< in three fields: type, offset, generation; high bytes first
    std::string widths;  ///< of the fields, the narrowest that hold every entry; what W says
    std::string index;   ///< first number and count of each run of numbers; what Index says
};

/// Of the objects in the cross-reference list. The type has a byte of its own, though the widths
/// might leave it out: all objects of an update stand in the file, but some readers expect it, and
/// compressed it takes nothing.
SectionData sectionData();

} // namespace corvane
