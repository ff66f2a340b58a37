// Patterns handed out tile by tile through the table.
#include "tests/app/artwork/host_table.h"

#include "app/artwork/paint/paint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace corvane {
namespace {

Fixed fixed(double value) {
    return static_cast<Fixed>(std::lround(value * fixedOne));
}
Point at(double x, double y) {
    return {fixed(x), fixed(y)};
}

/// What the procedure, which carries no context, does.
std::function<void(Art)> take;

void takeTile(Art tile) {
    take(tile);
}

struct TilingTest : testing::Test {
    Art layerArt() const { return document.layerArt(document.firstLayer()); }

    Art box(Art in, double left, double bottom, double right, double top) {
        const Art path = document.make(ArtKind::path, Placement::inside, in);
        const std::vector<Point> corners{at(left, bottom), at(right, bottom), at(right, top),
                                         at(left, top)};
        document.setSegmentCount(path, 4);
        for (std::int32_t i = 0; i < 4; ++i) {
            const Point corner = corners[static_cast<std::size_t>(i)];
            const Segment segment{corner, corner, corner, 0};
            document.writeSegments(path, i, {&segment, 1});
        }
        document.setClosed(path, true);
        return path;
    }

    void paint(Art path, ColourKind kind, PaintSource source) {
        PathStyle style = document.style(path);
        style.fillPaint = 1;
        style.fill.kind = kind;
        style.fill.source = source;
        document.setStyle(path, style);
    }

    /// A cell of 10 by 5 with its corner at 0,0 that holds a box of 4 by 3 in its corner.
    Pattern pattern() {
        Pattern made;
        made.tile = document.makeArtwork();
        box(made.tile, 0, 0, 4, 3);
        made.right = made.stepX = 10;
        made.top = made.stepY = 5;
        return made;
    }

    /// All that is left of the art, however it is hidden.
    std::vector<Art> artInLayer() const {
        std::vector<Art> all;
        for (Art art = document.firstChild(layerArt()); art != Art::null;
             art = document.nextSibling(art)) {
            all.push_back(art);
        }
        return all;
    }

    /// The path that the copy in a tile begins with; the group in front of it clips.
    Art firstPath(Art tile) const {
        Art art = document.lastChild(tile);
        while (document.kind(art) != ArtKind::path) {
            art = document.firstChild(art);
        }
        return art;
    }

    std::vector<Point> cornersOfTiles(Art path) {
        std::vector<Point> corners;
        take = [&](Art tile) {
            EXPECT_FALSE(document.clipped(tile));
            corners.push_back(document.segments(firstPath(tile))[0].anchor);
        };
        EXPECT_EQ(host(slot::tilePattern, path, takeTile), HostError::none) << host.scope.failure();
        return corners;
    }

