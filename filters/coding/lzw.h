// The LZW filter (LZWDecode; PDF Reference, 3.3.3): codes of 9 to 12 bits, high bit first, 256
// clears the table, 257 ends the data.
//
// Reading: a full table stays as it is until it is cleared; a code that has no entry ends the data.
// Holds its table, 68 KB, and one block of the intake. Writing: begins with a clear code, and
// clears the table when it is full. Holds its table, 32 KB. The wrong direction raises `io`.
#pragma once

#include "filters/filter.h"

#include <cstdint>

namespace corvane {

enum class AdaptDirection : std::int32_t { decode = 0, encode = 1 };

/// `earlyChange`: how many codes early the width grows, when reading; writing knows 0 only. Another
/// direction than the two, or early change than 0 and 1, raises `type`.
FilterOwner setupAdapt(AdaptDirection direction, std::uint32_t earlyChange = 1);

} // namespace corvane
