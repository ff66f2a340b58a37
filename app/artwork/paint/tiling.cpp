#include "app/artwork/paint/tiling.h"

#include "app/artwork/geometry/geometry.h"
#include "app/artwork/geometry/path_walk.h"
#include "app/artwork/geometry/transform_art.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace corvane {

namespace {

struct Frame {
    double left = std::numeric_limits<double>::infinity();
    double bottom = left;
    double right = -left;
    double top = -left;

    void add(RealPoint at) {
        left = std::min(left, at.x);
        bottom = std::min(bottom, at.y);
        right = std::max(right, at.x);
        top = std::max(top, at.y);
    }
    bool meets(const Frame& other) const {
        return left < other.right && other.left < right && bottom < other.top && other.bottom < top;
    }
    std::array<RealPoint, 4> corners() const {
        return {{{left, bottom}, {right, bottom}, {right, top}, {left, top}}};
    }
};

Frame frameOf(const Rect& rect) {
    const RealPoint low = realPoint({rect.left, rect.bottom});
    const RealPoint high = realPoint({rect.right, rect.top});
    return {low.x, low.y, high.x, high.y};
}

Frame mapped(const Frame& box, const RealMatrix& map) {
    Frame around;
    for (const RealPoint corner : box.corners()) {
        around.add(transform(map, corner));
    }
    return around;
}

/// What one copy of a tile takes, and whether it must be cut.
struct TileFacts {
    std::int64_t work = 1;
    bool empty = true;
    bool leavesCell = false;
};

/// How far the stroke of a path reaches at most, points.
double strokeReach(const PathStyle& style) {
    constexpr double squareCap = 1.4143;
    const double miter = style.join == 0 ? static_cast<double>(style.miterLimit) / fixedOne : 0;
    const double half = std::abs(static_cast<double>(style.lineWidth)) / fixedOne / 2;
    return style.strokePaint == 0 ? 0 : half * std::max(squareCap, miter);
}

void addBox(TileFacts& facts, const Frame& box, double reach, const Pattern& pattern) {
    facts.empty = false;
    facts.leavesCell = facts.leavesCell || box.left - reach < pattern.left ||
                       box.bottom - reach < pattern.bottom || box.right + reach > pattern.right ||
                       box.top + reach > pattern.top;
}

void addPath(TileFacts& facts, const Document& document, Art path, const Pattern& pattern) {
    facts.work += document.segments(path).size();
    addBox(facts, frameOf(pathBounds(document, path)), strokeReach(document.style(path)), pattern);
}

void addImage(TileFacts& facts, const PlacedImage& placed, const Pattern& pattern) {
    if (placed.image != Image::null) {
        addBox(facts, mapped({0, 0, 1, 1}, realMatrix(placed.matrix)), 0, pattern);
    }
}

TileFacts factsOf(const Document& document, const Pattern& pattern) {
    TileFacts facts;
    for (Art art = pattern.tile; art != Art::null; art = following(document, art, pattern.tile)) {
        ++facts.work;
        switch (document.kind(art)) {
        case ArtKind::path:
            addPath(facts, document, art, pattern);
            break;
        case ArtKind::text:
            facts.leavesCell =
                true; // for all that is known: letters are measured by who draws them
            break;
        case ArtKind::placed:
            addImage(facts, document.placedImage(art), pattern);
            break;
        case ArtKind::group:
        case ArtKind::compound:
        case ArtKind::unknown:
            break; // nothing of their own is drawn
        }
    }
    return facts;
}

/// The cells that may meet `around`, in pattern space.
struct CellRange {
    double column; ///< of the first cell, counted from the pattern's own
    double row;
    double columns;
    double rows;

    CellRange(const Pattern& pattern, const Frame& around)
        : column(std::floor((around.left - pattern.right) / pattern.stepX)),
          row(std::floor((around.bottom - pattern.top) / pattern.stepY)),
          columns(std::ceil((around.right - pattern.left) / pattern.stepX) - column + 1),
          rows(std::ceil((around.top - pattern.bottom) / pattern.stepY) - row + 1) {}

    /// Not a number where the cells cannot be counted.
    double count() const { return columns * rows; }
};

[[noreturn]] void refuse() {
    throw ArtworkError("the cells of a pattern are too small or too many to cover its path: give "
                       "it larger cells");
}

} // namespace

