// Soft masks: opened, edited, and saved as patches.
#include "tests/writer/patch/look/look_patch_fixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace corvane {
namespace {

using ::testing::HasSubstr;

class MaskPatchTest : public LookPatchTest {
protected:
    SoftMask addMask(Art drawn, bool isLuminosity) {
        const Art content = document_->makeArtwork();
        document_->reorder(drawn, Placement::inside, content);
        return document_->addMask({.content = content, .isLuminosity = isLuminosity});
    }
    SoftMask maskOf(Art art) const { return document_->appearance(art).mask; }
    /// The first point of the first path that the mask of the art holds.
    Point maskCorner(Art art) const {
        const Art group = document_->firstChild(document_->mask(maskOf(art)).content);
        const Art path =
            document_->kind(group) == ArtKind::path ? document_->nextSibling(group) : group;
        return document_->segments(path)[0].anchor;
    }
};

TEST_F(MaskPatchTest, OneMaskIsOneThing) {
    openLooks("/A gs 0 0 9 9 re f /A gs 1 1 9 9 re f q 2 0 0 2 0 0 cm /A gs 1 1 9 9 re f Q");
    const Artist edits = artist();
    const auto maskAt = [&](std::size_t i) { return maskOf(edits.at(i)); };
    EXPECT_EQ(maskAt(0), maskAt(1));
    EXPECT_NE(maskAt(0), maskAt(2)) << "it lies elsewhere";
}

TEST_F(MaskPatchTest, MasksAreDrawnWhereTheyLie) {
    openLooks("2 0 0 2 30 0 cm 0 0 9 9 re f 20 20 9 9 re f");
    Artist edits = artist();
    const SoftMask mask = addMask(edits.add(10, 20, 30, 40), true);
    document_->setAppearance(edits.at(0), {.mask = mask});
    document_->setAppearance(edits.at(1), {.mask = mask});
    ASSERT_NO_FATAL_FAILURE(expectKept("( light)( light)"));
    EXPECT_EQ(maskCorner(artist().at(0)), (Point{10 * fixedOne, 20 * fixedOne}));
    EXPECT_EQ(maskOf(artist().at(0)), maskOf(artist().at(1)));
}

TEST_F(MaskPatchTest, WhatMasksHoldIsEdited) {
    struct Row {
        const char* name;
        std::function<void(Artist&, Art group, Art inside)> edit;
        bool isNothing;
    };
    for (const Row& row : {
             Row{"a group that does nothing", [](Artist&, Art, Art) {}, true},
             Row{"opacity of a group",
                 [](Artist&it, Art group, Art) {
                     it.document.setAppearance(group, {.opacity = .5});
                 },
                 false},
             Row{"a clip",
                 [](Artist&it, Art group, Art inside) {
                     const Art clip = it.add(0, 0, 9, 9, inside);
                     it.document.reorder(clip, Placement::inFront, inside);
                     it.style(clip, [](PathStyle& style) {
                         style = PathStyle();
                         style.clip = 1;
                     });
                     it.document.setClipped(group, true);
                 },
                 false},
         }) {
        SCOPED_TRACE(row.name);
        openLooks("/A gs 0 0 9 9 re f");
        Artist edits = artist();
        const Art content = document_->mask(document_->appearance(edits.at(0)).mask).content;
        const Art inside = document_->lastChild(content);
        const Art group = document_->make(ArtKind::group, Placement::inFront, inside);
        document_->reorder(inside, Placement::inside, group);
        row.edit(edits, group, inside);
        ASSERT_EQ(save(), 0U);
        EXPECT_EQ(saved_.back().isNothing, row.isNothing);
    }
}

TEST_F(MaskPatchTest, ClipsOfMasksCount) {
    for (const bool isEdited : {false, true}) {
        openLooks("/C gs 0 0 9 9 re f");
        Artist edits = artist();
        Art group = document_->mask(maskOf(edits.at(0))).content;
        while (!document_->clipped(group)) {
            group = document_->firstChild(group);
        }
        edits.move(document_->firstChild(group), isEdited ? 3 : 0, 0);
        ASSERT_EQ(save(), 0U);
        EXPECT_EQ(saved_.back().isNothing, !isEdited);
    }
}

/// A mask of its own would count in place of one in the graphics state.
TEST_F(MaskPatchTest, AnImageIsMaskedAsAGroup) {
    openLooks("9 0 0 9 0 0 cm /I Do");
    const Art image = document_->firstChild(document_->layerArt(document_->firstLayer()));
    const SoftMask mask = addMask(artist().add(10, 20, 30, 40), true);
    document_->setAppearance(image, {.mask = mask});
    ASSERT_NO_FATAL_FAILURE(expectKept("[ light()]"));
    EXPECT_THAT(bytes(), HasSubstr("/Group << /S /Transparency"));
}

TEST_F(MaskPatchTest, ANewMaskMayHoldText) {
    openLooks("0 0 99 99 re f");
    const Art content = document_->makeArtwork();
    const Art text = document_->make(ArtKind::text, Placement::inside, content);
    TextLine line;
    line.matrix = {fixedOne, 0, 0, fixedOne, 10 * fixedOne, 20 * fixedOne};
    document_->setTextLine(text, line);
    PathStyle painted;
    painted.fillPaint = 1;
    document_->addTextRun(text, {.font = document_->addFont({.family = "DejaVu Sans"}),
                                 .size = 20 * fixedOne,
                                 .text = "Seen",
                                 .style = painted});
    document_->setAppearance(artist().at(0), {.mask = document_->addMask({.content = content})});
    ASSERT_NO_FATAL_FAILURE(expectKept("( alpha)"));
    EXPECT_THAT(bytes(), HasSubstr("/FontFile"));
}

TEST_F(MaskPatchTest, AMaskMovesOnlyWithItsObject) {
    openLooks("/A gs 0 0 9 9 re f");
    artist().move(artist().at(0), 30, 0);
    ASSERT_NO_FATAL_FAILURE(expectKept("( alpha)"));
    EXPECT_EQ(newContent().find(" cm"), std::string::npos) << "it stays where the artwork has it";
}

TEST_F(MaskPatchTest, AMaskAroundAFormDoesNotMoveWithTheForm) {
    openLooks("/A gs /D Do");
    Artist edits = artist();
    const Art copy = edits.add(30, 0, 50, 100);
    document_->setStyle(copy, document_->style(edits.at(0)));
    const SoftMask moved = addMask(copy, false);
    edits.move(edits.clips.at(0), 30, 0);
    for (const Art art : {edits.at(0), edits.at(1)}) {
        edits.move(art, 30, 0);
        document_->setAppearance(art, {.mask = moved});
    }
    ASSERT_NO_FATAL_FAILURE(expectKept("[[( alpha)( alpha)]]"));
    EXPECT_EQ(maskCorner(artist().at(0)), (Point{30 * fixedOne, 0}));
}

} // namespace
} // namespace corvane
