// Gradients and patterns: what the host draws goes through the clip of the path, and what goes
// wrong in between is not lost.
#include "runtime/budget.h"
#include "tests/writer/walk_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

class DrawnTest : public WalkTest {
protected:
    /// A triangle that is filled with a paint of the host.
    Art addPainted(Art container, ColourKind kind, bool stroked = false) {
        const Art path = addPath(container, {{}, {points(9), 0}, {0, points(9)}}, true);
        paint(path, kind);
        taps->styles[path].strokePaint = stroked ? 1 : 0;
        return path;
    }

    /// Draws with every procedure there is.
    static HostError drawAll(Art, const DrawingProcedures& to) {
        const Point a{points(1), points(2)};
        const Point b{points(3), points(4)};
        const Point c{points(5), points(6)};
        to.setGray(points(.25));
        to.beginFill();
        to.moveTo(&a);
        to.lineTo(&b);
        to.curveTo(&a, &b, &c);
        to.endFill();
        to.setCMYK(points(.5), 0, points(1), 0);
        to.beginFill();
        to.endFill();
        if (to.setRGB != nullptr) {
            to.setRGB(points(.5), 0, points(1));
        }
        return HostError::none;
    }
};

constexpr const char* layerLine = "%%Layer: , visible, preview, printing\n";

TEST_F(DrawnTest, GradientsAreDrawnWithinThePath) {
    addPainted(layerArt(), ColourKind::gradient, true);
    taps->gradient = drawAll;
    const std::string line = layerLine;
    const std::string stroke = "0 G\n1 w\n[ ] 0  d\n0 J\n0 j\n10 M\n0 i\n";
    EXPECT_EQ(writeIn(Profile::extended),
              line +
                  "q\n0 0 m\n9 0 l\n0 9 l\nh\nW\nn\n"
                  ".25 g\n1 2 m\n3 4 l\n1 2 3 4 5 6 c\nf\n.5 0 1 0 k\nf\n.5 0 1 rg\nQ\n" +
                  stroke + "0 0 m\n9 0 l\n0 9 l\nh\nS\n");
    EXPECT_EQ(writeIn(Profile::original),
              line +
                  "q\n0 0 m\n9 0 l\n0 9 l\n0 0 l\nW\nn\n"
                  "0.2500 g\n1 2 m\n3 4 l\n1 2 3 4 5 6 c\nf\n0.5000 0 1 0 k\nf\nQ\n" +
                  stroke + "%%Note: \n0 0 m\n9 0 l\n0 9 l\n0 0 l\ns\n");
}

TEST_F(DrawnTest, WithoutAStrokeThePathIsNotWrittenAgain) {
    const Art path = addPainted(layerArt(), ColourKind::gradient);
    taps->styles[path].rule = FillRule::evenOdd;
    int drawn = 0;
    taps->gradient = [&](Art, const DrawingProcedures&) {
        ++drawn;
        return HostError::none;
    };
    EXPECT_THAT(writeIn(Profile::extended), EndsWith("h\nW*\nn\nQ\n"));
    EXPECT_THAT(writeIn(Profile::original), EndsWith("W\nn\nQ\n0 i\n%%Note: \n"
                                                     "0 0 m\n9 0 l\n0 9 l\n0 0 l\nn\n"));
    EXPECT_EQ(drawn, 2);
    document().setGuide(path, true);
    EXPECT_THAT(write(), Not(HasSubstr("W\n"))) << "a guide is not filled";
    EXPECT_EQ(drawn, 2);
}

TEST_F(DrawnTest, CompoundPathsClipWithAllAndDrawForEach) {
    const Art compound = add(ArtKind::compound, layerArt());
    const Art back = addLine(compound);
    const Art front = addPainted(compound, ColourKind::gradient);
    std::vector<Art> drawn;
    taps->gradient = [&](Art path, const DrawingProcedures& to) {
        drawn.push_back(path);
        to.setGray(0);
        return HostError::none;
    };
    EXPECT_EQ(writeIn(Profile::extended),
              std::string(layerLine) +
                  "q\n0 0 m\n10 0 l\n0 0 m\n9 0 l\n0 9 l\nh\nW\nn\n0 g\n0 g\nQ\n");
    EXPECT_THAT(drawn, ::testing::ElementsAre(back, front));
}

