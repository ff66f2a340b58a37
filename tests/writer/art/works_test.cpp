// Layers, groups, clips, compound paths: what is written, in which order, and what stops it.
#include "runtime/budget.h"
#include "tests/writer/walk_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class WorksTest : public WalkTest {
protected:
    /// A clipped group with a line, a plain one with two, and one more line, from the back.
    void addTree() {
        const Art clipped = addGroup(layerArt(), true);
        addLine(clipped);
        style(addPath(clipped, {{}, {0, points(5)}, {points(5), 0}}, true),
              [](PathStyle& style) { style.clip = 1; });
        const Art group = addGroup(layerArt());
        addLine(group);
        addLine(group);
        addLine(layerArt());
    }
};

TEST_F(WorksTest, GroupsAndClips) {
    addTree();
    // The clip ends by h and is not painted; groups stand in q and Q; a style in force is not
    // written again until a Q.
    EXPECT_EQ(writeIn(Profile::extended), "%%Layer: , visible, preview, printing\n"
                                          "q\n0 i\n0 0 m\n0 5 l\n5 0 l\nh\nW\nn\n"
                                          "0 g\n0 0 m\n10 0 l\nF\nQ\n"
                                          "q\n0 g\n0 i\n0 0 m\n10 0 l\nF\n"
                                          "0 0 m\n10 0 l\nF\nQ\n"
                                          "0 g\n0 i\n0 0 m\n10 0 l\nF\n");
    // The clip is a path like any other, closed by a further segment; plain groups leave no trace.
    EXPECT_EQ(writeIn(Profile::original), "%%Layer: , visible, preview, printing\n"
                                          "q\n0 i\n%%Note: \n0 0 m\n0 5 l\n5 0 l\n0 0 l\nW\nn\n"
                                          "0 g\n0 0 m\n10 0 l\nf\nQ\n"
                                          "0 g\n0 i\n%%Note: \n0 0 m\n10 0 l\nf\n"
                                          "0 0 m\n10 0 l\nf\n"
                                          "0 0 m\n10 0 l\nf\n");
}

TEST_F(WorksTest, CompoundPathsArePaintedOnceInTheStyleOfTheirFirstChild) {
    const Art compound = add(ArtKind::compound, layerArt());
    addPath(compound, {{}, {points(9), 0}});
    const Art front = addPath(compound, {{}, {points(5), 0}, {0, points(5)}}, true);
    style(front, [](PathStyle& style) {
        style.fillPaint = style.strokePaint = 1;
        style.rule = FillRule::evenOdd;
    });
    const std::string state = "%%Layer: , visible, preview, printing\n"
                              "0 g\n0 G\n1 w\n[ ] 0  d\n0 J\n0 j\n10 M\n0 i\n";
    EXPECT_EQ(writeIn(Profile::extended), state + "0 0 m\n9 0 l\n0 0 m\n5 0 l\n0 5 l\nh\nB*\n");
    EXPECT_EQ(writeIn(Profile::original),
              state + "%%Note: \n0 0 m\n9 0 l\n0 0 m\n5 0 l\n0 5 l\n0 0 l\nb\n");
    document().setGuide(front, true);
    EXPECT_THAT(writeIn(Profile::original), ::testing::EndsWith("0 0 l\nn\n"));
    EXPECT_THAT(writeIn(Profile::extended), ::testing::EndsWith("h\nn\n"));
}

