// Images of a page as EPSF files.
#pragma once

#include "host/artwork.h"
#include "host/parameters.h"
#include "objects/object.h"
#include "reader/document/cache.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace corvane::classic {

/// The folder for a document's files, which a person chooses once.
class EpsfFolder {
public:
    /// The working directory. Asks the first time; where the person cancels, it raises `cancelled`.
    std::int16_t use();

private:
    std::int16_t volume_ = 0;
};

/// A file that was written; without one the width is 0.
struct EpsfFile {
    FileSpecification location;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// Writes an image, a stream or the dictionary of an inline image and its data, to a new file with
/// preview and icons. A mask has the colour `fill`. Where anything is raised there is no file.
/// Rows that the data lack are empty, with a warning.
EpsfFile writeEpsf(DocumentCache& cache, EpsfFolder& folder, const Object& object,
                   std::optional<std::span<const std::byte>> data, const Colour& fill);

} // namespace corvane::classic
