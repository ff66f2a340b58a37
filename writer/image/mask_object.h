// The parts of image objects of the original profile.
#pragma once

#include "objects/mask.h"
#include "reader/document/cache.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// "/Key ", the value and a line end.
void maskEntry(Filter& output, std::string_view key, std::int32_t value);

/// Begins the object: its dictionary up to the bits of a sample.
void beginMask(DocumentCache& cache, const Mask& mask, std::int32_t width, std::int32_t height,
               std::int32_t bits);

/// Ends a stream object whose dictionary is open: the bytes in base-85.
void storeMask(DocumentCache& cache, std::span<const std::byte> bytes);

} // namespace corvane
