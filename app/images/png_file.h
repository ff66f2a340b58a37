// Reads PNG: what it shows, and its samples in the form of host/image.h.
#pragma once

#include "app/artwork/images/image_store.h"
#include "app/images/byte_source.h"
#include "host/image.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace corvane {

/// Facts whose palette is kept beside them.
struct ReadFacts {
    ImageFacts facts;                  ///< without palette
    std::vector<std::uint8_t> palette; ///< red, green, blue, alpha
};

/// A colour key becomes alpha; a palette has as many entries as numbers of less than 8 bits can
/// name, the ones that the file lacks being black. Throws `ImageError` where the file is damaged in
/// front of its samples, or larger than the budget.
ReadFacts readPngFacts(const ByteSource& file);

/// The samples of a file: row by row, of an interlaced file all at once. `known` and `digest` say
/// what it was when it was looked at; where it is another one by now, opening it or reading its
/// last row throws `ImageError`.
std::unique_ptr<ImageSource> openPng(std::unique_ptr<ByteSource> file, const ReadFacts& known,
                                     std::uint64_t digest);

} // namespace corvane
