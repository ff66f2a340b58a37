// The text around the picture of an EPSF file (Document Structuring Conventions, version 3.0).
#pragma once

#include "filters/filter.h"
#include "host/artwork.h"

#include <cstdint>
#include <string_view>

namespace corvane::classic {

struct EpsfHead {
    std::int32_t columns = 0;
    std::int32_t rows = 0;
    bool isMask = false; ///< else four channels of 8 bits: red, green, blue and one without meaning
    Colour fill;         ///< of a mask
    std::string_view title;
};

/// All up to the first byte of the picture. A fill that is neither gray nor process colour raises
/// `type`.
void beginEPSFoutput(Filter& stream, const EpsfHead& head);
/// All behind it.
void endEPSFoutput(Filter& stream);

} // namespace corvane::classic
