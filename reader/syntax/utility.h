// Common sequences of operand-stack work, and lines of text.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// array -> its element at `index`; the array, and with `resolve` the element, resolved.
void indexUtility(DocumentCache& cache, std::int32_t index, bool resolve);
/// dictionary -> key and value of its pair at `index`; the value resolved with `resolve`.
void entryUtility(DocumentCache& cache, std::int32_t index, bool resolve);
/// dictionary -> its value under `key`, null where it has none; resolved with `resolve`.
void lookupUtility(DocumentCache& cache, std::string_view key, bool resolve);
/// dictionary -> its value under `longKey`, or, where that is null, under `shortKey`.
void abbrevUtility(DocumentCache& cache, std::string_view longKey, std::string_view shortKey);

/// A platform rectangle, in whole points.
struct PixelRect {
    std::int16_t top = 0;
    std::int16_t left = 0;
    std::int16_t bottom = 0;
    std::int16_t right = 0;
};
/// Pops an array of four numbers llx lly urx ury, taken as integers.
PixelRect rectUtility(DocumentCache& cache);

/// Reads one line, without its end, into `line` and a terminator behind it; false at the end of the
/// data. A carriage return and a line feed are two ends. Longer lines come in pieces.
bool readToLine(std::span<char, 256> line, Filter& stream);

} // namespace corvane
