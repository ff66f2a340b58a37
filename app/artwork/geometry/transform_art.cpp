#include "app/artwork/geometry/transform_art.h"

#include "app/artwork/geometry/geometry.h"
#include "app/artwork/geometry/path_walk.h"

#include <algorithm>
#include <array>
#include <span>

namespace corvane {

namespace {

void transformSegments(Document& document, Art path, const RealMatrix& map) {
    constexpr std::int32_t blockSize = 256;
    std::array<Segment, blockSize> block;
    const std::int32_t count = document.segments(path).size();
    for (std::int32_t first = 0; first < count; first += blockSize) {
        const std::span<Segment> some(block.data(),
                                      static_cast<std::size_t>(std::min(blockSize, count - first)));
        document.readSegments(path, first, some);
        transform(some, map);
        document.writeSegments(path, first, some);
    }
}

void transformPlaced(Document& document, Art art, const RealMatrix& map) {
    PlacedImage placed = document.placedImage(art);
    if (placed.image != Image::null) {
        placed.matrix = fixedMatrix(multiply(realMatrix(placed.matrix), map));
        document.setPlacedImage(art, placed);
    }
}

} // namespace

void transformArt(Document& document, Art top, const RealMatrix& map) {
    const double scale = meanStretch(map);
    for (Art art = top; art != Art::null; art = following(document, art, top)) {
        switch (document.kind(art)) {
        case ArtKind::path:
            transformSegments(document, art, map);
            if (scale != 1) {
                document.setStyle(art, scaled(document.style(art), scale));
            }
            break;
        case ArtKind::text:
            document.transformText(art, map);
            break;
        case ArtKind::placed:
            transformPlaced(document, art, map);
            break;
        case ArtKind::group:
        case ArtKind::compound:
        case ArtKind::unknown:
            break; // nothing of their own has a place
        }
    }
}

} // namespace corvane
