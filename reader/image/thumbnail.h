// The small picture of itself that a page may carry (PDF Reference, 8.2.3).
#pragma once

#include "reader/document/cache.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

struct Thumbnail {
    std::int32_t width = 0; ///< pixels; 0: there is none
    std::int32_t height = 0;
    std::vector<std::byte> pixels; ///< 0, red, green and blue of each, top row first
};

/// Whether the page in use names one.
bool namesThumbnail(DocumentCache& cache);

/// Of the page in use. None where it is no image of a device's colours, larger than a chooser
/// shows, or cut short.
Thumbnail thumbCache(DocumentCache& cache);

} // namespace corvane