TEST_F(WorksTest, ClipsOfEveryShape) {
    selectRules(Profile::extended);
    const Art group = addGroup(layerArt(), true);
    addLine(group);
    const Art compound = add(ArtKind::compound, group);
    addPath(compound, {{}, {points(1), 0}});
    style(addPath(compound, {{}, {points(2), 0}}), [](PathStyle& style) {
        style.fillPaint = 1; // a clip is never painted
        style.rule = FillRule::evenOdd;
    });
    EXPECT_THAT(write(), HasSubstr("q\n0 i\n0 0 m\n1 0 l\n0 0 m\n2 0 l\nW*\nn\n0 g\n"));
    // A group clips with all paths in it.
    const Art inner = addGroup(group);
    document().reorder(compound, Placement::inside, inner);
    addPath(inner, {{}, {points(3), 0}});
    EXPECT_THAT(write(), HasSubstr("2 0 l\n0 0 m\n3 0 l\nW\nn\n"));
    // One without any path hides what it clips.
    addGroup(group);
    EXPECT_THAT(write(), HasSubstr("q\n0 0 0 0 re\nW\nn\n0 g\n"));
    // A path that says it clips, but is no clip, would hide the rest of the page.
    style(addLine(layerArt()), [](PathStyle& style) { style.clip = 1; });
    EXPECT_THAT(write(), ::testing::EndsWith("0 0 m\n10 0 l\nF\n"));
    EXPECT_THAT(writeIn(Profile::original), ::testing::EndsWith("0 0 m\n10 0 l\nW\nf\n"));
}

TEST_F(WorksTest, WhatIsEmpty) {
    addGroup(layerArt());
    addGroup(layerArt(), true);
    add(ArtKind::compound, layerArt());
    style(add(ArtKind::path, layerArt()), [](PathStyle& style) { style.fillPaint = 1; });
    EXPECT_EQ(writeIn(Profile::extended), "%%Layer: , visible, preview, printing\n");
    EXPECT_EQ(writeIn(Profile::original),
              "%%Layer: , visible, preview, printing\nq\nQ\n0 g\n0 i\n%%Note: \nf\n");
}

TEST_F(WorksTest, LayersFromTheBackWithTheirFlags) {
    document().setLayerProperties(document().firstLayer(), {.title = "Back"});
    addLine(layerArt());
    // A title cannot end its comment.
    const Layer front = document().addLayer(
        {.title = "a\nQ\r/x Do\x7f(\xe9", .preview = false, .locked = true, .dimmed = true});
    addLine(document().layerArt(front));
    const std::string back = "%%Layer: Back, visible, preview, printing\n0 g\n0 i\n";
    EXPECT_EQ(writeIn(Profile::extended),
              back + "0 0 m\n10 0 l\nF\n"
                     "%%Layer: aQ/x Do(\xe9, visible, locked, printing, dimmed\n"
                     "0 0 m\n10 0 l\nF\n");
    EXPECT_THAT(writeIn(Profile::original),
                HasSubstr("%%Layer: aQ/x Do(\xe9, visible, locked, printing, dimmed\n"));
}

TEST_F(WorksTest, HiddenLayersAreLeftOutAndNamed) {
    static std::vector<std::string> named;
    static std::vector<std::int64_t> told;
    named.clear();
    told.clear();
    HostExtension extension;
    extension.layerLeftOut = [](void*, std::string_view title) { named.emplace_back(title); };
    extension.progress = [](void*, std::int64_t done, std::int64_t total) {
        told.push_back(done);
        EXPECT_EQ(total, 3000);
    };
    setHostExtension(&extension);
    document().setLayerProperties(document().firstLayer(), {.title = "Shown"});
    addLine(layerArt());
    addLine(layerArt());
    for (const LayerProperties& properties :
         {LayerProperties{.title = "Hidden", .visible = false},
          LayerProperties{.title = "Guides", .printing = false}}) {
        addLine(document().layerArt(document().addLayer(properties)));
    }
    resetWarning();
    EXPECT_THAT(writeIn(Profile::extended), Not(HasSubstr("Hidden")));
    EXPECT_EQ(warnings(), "1004");
    EXPECT_THAT(named, ElementsAre("Hidden", "Guides"));
    EXPECT_TRUE(std::ranges::is_sorted(told));
    EXPECT_EQ(told.empty() ? 0 : told.back(), 3000);
    // The original profile writes them like all others.
    const std::string original = writeIn(Profile::original);
    EXPECT_THAT(original, HasSubstr("%%Layer: Hidden, preview, printing\n0 0 m\n"));
    EXPECT_THAT(original, HasSubstr("%%Layer: Guides, visible, preview\n0 0 m\n"));
    EXPECT_EQ(warnings(), "");
    setHostExtension(nullptr);
}

