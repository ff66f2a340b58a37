// Points, segments, styles and art under a matrix.
#include "app/artwork/document.h"
#include "app/artwork/geometry/geometry.h"
#include "app/artwork/geometry/transform_art.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace corvane {
namespace {

TEST(Geometry, pointsAreRoundedAndSaturate) {
    constexpr Fixed most = std::numeric_limits<Fixed>::max();
    constexpr Fixed least = std::numeric_limits<Fixed>::min();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(fixedPoint({0.5 / 65536, -0.5 / 65536}), (Point{1, -1}));
    EXPECT_EQ(fixedPoint({1e9, -1e300}), (Point{most, least}));
    EXPECT_EQ(fixedPoint({nan, 32768}), (Point{0, most}));
}

TEST(TransformArt, mapsPathsAtAnyDepthAndScalesStrokes) {
    Document document;
    const Art top =
        document.make(ArtKind::group, Placement::inside, document.layerArt(document.firstLayer()));
    const Art beside = document.make(ArtKind::path, Placement::behind, top);
    document.setSegmentCount(beside, 1);
    const Art compound = document.make(ArtKind::compound, Placement::inside, top);
    const Art path = document.make(ArtKind::path, Placement::inside, compound);
    constexpr std::int32_t count = 600;
    document.setSegmentCount(path, count);
    for (std::int32_t i = 0; i < count; ++i) {
        const Segment segment{{i * fixedOne, 0}, {0, i * fixedOne}, {0, 0}, 1};
        document.writeSegments(path, i, {&segment, 1});
    }
    PathStyle style;
    style.lineWidth = 3 * fixedOne;
    style.dashCount = 1;
    style.dash[0] = fixedOne;
    style.dashPhase = -fixedOne;
    document.setStyle(path, style);

    transformArt(document, top, {0, 2, -2, 0, 1, 0});
    for (const std::int32_t i : {0, 255, 256, count - 1}) {
        const Segment segment = document.segments(path)[i];
        EXPECT_EQ(segment.anchor, (Point{fixedOne, 2 * i * fixedOne}));
        EXPECT_EQ(segment.in, (Point{fixedOne - 2 * i * fixedOne, 0}));
        EXPECT_EQ(segment.corner, 1);
    }
    EXPECT_EQ(document.style(path).lineWidth, 6 * fixedOne);
    EXPECT_EQ(document.style(path).dash[0], 2 * fixedOne);
    EXPECT_EQ(document.style(path).dashPhase, -2 * fixedOne);
    EXPECT_EQ(document.segments(beside)[0].anchor, Point{});

    // Thin lines stay lines of a width; the thinnest line of a device stays that.
    EXPECT_EQ(scaled(style, 1e-9).lineWidth, 1);
    style.lineWidth = 0;
    EXPECT_EQ(scaled(style, 5).lineWidth, 0);
}

} // namespace
} // namespace corvane
