// Affine maps, and art under them.
#include "app/artwork/affine.h"
#include "app/artwork/document.h"
#include "app/artwork/transform_art.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace corvane {
namespace {

constexpr Affine sheared{2, 1, -1, 3, 10, -20};

TEST(Affine, thenIsOneAfterTheOtherAndInverseUndoesIt) {
    const Affine moved{0.1, 0, 0, 4, -1e6, 7};
    const Position both = apply(then(moved, sheared), {3, 5});
    const Position steps = apply(sheared, apply(moved, {3, 5}));
    EXPECT_NEAR(both.x, steps.x, 1e-6);
    EXPECT_NEAR(both.y, steps.y, 1e-6);
    EXPECT_EQ(then(Affine{0.1, 0, 0, 0.1, 0, 0}, {1, 0, 0, 1, -1e9, 1e9}).a, 0.1);
    const Position back = apply(*inverse(sheared), apply(sheared, {3, 5}));
    EXPECT_NEAR(back.x, 3, 1e-12);
    EXPECT_NEAR(back.y, 5, 1e-12);
    for (const Affine& flat :
         {Affine{1, 2, 2, 4, 0, 0}, Affine{0, 0, 0, 0, 1, 1}, Affine{1e-300, 0, 0, 1e-300, 0, 0}}) {
        EXPECT_FALSE(inverse(flat).has_value());
    }
}

TEST(Affine, scales) {
    EXPECT_NEAR(meanScale(sheared), 2.6457513, 1e-6);
    EXPECT_NEAR(largestScale({0, 3, -2, 0, 5, 5}), 3, 1e-12);
    EXPECT_NEAR(largestScale({1, 0, 1, 1, 0, 0}), 1.6180340, 1e-6);
}

TEST(Affine, pointsAreRoundedAndSaturate) {
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