TEST_F(WorksTest, PlacementAndOrigin) {
    selectRules(Profile::extended);
    EXPECT_THAT(write({0, -1, 1, 0, -10.1, 1.0 / 3}),
                ::testing::StartsWith("0 -1 1 0 -10.1 .3333333333333333 cm\n%%Layer"));
    EXPECT_THAT(write(), ::testing::StartsWith("%%Layer"));
    selectRules(Profile::original);
    document().page().setProfile(Profile::original);
    document().page().setBounds({points(-20.25), points(100), points(80), points(10)});
    EXPECT_THAT(write({0, -1, 1, 0, -10.1, 1.0 / 3}),
                ::testing::StartsWith("1 0 0 1 20.2500 -10 cm\n%%Layer"));
}

TEST_F(WorksTest, KindsOfArt) {
    const Art other = addGroup(layerArt());
    addLine(other);
    const auto writeAs = [&](int kind) {
        taps->kinds[other] = ArtKind{static_cast<std::int16_t>(kind)};
        return writing();
    };
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        EXPECT_EQ(writeAs(5), Exception::none);
        EXPECT_EQ(writeAs(6), Exception::none);
        // A group has no runs; and no page drawn anew today has text.
        EXPECT_EQ(writeAs(4),
                  profile == Profile::original ? Exception::host : Exception::unpatchable);
        // A group is linked to no file, and shows no image.
        EXPECT_EQ(writeAs(7), Exception::host);
        for (const int kind : {8, -1, 300}) {
            EXPECT_EQ(writeAs(kind), Exception::type) << kind;
        }
        // Of art that only its host knows, what it holds is written.
        EXPECT_EQ(writeAs(0), Exception::none);
        EXPECT_THAT(write(), HasSubstr("10 0 l\n"));
        EXPECT_EQ(warnings(), "");
    }
    const Art path = addLine(layerArt());
    taps->kinds[path] = ArtKind::unknown; // its host has no children to tell of
    EXPECT_EQ(writing(), Exception::none);
    EXPECT_EQ(warnings(), "1001");
    // A compound path of anything but paths.
    taps->kinds.clear();
    const Art compound = add(ArtKind::compound, layerArt());
    taps->kinds[addLine(compound)] = ArtKind::group;
    EXPECT_EQ(writing(), Exception::range);
}

TEST_F(WorksTest, EveryFailureOfTheHost) {
    addTree();
    const Art curve = addCurve(layerArt(), {{{}, {}, {points(1), points(2)}, 0}, {}}, true);
    const Art compound = add(ArtKind::compound, layerArt());
    document().reorder(curve, Placement::inside, compound);
    paint(addLine(layerArt()), ColourKind::gradient);
    paint(addLine(layerArt()), ColourKind::pattern);
    const Art noted = addLine(layerArt());
    paint(noted, ColourKind::custom);
    taps->styles[noted].note = Note{1};
    taps->gradient = [](Art, const DrawingProcedures& procedures) {
        procedures.setGray(0);
        return HostError::none;
    };
    const Art line = document().firstChild(layerArt());
    taps->pattern = [&](Art, TileProcedure tile) {
        taps->styles.erase(line);
        tile(line);
        return HostError::none;
    };
    taps->custom = [](PaintSource, CustomColour&) {};
    taps->note = [](Note, std::uint8_t* text) {
        text[0] = 0;
        return HostError::none;
    };
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        const std::string wanted = write();
        int failures = 0;
        for (;; ++failures) {
            taps->untilFailure = failures + 1;
            const Exception code = raisedBy([&] { write(); });
            if (std::exchange(taps->untilFailure, 0) != 0) {
                break;
            }
            ASSERT_EQ(code, Exception::host) << failures;
            ASSERT_EQ(zoneBlocksInUse(), 1);
        }
        EXPECT_GT(failures, 80);
        EXPECT_EQ(write(), wanted) << "nothing of the failures is left";
    }
}