    HostTable host;
    Document& document = host.document;
};

TEST_F(TilingTest, cellsThatMeetThePathAreHandedOutRowByRow) {
    const Art path = box(layerArt(), 12, -3, 29, 4);
    paint(path, ColourKind::pattern, document.addPattern(pattern()));
    EXPECT_EQ(cornersOfTiles(path), (std::vector{at(10, -5), at(20, -5), at(10, 0), at(20, 0)}));
}

TEST_F(TilingTest, matrixAndStepPlaceTheCells) {
    Pattern gaps = pattern();
    gaps.stepX = 12;
    gaps.stepY = 20;
    gaps.matrix = {0, 2, -2, 0, 100, 50}; // a quarter turn and twice the size
    const Art path = box(layerArt(), 50, 51, 101, 99);
    paint(path, ColourKind::pattern, document.addPattern(gaps));
    EXPECT_EQ(cornersOfTiles(path), (std::vector{at(100, 50), at(100, 74), at(100, 98), at(60, 50),
                                                 at(60, 74), at(60, 98)}));

    Pattern turned = pattern();
    turned.matrix = {0.6, 0.8, -0.8, 0.6, 0, 0};
    const Art small = box(layerArt(), -1, 1, 1, 9);
    paint(small, ColourKind::pattern, document.addPattern(turned));
    EXPECT_EQ(cornersOfTiles(small), (std::vector{at(4, -3), at(0, 0), at(-4, 3)}));

    Pattern nothing = pattern();
    nothing.matrix = {1, 1, 1, 1, 0, 0};
    paint(small, ColourKind::pattern, document.addPattern(nothing));
    EXPECT_TRUE(cornersOfTiles(small).empty());
}

TEST_F(TilingTest, whatLeavesTheCellIsCutAtIt) {
    Pattern cut = pattern();
    box(cut.tile, 8, 2, 12, 3);
    cut.matrix = {1, 0, 1, 1, 0, 0};
    const Art path = box(layerArt(), 12, 1, 13, 2);
    paint(path, ColourKind::pattern, document.addPattern(cut));
    int tiles = 0;
    take = [&](Art tile) {
        ++tiles;
        EXPECT_TRUE(document.clipped(tile));
        const Art clip = document.firstChild(tile);
        EXPECT_EQ(document.style(clip).clip, 1);
        EXPECT_TRUE(document.closed(clip));
        const Segments outline = document.segments(clip);
        ASSERT_EQ(outline.size(), 4);
        EXPECT_EQ(outline[0].anchor, at(10, 0));
        EXPECT_EQ(outline[2].anchor, at(25, 5));
    };
    EXPECT_EQ(host(slot::tilePattern, path, takeTile), HostError::none);
    EXPECT_EQ(tiles, 1);
}

TEST_F(TilingTest, strokesThatLeaveTheCellAreCutAndScaled) {
    Pattern lines = pattern();
    const Art line = box(lines.tile, 2, 1, 8, 4);
    PathStyle style;
    style.strokePaint = 1;
    style.join = 2;
    style.lineWidth = fixed(1.4);
    style.dashCount = 2;
    style.dash[0] = fixed(3);
    style.dash[1] = 1;
    document.setStyle(line, style);
    lines.matrix = {4, 0, 0, 0.0625, 0, 0}; // half in the mean
    const Art path = box(layerArt(), 1, 0.01, 2, 0.02);
    paint(path, ColourKind::pattern, document.addPattern(lines));
    take = [&](Art tile) {
        EXPECT_FALSE(document.clipped(tile));
        const PathStyle& seen = document.style(firstPath(tile));
        EXPECT_EQ(seen.lineWidth, fixed(0.7));
        EXPECT_EQ(seen.dash[0], fixed(1.5));
        EXPECT_EQ(seen.dash[1], 1);
    };
    EXPECT_EQ(host(slot::tilePattern, path, takeTile), HostError::none);

    style.lineWidth = fixed(1.5);
    document.setStyle(line, style);
    take = [&](Art tile) { EXPECT_TRUE(document.clipped(tile)); };
    EXPECT_EQ(host(slot::tilePattern, path, takeTile), HostError::none);
}

/// Nothing is left of the tiles, not even where the procedure spoils them or calls fail.
TEST_F(TilingTest, tilesLeaveNoTrace) {
    const Art path = box(layerArt(), 0, 0, 35, 20);
    const Pattern used = pattern();
    paint(path, ColourKind::pattern, document.addPattern(used));
    cornersOfTiles(path);
    const std::vector<Art> before = artInLayer();
    const std::int64_t bytes = document.budget().used();
    Art last{};
    take = [&](Art tile) {
        EXPECT_EQ(host(slot::disposeArt, tile), HostError::failed);
        EXPECT_EQ(host(slot::disposeArt, firstPath(tile)), HostError::none);
        last = tile;
    };
    for (int round = 0; round < 50; ++round) {
        EXPECT_EQ(host(slot::tilePattern, path, takeTile), HostError::none);
    }
    EXPECT_EQ(artInLayer(), before);
    EXPECT_EQ(document.budget().used(), bytes);
    EXPECT_THROW(document.kind(last), ArtworkError);
    EXPECT_EQ(document.segments(document.firstChild(used.tile))[2].anchor, at(4, 3));

    EXPECT_EQ(host(slot::tilePattern, path, nullptr), HostError::failed);
    EXPECT_EQ(host(slot::tilePattern, Art::null, takeTile), HostError::failed);
}

/// Gradients and patterns in a tile are drawn where the tile is.
TEST_F(TilingTest, paintInsideATileMovesWithIt) {
    Gradient gradient;
    gradient.x2 = 4;
    gradient.stops = {{0, {}}, {1, {}}};
    gradient.stops[1].colour.component[0] = 0;
    const Pattern inner = pattern();
    const PaintSource small = document.addPattern(inner);
    Pattern outer;
    outer.tile = document.makeArtwork();
    paint(box(outer.tile, 0, 0, 4, 3), ColourKind::gradient, document.addGradient(gradient));
    outer.right = outer.stepX = 10;
    outer.top = outer.stepY = 5;
    outer.matrix.tx = 100;
    const PaintSource large = document.addPattern(outer);
    const Art path = box(layerArt(), 112, 1, 113, 2);
    paint(path, ColourKind::pattern, large);

    static Fixed rightmost;
    rightmost = 0;
    DrawingProcedures draw;
    draw.setGray = [](Fixed) {};
    draw.setCMYK = [](Fixed, Fixed, Fixed, Fixed) {};
    draw.beginFill = [] {};
    draw.endFill = [] {};
    draw.lineTo = [](const Point*) {};
    draw.curveTo = [](const Point*, const Point*, const Point*) {};
    draw.moveTo = [](const Point* point) { rightmost = std::max(rightmost, point->x); };
    take = [&](Art tile) {
        EXPECT_EQ(host(slot::drawGradient, firstPath(tile), &draw), HostError::none);
    };
    EXPECT_EQ(host(slot::tilePattern, path, takeTile), HostError::none);
    // The last band starts in the last 255th of the way from 110 to 114.
    EXPECT_NEAR(rightmost / 65536.0, 114, 0.2);

    paint(document.firstChild(outer.tile), ColourKind::pattern, small);
    std::vector<Point> corners;
    bool within = false;
    take = [&](Art tile) {
        if (within) {
            corners.push_back(document.segments(firstPath(tile))[0].anchor);
            return;
        }
        within = true;
        EXPECT_EQ(host(slot::tilePattern, firstPath(tile), takeTile), HostError::none);
    };
    EXPECT_EQ(host(slot::tilePattern, path, takeTile), HostError::none);
    EXPECT_EQ(corners, (std::vector{at(110, 0)}));
}

TEST_F(TilingTest, workIsLimited) {
    const Art path = box(layerArt(), 0, 0, 10000, 10000);
    Pattern tiny = pattern();
    tiny.matrix = {0.01, 0, 0, 0.01, 0, 0};
    int tiles = 0;
    take = [&](Art) { ++tiles; };
    for (const double far : {0.0, 1e300}) {
        tiny.matrix.tx = far;
        paint(path, ColourKind::pattern, document.addPattern(tiny));
        EXPECT_EQ(host(slot::tilePattern, path, takeTile), HostError::failed);
        EXPECT_EQ(host.scope.failure(), "the cells of a pattern are too small or too many to cover "
                                        "its path: give it larger cells");
    }

    Pattern heavy = pattern();
    document.setSegmentCount(document.firstChild(heavy.tile), 1'000'000);
    paint(path, ColourKind::pattern, document.addPattern(heavy));
    EXPECT_EQ(host(slot::tilePattern, path, takeTile), HostError::failed);
    EXPECT_EQ(tiles, 0);

    // Each pattern is painted with the one before it.
    PaintSource source = document.addPattern(pattern());
    for (int depth = 0; depth < 20; ++depth) {
        Pattern around = pattern();
        paint(document.firstChild(around.tile), ColourKind::pattern, source);
        source = document.addPattern(around);
    }
    const Art small = box(layerArt(), 0, 0, 1, 1);
    paint(small, ColourKind::pattern, source);
    int depth = 0;
    HostError deepest = HostError::none;
    take = [&](Art tile) {
        ++depth;
        const HostError answer = host(slot::tilePattern, firstPath(tile), takeTile);
        deepest = answer == HostError::failed ? answer : deepest;
    };
    EXPECT_EQ(host(slot::tilePattern, small, takeTile), HostError::none);
    EXPECT_EQ(depth, 16);
    EXPECT_EQ(deepest, HostError::failed);
    EXPECT_EQ(host.scope.failure(), "patterns within patterns are nested too deeply");
}

} // namespace
} // namespace corvane
