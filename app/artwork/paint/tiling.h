// A pattern drawn by handing out copies of its tile.
#pragma once

#include "app/artwork/document.h"
#include "host/artwork.h"
#include "host/matrix.h"

#include <cstdint>
#include <vector>

namespace corvane {

/// Around all points of a path, control points included. All 0 where there are none.
Rect pathBounds(const Document&, Art path);
/// The fill that a path is drawn with: its own, or that of the compound path it is in.
Colour fillOf(const Document&, Art path);

/// The tiles that are out, and how many there were: patterns may use patterns.
class Tiling {
public:
    /// Cells of one call, and what all calls together may copy: cells, pieces of art and anchors.
    /// A page of points covered with cells of 4 points takes 30,000 cells.
    static constexpr std::int64_t mostCells = 200'000;
    static constexpr std::int64_t mostWork = 20'000'000;
    /// Patterns within patterns: drawing them recurses.
    static constexpr std::size_t deepest = 16;

    /// Hands out the tile of each cell of the path's pattern that meets the path's bounds, row by
    /// row from the bottom, cut at the cell where it leaves it. The art is gone when the procedure
    /// has returned. Throws `ArtworkError` past a limit, before the first tile.
    void tile(Document&, Art path, TileProcedure);

    /// Where the paint of a path lies: the art of a tile is moved to its cell, and its gradients
    /// and patterns must move with it.
    RealMatrix placement(const Document&, Art path) const;

private:
    friend class PlacedTile;

    struct Placed {
        Art top = Art::null;
        RealMatrix placement;
    };

    std::vector<Placed> placed_;
    std::int64_t work_ = 0;
};

} // namespace corvane