TEST_F(WorksTest, AnEmptySlotIsAFailure) {
    addTree();
    HostProcedure* const table = table_->ref().get();
    for (const int number :
         {slot::checkUserAbort.number, slot::getNextLayer.number, slot::getLayerInfo.number,
          slot::getLayerArt.number, slot::getArtType.number, slot::getPathStyle.number}) {
        const HostProcedure former = std::exchange(table[number], nullptr);
        EXPECT_EQ(writing(), Exception::host) << number;
        table[number] = former;
    }
}

TEST_F(WorksTest, ThePersonCanStopAtAnyObject) {
    addTree();
    for (int objects = 1;; ++objects) {
        int asked = 0;
        taps->abort = [&] { return ++asked == objects; };
        const Exception code = writing();
        if (code == Exception::none) {
            EXPECT_EQ(asked, 7) << "the layer, two groups and four lines; the clip with its group";
            return;
        }
        ASSERT_EQ(code, Exception::cancelled);
    }
}

TEST_F(WorksTest, AStreamThatIsFull) {
    addTree();
    for (const std::int32_t room : {0, 10, 100}) {
        test::KeeperFilter keeper(room);
        DocumentCache cache;
        cache.output = &keeper;
        EXPECT_EQ(raisedBy([&] { documentWorks(cache, {}); }), Exception::io);
        EXPECT_EQ(std::ssize(keeper.text), room);
    }
}

TEST_F(WorksTest, LongListsAreWalkedOnce) {
    const auto callsFor = [&](int children) {
        document_.emplace();
        scope_.reset();
        scope_.emplace(document());
        const Art compound = add(ArtKind::compound, layerArt());
        for (int i = 0; i < children; ++i) {
            addLine(layerArt());
            addLine(compound);
        }
        taps->callsInAll = 0;
        EXPECT_EQ(writing(), Exception::none);
        return taps->callsInAll;
    };
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        const int few = callsFor(1000);
        const int more = callsFor(100'000);
        EXPECT_LT(more, 100 * few);
        EXPECT_LT(more, 20 * 100'000);
    }
}

TEST_F(WorksTest, DeepGroupsTakeNoStack) {
    for (const bool clipped : {false, true}) {
        document_.emplace();
        scope_.reset();
        scope_.emplace(document());
        Art group = layerArt();
        for (int depth = 1; depth < budget::artNesting - 1; ++depth) {
            const Art outer = std::exchange(group, addGroup(group, clipped));
            addLine(outer); // the clip of a clipped one
        }
        addLine(group);
        for (const Profile profile : {Profile::original, Profile::extended}) {
            const std::string text = writeIn(profile);
            const auto count = [&](std::string_view line) {
                int found = 0;
                for (std::size_t at = 0; (at = text.find(line, at)) != std::string::npos; ++at) {
                    ++found;
                }
                return found;
            };
            const bool bounded = clipped || profile == Profile::extended;
            EXPECT_EQ(count("\nq\n"), bounded ? budget::artNesting - 2 : 0);
            EXPECT_EQ(count("\nQ"), bounded ? budget::artNesting - 2 : 0);
        }
    }
}

TEST_F(WorksTest, AHostWhoseGroupHoldsItself) {
    const Art group = addGroup(layerArt());
    const Art path = addLine(group);
    static Art inCircle;
    inCircle = path;
    taps->kinds[path] = ArtKind::group;
    HostProcedure* const table = table_->ref().get();
    const HostProcedure former = table[slot::getFirstChild.number];
    fillSlot(std::span(table, slotCount), slot::getFirstChild, [](Art, Art* child) {
        *child = inCircle;
        return HostError::none;
    });
    const HostProcedure formerClipped = table[slot::getGroupClipped.number];
    fillSlot(std::span(table, slotCount), slot::getGroupClipped, [](Art, std::uint8_t* clipped) {
        *clipped = 0;
        return HostError::none;
    });
    EXPECT_EQ(writing(), Exception::structure);
    table[slot::getFirstChild.number] = former;
    table[slot::getGroupClipped.number] = formerClipped;
    EXPECT_EQ(zoneBytesCharged(), 0);
}

} // namespace
} // namespace corvane