/// A copy of a tile that is out.
class PlacedTile {
public:
    PlacedTile(Tiling& tiling, Document& document, const RealMatrix& placement)
        : tiling_(tiling), document_(document), top_(document.makeArtwork()) {
        try {
            tiling_.placed_.push_back({top_, placement});
        } catch (...) {
            document_.disposeArtwork(top_);
            throw;
        }
    }
    ~PlacedTile() {
        tiling_.placed_.pop_back();
        try {
            document_.disposeArtwork(top_);
        } catch (...) {
            // Whoever it was shown to made a pattern of it, to which it belongs now.
        }
    }
    PlacedTile(const PlacedTile&) = delete;
    PlacedTile& operator=(const PlacedTile&) = delete;

    Art top() const { return top_; }

    void fill(const Pattern& pattern, bool cut) {
        const RealMatrix& placement = tiling_.placed_.back().placement;
        const Art copy = document_.duplicate(pattern.tile, Placement::inside, top_);
        transformArt(document_, copy, placement);
        if (cut) {
            addClip({pattern.left, pattern.bottom, pattern.right, pattern.top}, placement);
        }
    }

private:
    void addClip(const Frame& cell, const RealMatrix& placement) {
        std::array<Segment, 4> outline;
        std::ranges::transform(cell.corners(), outline.begin(), [&](RealPoint corner) {
            const Point at = fixedPoint(transform(placement, corner));
            return Segment{at, at, at, 0};
        });
        const Art clip = document_.make(ArtKind::path, Placement::inside, top_);
        document_.setSegmentCount(clip, static_cast<std::int32_t>(outline.size()));
        document_.writeSegments(clip, 0, outline);
        document_.setClosed(clip, true);
        PathStyle style;
        style.clip = 1;
        document_.setStyle(clip, style);
        document_.setClipped(top_, true);
    }

    Tiling& tiling_;
    Document& document_;
    Art top_;
};

Rect pathBounds(const Document& document, Art path) {
    const Segments segments = document.segments(path);
    if (segments.empty()) {
        return {};
    }
    const Point start = segments[0].anchor;
    Rect bounds{start.x, start.y, start.x, start.y};
    for (const Segment& segment : segments) {
        for (const Point point : {segment.anchor, segment.in, segment.out}) {
            bounds.left = std::min(bounds.left, point.x);
            bounds.bottom = std::min(bounds.bottom, point.y);
            bounds.right = std::max(bounds.right, point.x);
            bounds.top = std::max(bounds.top, point.y);
        }
    }
    return bounds;
}

Colour fillOf(const Document& document, Art path) {
    const Art parent = document.parent(path);
    const bool compound = parent != Art::null && document.kind(parent) == ArtKind::compound;
    return document.style(compound ? document.firstChild(parent) : path).fill;
}

RealMatrix Tiling::placement(const Document& document, Art path) const {
    const Art top = document.top(path);
    const auto found = std::ranges::find(placed_, top, &Placed::top);
    return found != placed_.end() ? found->placement : RealMatrix{};
}

void Tiling::tile(Document& document, Art path, TileProcedure procedure) {
    const Pattern pattern = document.pattern(fillOf(document, path).source);
    const RealMatrix matrix = multiply(pattern.matrix, placement(document, path));
    const Frame bounds = frameOf(pathBounds(document, path));
    const std::optional<RealMatrix> back = inverse(matrix);
    const TileFacts facts = factsOf(document, pattern);
    if (!back || facts.empty) {
        return;
    }
    if (placed_.size() >= deepest) {
        throw ArtworkError("patterns within patterns are nested too deeply");
    }
    const Frame around = mapped(bounds, *back);
    const CellRange range(pattern, around);
    if (!(range.count() <= mostCells) ||
        static_cast<std::int64_t>(range.count()) > (mostWork - work_) / facts.work) {
        refuse();
    }
    const Frame cell{pattern.left, pattern.bottom, pattern.right, pattern.top};
    const auto rows = static_cast<std::int64_t>(range.rows);
    const auto columns = static_cast<std::int64_t>(range.columns);
    for (std::int64_t row = 0; row < rows; ++row) {
        for (std::int64_t column = 0; column < columns; ++column) {
            const RealMatrix shift{1,
                                   0,
                                   0,
                                   1,
                                   (range.column + static_cast<double>(column)) * pattern.stepX,
                                   (range.row + static_cast<double>(row)) * pattern.stepY};
            const RealMatrix map = multiply(shift, matrix);
            if (!mapped(cell, map).meets(bounds) || !mapped(cell, shift).meets(around)) {
                continue;
            }
            work_ += facts.work;
            PlacedTile tile(*this, document, map);
            tile.fill(pattern, facts.leavesCell);
            procedure(tile.top());
        }
    }
}

} // namespace corvane