TEST_F(DrawnTest, PatternsAreWrittenTileByTile) {
    addPainted(layerArt(), ColourKind::pattern);
    taps->pattern = [&](Art, TileProcedure tile) {
        for (int i = 1; i <= 2; ++i) {
            const Art group = addGroup(layerArt());
            addLine(group);
            addPath(group, {{points(i), 0}, {points(i), points(1)}});
            tile(group);
            document().dispose(group);
        }
        return HostError::none;
    };
    EXPECT_EQ(writeIn(Profile::extended),
              std::string(layerLine) + "q\n0 0 m\n9 0 l\n0 9 l\nh\nW\nn\n"
                                       "q\n0 g\n0 i\n0 0 m\n10 0 l\nF\n1 0 m\n1 1 l\nn\nQ\n"
                                       "q\n0 g\n0 i\n0 0 m\n10 0 l\nF\n2 0 m\n2 1 l\nn\nQ\nQ\n");
}

TEST_F(DrawnTest, AGradientInAPattern) {
    const Art inner = addPainted(layerArt(), ColourKind::gradient);
    paint(addLine(layerArt()), ColourKind::pattern);
    taps->gradient = [](Art, const DrawingProcedures& to) {
        to.setGray(0);
        return HostError::none;
    };
    taps->pattern = [&](Art, TileProcedure tile) {
        tile(inner);
        tile(inner);
        return HostError::none;
    };
    const std::string drawn = "q\n0 0 m\n9 0 l\n0 9 l\nh\nW\nn\n0 g\nQ\n";
    EXPECT_EQ(writeIn(Profile::extended),
              layerLine + drawn + "q\n0 0 m\n10 0 l\nW\nn\n" + drawn + drawn + "Q\n");
}

TEST_F(DrawnTest, WhatATileRaisesIsRaisedWhenTheHostReturns) {
    const Art group = addGroup(layerArt());
    const Art text = addLine(group);
    taps->kinds[text] = ArtKind::text;
    taps->kinds[group] = ArtKind{5};
    addPainted(layerArt(), ColourKind::pattern);
    for (const HostError result : {HostError::none, HostError::failed}) {
        int tiles = 0;
        taps->pattern = [&](Art, TileProcedure tile) {
            tile(text);
            tile(text); // does nothing more
            ++tiles;
            return result;
        };
        selectRules(Profile::extended);
        EXPECT_EQ(writing(), Exception::unpatchable) << "not that the host failed";
        EXPECT_EQ(tiles, 1) << "nothing unwound through the host";
    }
}

TEST_F(DrawnTest, WhatAProcedureRaisesIsRaisedWhenTheHostReturns) {
    addPainted(layerArt(), ColourKind::gradient);
    taps->gradient = [](Art, const DrawingProcedures& to) {
        to.lineTo(nullptr);
        to.setGray(0);
        return HostError::none;
    };
    EXPECT_EQ(writing(), Exception::host);
    taps->gradient = [](Art, const DrawingProcedures&) { return HostError::failed; };
    EXPECT_EQ(writing(), Exception::host);
    // A stream that fills up while the host draws.
    taps->gradient = [](Art, const DrawingProcedures& to) {
        for (int i = 0; i < 100'000; ++i) {
            to.setGray(0);
        }
        return HostError::none;
    };
    test::KeeperFilter keeper(1000);
    DocumentCache cache;
    cache.output = &keeper;
    EXPECT_EQ(raisedBy([&] { documentWorks(cache, {}); }), Exception::io);
    EXPECT_EQ(keeper.writes, 1) << "nothing is tried after that";
}

TEST_F(DrawnTest, APatternThatHoldsItself) {
    const Art path = addPainted(layerArt(), ColourKind::pattern);
    int tiles = 0;
    taps->pattern = [&](Art, TileProcedure tile) {
        ++tiles;
        tile(path);
        return HostError::none;
    };
    EXPECT_EQ(writing(), Exception::limit);
    EXPECT_EQ(tiles, budget::patternNesting);
    EXPECT_EQ(handlerDepth(), 0);
}

TEST_F(DrawnTest, ProceduresThatTheHostKeptDoNothingLater) {
    addPainted(layerArt(), ColourKind::gradient);
    DrawingProcedures kept;
    taps->gradient = [&](Art, const DrawingProcedures& to) {
        kept = to;
        return HostError::none;
    };
    const std::string text = write();
    kept.setGray(0);
    kept.endFill();
    EXPECT_EQ(write(), text);
}

} // namespace
} // namespace corvane
