// Gradients, patterns, custom colours and notes of the real host on a page that is read again.
#include "app/artwork/paint/paint.h"
#include "tests/writer/walk_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class HostPaintTest : public WalkTest {
protected:
    static Colour light(Fixed red, Fixed green, Fixed blue) {
        return {.kind = ColourKind::process,
                .component = {fixedOne - red, fixedOne - green, fixedOne - blue, 0},
                .origin = ColourOrigin::fromRgb};
    }
    PaintSource addRedToBlue() {
        Gradient gradient;
        gradient.x2 = 100;
        gradient.stops = {{0, light(fixedOne, 0, 0)}, {1, light(0, 0, fixedOne)}};
        return document().addGradient(gradient);
    }
    Art addSquare(Art container, double size, ColourKind kind, PaintSource source) {
        const Fixed end = points(size);
        const Art path = addPath(container, {{}, {end, 0}, {end, end}, {0, end}}, true);
        style(path, [&](PathStyle& style) {
            style.fillPaint = 1;
            style.fill = {.kind = kind, .component = {}, .source = source};
        });
        return path;
    }
    static int count(std::string_view text, std::string_view line) {
        int found = 0;
        for (std::size_t at = 0; (at = text.find(line, at)) != std::string_view::npos; ++at) {
            ++found;
        }
        return found;
    }
    /// Reads what was written: nothing may be wrong with it. The page in front of all.
    Art readBack(const std::string& content) {
        selectRules(Profile::extended);
        EXPECT_EQ(drawContent(content), "");
        return document().firstChild(importedArt());
    }
};

TEST_F(HostPaintTest, AGradientBecomesStripsWithinThePath) {
    addSquare(layerArt(), 100, ColourKind::gradient, addRedToBlue());
    for (const Profile profile : {Profile::original, Profile::extended}) {
        const std::string text = writeIn(profile);
        const bool isLight = profile == Profile::extended;
        EXPECT_EQ(count(text, "rg\n") > 10, isLight);
        EXPECT_EQ(count(text, "k\n") > 10, !isLight);
        const Art clipped = readBack(text);
        if (isLight) {
            ASSERT_TRUE(document().clipped(clipped));
            EXPECT_EQ(pathText(document(), document().firstChild(clipped)),
                      "<0,0 100,0 100,100 0,100 zC>");
            // In front lies the blue end: strips are drawn from red on.
            const PathStyle& last =
                document().style(document().nextSibling(document().firstChild(clipped)));
            EXPECT_GT(last.fill.component[0], last.fill.component[2]);
        }
        document_.emplace();
        scope_.reset();
        scope_.emplace(document());
        addSquare(layerArt(), 100, ColourKind::gradient, addRedToBlue());
    }
}

TEST_F(HostPaintTest, APatternBecomesItsTilesAndTheyTheirGradients) {
    Pattern pattern{.tile = document().makeArtwork(),
                    .left = 0,
                    .bottom = 0,
                    .right = 10,
                    .top = 10,
                    .stepX = 10,
                    .stepY = 10,
                    .matrix = {}};
    addSquare(pattern.tile, 5, ColourKind::gradient, addRedToBlue());
    const PaintSource source = document().addPattern(pattern);
    addSquare(layerArt(), 20, ColourKind::pattern, source);
    const std::string text = writeIn(Profile::extended);
    EXPECT_THAT(text, StartsWith("%%Layer: , visible, preview, printing\n"
                                 "q\n0 0 m\n20 0 l\n20 20 l\n0 20 l\nh\nW\nn\n"));
    EXPECT_EQ(count(text, "q\n"), count(text, "Q\n"));
    // Two by two cells at least, each cut to its cell and its square.
    EXPECT_GE(count(text, "W\n"), 5);
    EXPECT_TRUE(document().clipped(readBack(text)));
}

TEST_F(HostPaintTest, ACustomColourAndANote) {
    const PaintSource source = document().addSpotColour({"Reflex", {fixedOne, points(.5), 0, 0}});
    const Art path = addSquare(layerArt(), 10, ColourKind::custom, source);
    const Note note = document().addNote("the roof\n0 g");
    style(path, [&](PathStyle& style) {
        style.fill.component[0] = points(.5);
        style.note = note;
    });
    EXPECT_THAT(writeIn(Profile::extended),
                HasSubstr("\n.5 .25 0 0 k\n0 i\n%%Note: the roof0 g\n"));
    EXPECT_THAT(writeIn(Profile::original),
                HasSubstr("\n0.5000 0.2500 0 0 k\n0 i\n%%Note: the roof0 g\n"));
}

} // namespace
} // namespace corvane
