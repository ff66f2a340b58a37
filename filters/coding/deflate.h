// Deflating data (RFC 1950 and 1951) over zlib, for streams that are written.
#pragma once

#include "filters/filter.h"

#include <string>
#include <string_view>

namespace corvane {

/// Deflates what is written into the filter below; unlinking ends the data. Reading raises `io`, no
/// memory for zlib `memory`.
FilterOwner setupDeflate();
/// The same for pixels behind PNG predictors: with less effort, twice as fast and a fiftieth
/// longer.
FilterOwner setupPixelDeflate();

/// The text deflated as a whole.
std::string deflated(std::string_view text);

} // namespace corvane
