#include "reader/shading/tiling_pattern.h"

#include "reader/content/art.h"
#include "reader/content/inner_content.h"
#include "reader/shading/box_art.h"
#include "reader/shading/shading.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

/// Copies of a tile along one side that reach into one cell: cells whose steps are shorter lie over
/// one another, and further copies are left out.
constexpr double mostCopies = 8;

/// What 16.16 holds with room for what leaves the cell.
constexpr double farthest = 16000;

/// Sides of a cell that 16.16 holds.
constexpr double longestSide = 65536;

double stepOf(DocumentCache& cache, const Object& stream, std::string_view key, double otherwise) {
    const ObjectOwner entry = lookupObject(cache, stream, key);
    const bool isNumber = typeObject(entry.get()) == ObjectType::integer ||
                          typeObject(entry.get()) == ObjectType::fixed;
    const double step = isNumber ? std::abs(realNumber(entry.get())) : 0;
    return step > 0 ? step : otherwise;
}

/// From pattern space to the space that the tile is drawn in: its lengths are about those of the
/// artboard, so that 16.16 is as fine there.
RealMatrix tileSpace(const TilingPattern& pattern, const RealMatrix& toArt) {
    RealMatrix space;
    const double scale = meanStretch(toArt);
    constexpr double rough = 4;
    if (scale > rough || scale < 1 / rough) {
        space.a = space.d = scale;
    }
    const Box cell = spannedBox(pattern.cell, space);
    if (std::max({std::abs(cell.left), std::abs(cell.right), std::abs(cell.bottom),
                  std::abs(cell.top)}) > farthest) {
        space.tx = -cell.left;
        space.ty = -cell.bottom;
    }
    return space;
}

class Tile {
public:
    Tile(Interpreter& interpreter, const TilingPattern& pattern, const Object& stream,
         std::int32_t object, const Colour& colour)
        : interpreter_(interpreter), pattern_(pattern), stream_(stream), object_(object),
          state_(initialState()) {
        if (!pattern.isColoured) {
            state_.style.fill = colour;
            state_.style.stroke = colour;
        }
        callHost(slot::newArtwork, &art_);
    }

    /// Draws all copies that one step of the pattern shows.
    void draw(const RealMatrix& space) {
        const Box& cell = pattern_.cell;
        const auto copies = [](double side, double step) {
            return std::clamp(std::ceil(side / step - 1e-6), 1.0, mostCopies);
        };
        const double across = copies(cell.right - cell.left, pattern_.stepX);
        const double up = copies(cell.top - cell.bottom, pattern_.stepY);
        const bool isWhole = across == 1 && up == 1 && cell.right - cell.left >= pattern_.stepX &&
                             cell.top - cell.bottom >= pattern_.stepY;
        for (double row = up - 1; row >= 0; --row) {
            for (double column = across - 1; column >= 0; --column) {
                const RealMatrix shift{.tx = -column * pattern_.stepX, .ty = -row * pattern_.stepY};
                drawCopy(multiply(shift, space), !isWhole);
            }
        }
    }

    Art art() const { return art_; }

private:
    void drawCopy(const RealMatrix& matrix, bool isClipped) {
        const Box area = spannedBox(pattern_.cell, matrix);
        Art group = art_;
        if (isClipped) {
            group = newArt(ArtKind::group, Placement::inside, art_);
            const Art clip = newArt(ArtKind::path, Placement::inside, group);
            setCorners(clip, area);
            PathStyle style;
            style.clip = 1;
            callHost(slot::setPathStyle, clip, &style);
            callHost(slot::setGroupClipped, group, std::uint8_t{1});
        }
        interpreter_.progress.charge(budget::innerContentTokens);
        InnerContent content(interpreter_, object_, state_, matrix, group);
        constexpr bool inheritsDefaults = false; // readers draw a tile by itself
        const auto prepare = [&](Interpreter& interpreter) {
            interpreter.level.ignoresColour = !pattern_.isColoured;
            interpreter.level.area = area;
        };
        content.run(stream_, pattern_.resources.get(), prepare, inheritsDefaults);
        interpreter_.containers.finish();
        if (isClipped && nextSibling(firstChild(group)) == Art::null) {
            callHost(slot::disposeArt, group); // nothing but the clip
        }
    }

    Interpreter& interpreter_;
    const TilingPattern& pattern_;
    const Object& stream_;
    std::int32_t object_;
    GraphicsState state_;
    Art art_ = Art::null;
};

} // namespace

std::optional<TilingPattern> readTiling(DocumentCache& cache, const Object& stream) {
    if (typeObject(stream) != ObjectType::stream) {
        return std::nullopt;
    }
    const std::optional<Box> cell = rectangleEntry(cache, stream, "BBox");
    if (!cell || !(cell->left < cell->right && cell->bottom < cell->top)) {
        return std::nullopt;
    }
    constexpr std::int32_t uncoloured = 2;
    TilingPattern pattern{.isColoured = integerEntry(cache, stream, "PaintType") != uncoloured,
                          .cell = *cell,
                          .stepX = stepOf(cache, stream, "XStep", cell->right - cell->left),
                          .stepY = stepOf(cache, stream, "YStep", cell->top - cell->bottom),
                          .matrix = matrixEntry(cache, stream, "Matrix"),
                          .resources = lookupObject(cache, stream, "Resources")};
    return pattern;
}

std::optional<PaintSource> drawTiling(Interpreter& interpreter, const TilingPattern& pattern,
                                      const Object& stream, std::int32_t object,
                                      const RealMatrix& base, const Colour& colour) {
    const RealMatrix toArt = multiply(pattern.matrix, base);
    const RealMatrix space = tileSpace(pattern, toArt);
    const std::optional<RealMatrix> back = inverse(space);
    const Box cell = spannedBox(pattern.cell, space);
    if (!inverse(toArt) || !back || !InnerContent::mayEnter(interpreter, object) ||
        !(cell.right - cell.left <= longestSide && cell.top - cell.bottom <= longestSide)) {
        return std::nullopt;
    }
    Tile tile(interpreter, pattern, stream, object, colour);
    tile.draw(space);
    const double stepX = pattern.stepX * space.a;
    const double stepY = pattern.stepY * space.d;
    const PatternFacts facts{.tile = tile.art(),
                             .left = cell.left,
                             .bottom = cell.bottom,
                             .right = std::min(cell.right, cell.left + stepX),
                             .top = std::min(cell.top, cell.bottom + stepY),
                             .stepX = stepX,
                             .stepY = stepY,
                             .matrix = withoutSignedZeros(multiply(*back, toArt))};
    PaintSource source = PaintSource::null;
    callHost(slot::addPattern, &facts, &source);
    return source;
}

} // namespace corvane
