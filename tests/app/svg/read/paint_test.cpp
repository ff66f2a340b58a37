#include "app/svg/paint/colour.h"
#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace corvane::test {
namespace {

const Gradient* gradientOf(const Document& document, Art path) {
    const Colour& fill = document.style(path).fill;
    return fill.kind == ColourKind::gradient ? &document.gradient(fill.source) : nullptr;
}

Art onlyShape(const Document& document) {
    return document.firstChild(document.layerArt(document.firstLayer()));
}

/// Where a point of the paint's own space lies on the page, counted from the upper left.
std::pair<double, double> onPage(const RealMatrix& matrix, double x, double y) {
    return {matrix.a * x + matrix.c * y + matrix.tx,
            200 - (matrix.b * x + matrix.d * y + matrix.ty)};
}

TEST(RoundTrip, GradientsPatternsInksAndNotes) {
    for (const bool moved : {false, true}) {
        ArtBuilder art;
        Document& document = art.document;
        if (moved) {
            document.page().setBounds({fixed(-10.7), fixed(782.53), fixed(602), fixed(9.25)});
            document.page().setArtboard({fixed(700), fixed(800)});
        }
        Gradient gradient{true, .1, 2, 0, 30.25, 41.7, 55, {.9, .1, -.3, 1.1, 7.77, 300.123},
                          {},   {}};
        gradient.spread = GradientSpread::reflect;
        Colour ink{ColourKind::process, {fixed(.1), fixed(.2), fixed(.3), fixed(.4)}};
        gradient.stops = {{0, {}}, {.25, ink}, {.25, plainColour({10, 20, 30})}, {1, {}}};
        PathStyle shaded = filled();
        shaded.fill = {ColourKind::gradient};
        shaded.fill.source = document.addGradient(gradient);
        gradient.radial = false;
        gradient.matrix = {};
        gradient.r1 = gradient.r2 = 0;
        shaded.strokePaint = 1;
        shaded.stroke = {ColourKind::gradient};
        shaded.stroke.source = document.addGradient(gradient);
        shaded.note = document.addNote(" keep <this> & that ");
        art.path(art.layerArt(), box(0, 0, 100, 100), shaded);
        const auto pattern = [&](const PathStyle& inside, double width) {
            Pattern tiles;
            tiles.tile = document.makeArtwork();
            art.path(tiles.tile, box(3.25, 4, 9.3, 8), inside);
            tiles.left = 1.3;
            tiles.bottom = -2.25;
            tiles.right = tiles.left + width;
            tiles.top = tiles.bottom + 20;
            tiles.stepX = 17.5;
            tiles.stepY = 20;
            tiles.matrix = {.7071067811865476, .5, -.5, .6123456789, 33.1234567, 44.987654321};
            PathStyle tiled = filled();
            tiled.fill = {ColourKind::pattern};
            tiled.fill.source = document.addPattern(tiles);
            return tiled;
        };
        const PathStyle inner = pattern(shaded, 17.5);
        art.path(art.layerArt(), box(20, 20, 100, 100), pattern(inner, 12));
        SpotColour sand{"Sand & <Co>", {fixed(.1), fixed(.2), fixed(.3), fixed(.1)}};
        PathStyle spot = filled();
        spot.fill = {ColourKind::custom, {fixed(.25)}};
        spot.fill.source = document.addSpotColour(sand);
        art.path(art.layerArt(), box(30, 30, 40, 40), spot);
        const std::string written = art.svg();
        const ReadArt read(written);
        EXPECT_TRUE(read.reading.ignored.empty());
        EXPECT_EQ(read.svg(), written);
        const Colour& colour = read.document.style(onlyShape(read.document)).fill;
        ASSERT_EQ(colour.kind, ColourKind::custom);
        EXPECT_EQ(colour.component[0], fixed(.25));
        EXPECT_EQ(read.document.spotColour(colour.source), sand);
    }
}

TEST(ReadPaint, GradientsOfBoxesAndPages) {
    const auto stops = "<linearGradient id='s'><stop offset='20%' stop-color='red'/>"
                       "<stop offset='.1' style='stop-color:blue'/></linearGradient>";
    const auto read = [&](const std::string& gradient) {
        return foreignSvg(stops + gradient +
                          "<g transform='translate(10 0)'>"
                          "<rect x='20' y='40' width='100' height='50' fill='url(#g)'/></g>");
    };
    const ReadArt box(read("<linearGradient id='g' href='#s'/>"));
    const Gradient* gradient =
        gradientOf(box.document, box.document.firstChild(onlyShape(box.document)));
    ASSERT_NE(gradient, nullptr);
    EXPECT_EQ(onPage(gradient->matrix, gradient->x1, gradient->y1), std::pair(30.0, 40.0));
    EXPECT_EQ(onPage(gradient->matrix, gradient->x2, gradient->y2), std::pair(130.0, 40.0));
    ASSERT_EQ(gradient->stops.size(), 2U);
    EXPECT_EQ(gradient->stops[1].offset, .2); // never less than the one before
    EXPECT_EQ(gradient->stops[1].colour, plainColour({0, 0, 255}));

    const ReadArt page(read("<radialGradient id='g' xlink:href='#s' cx='50' cy='60' r='10%' fr='2'"
                            " fx='40' spreadMethod='repeat' gradientUnits='userSpaceOnUse'"
                            " gradientTransform='scale(2)'/>"));
    gradient = gradientOf(page.document, page.document.firstChild(onlyShape(page.document)));
    ASSERT_NE(gradient, nullptr);
    EXPECT_TRUE(gradient->radial);
    EXPECT_EQ(onPage(gradient->matrix, gradient->x2, gradient->y2), std::pair(110.0, 120.0));
    EXPECT_EQ(onPage(gradient->matrix, gradient->x1, gradient->y1), std::pair(90.0, 120.0));
    EXPECT_NEAR(gradient->r2, std::hypot(300, 200) / std::sqrt(2.0) / 10, 1e-9);
    EXPECT_EQ(gradient->r1, 2);
    EXPECT_EQ(gradient->spread, GradientSpread::repeat);

    const ReadArt none(read("<linearGradient id='g' href='#g'/>"));
    EXPECT_EQ(none.ignored("circular reference"), 1);
    EXPECT_NE(none.svg().find("fill=\"none\""), std::string::npos);
}

TEST(ReadPaint, CurrentColourIsThatOfTheElementItself) {
    EXPECT_EQ(redrawn("<g color='red' fill='currentColor'><path color='blue' d='M0 0H9V9Z'/></g>"),
              "<g><path fill=\"#0000ff\" d=\"M0 0H9V9Z\"/></g>");
    const ReadArt stop(
        foreignSvg("<linearGradient id='g' color='red'><stop stop-color='currentColor'/>"
                   "</linearGradient><rect width='9' height='9' fill='url(#g)'/>"));
    const Gradient* gradient = gradientOf(stop.document, onlyShape(stop.document));
    ASSERT_NE(gradient, nullptr);
    EXPECT_EQ(gradient->stops[0].colour, plainColour({255, 0, 0}));
}

/// What is said instead of a gradient stands for one that is not there or fits no box.
TEST(ReadPaint, GradientsWithoutStopsAreNoPaint) {
    const std::string path = "<path fill='url(#g) red' d='M0 0H9V9Z'/>";
    EXPECT_EQ(redrawn("<linearGradient id='g'/>" + path), "<path fill=\"none\" d=\"M0 0H9V9Z\"/>");
    EXPECT_EQ(redrawn(path), "<path fill=\"#ff0000\" d=\"M0 0H9V9Z\"/>");
}

/// The tile's art counts from the cell's corner, unless a view box says otherwise.
/// Each rectangle of a tile is painted with the next pattern.
TEST(ReadPaint, PatternsOfTilesAreReadOnce) {
    std::string defs;
    for (int i = 0; i < 6; ++i) {
        defs += "<pattern id='p" + std::to_string(i) +
                "' patternUnits='userSpaceOnUse' width='9' height='9'>";
        for (int copy = 0; copy < 64; ++copy) {
            defs += "<rect width='5' height='5' fill='url(#p" + std::to_string(i + 1) + ")'/>";
        }
        defs += "</pattern>";
    }
    const ReadArt art(foreignSvg(defs + "<rect width='50' height='50' fill='url(#p0)'/>"));
    EXPECT_EQ(art.document.style(onlyShape(art.document)).fill.kind, ColourKind::pattern);
}

TEST(ReadPaint, PatternsPlaceTheirTiles) {
    struct Row {
        const char* pattern;
        double left, top, step; ///< of the cell, on the page
        double x, y;            ///< of the tile's square
    };
    const Row rows[] = {
        {"x='5' y='6' width='20' height='20' patternUnits='userSpaceOnUse'", 5, 6, 20, 5, 6},
        {"x='5' y='6' width='20' height='20' viewBox='5 6 20 20' patternUnits='userSpaceOnUse'", 5,
         6, 20, 0, 0},
        {"width='.2' height='.4'", 20, 40, 20, 20, 40},
        {"width='.2' height='.4' patternContentUnits='objectBoundingBox'", 20, 40, 20, 20, 40},
        {"x='.1' width='.2' height='.4' viewBox='0 0 10 10'", 30, 40, 20, 30, 40},
    };
    for (const Row& row : rows) {
        const ReadArt art(foreignSvg("<pattern id='p' " + std::string(row.pattern) +
                                     "><rect width='1' height='1'/></pattern>"
                                     "<rect x='20' y='40' width='100' height='50' "
                                     "fill='url(#p)'/>"));
        const Colour& fill = art.document.style(onlyShape(art.document)).fill;
        ASSERT_EQ(fill.kind, ColourKind::pattern) << row.pattern;
        const Pattern& pattern = art.document.pattern(fill.source);
        EXPECT_EQ(onPage(pattern.matrix, pattern.left, pattern.top), std::pair(row.left, row.top))
            << row.pattern;
        EXPECT_EQ(pattern.stepX, row.step) << row.pattern;
        const Point corner = art.document.segments(art.document.firstChild(pattern.tile))[0].anchor;
        EXPECT_EQ(onPage(pattern.matrix, double{1} * corner.x / fixedOne,
                         double{1} * corner.y / fixedOne),
                  std::pair(row.x, row.y))
            << row.pattern;
    }
    // Blanks are no tile: the art is that of the pattern that is named.
    const ReadArt blank(
        foreignSvg("<pattern id='s' width='1' height='1'><path d='M0 0H9'/></pattern>"
                   "<pattern id='p' href='#s'>\n </pattern>"
                   "<rect width='9' height='9' fill='url(#p)'/>"));
    const Colour& fill = blank.document.style(onlyShape(blank.document)).fill;
    ASSERT_EQ(fill.kind, ColourKind::pattern);
    EXPECT_NE(blank.document.firstChild(blank.document.pattern(fill.source).tile), Art::null);
    const ReadArt circle(foreignSvg("<pattern id='p' width='1' height='1'>"
                                    "<rect width='9' height='9' fill='url(#p)'/></pattern>"
                                    "<rect width='9' height='9' fill='url(#p)'/>"));
    EXPECT_EQ(circle.ignored("circular reference"), 1);
}

} // namespace
} // namespace corvane::test
