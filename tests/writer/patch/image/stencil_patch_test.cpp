// Stencils in gradients and patterns: edited, and saved as patches.
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class StencilPatchTest : public PatchTest {
public:
    void openStencils(const std::string& content) {
        openFile(PdfBuilder::onePage(
                     content,
                     "/Resources << /Pattern << /G 8 0 R >> /XObject << /M 20 0 R >> /ExtGState << "
                     "/H << /ca .5 >> /S << /SMask << /S /Alpha /G 22 0 R >> >> >> >>")
                     .object(8, "<< /PatternType 2 /Shading 9 0 R >>")
                     .object(9, "<< /ShadingType 2 /ColorSpace /DeviceGray /Coords [0 0 9 0] "
                                "/Extend [true true] /Function << /FunctionType 2 /Domain [0 1] "
                                "/C0 [0] /C1 [1] /N 1 >> >>")
                     .stream(20, "a",
                             "/Type /XObject /Subtype /Image /Width 1 /Height 1 /ImageMask true "
                             "/BitsPerComponent 1")
                     .stream(22, "0 0 99 99 re f",
                             "/Subtype /Form /BBox [0 0 99 99] /Group << /S /Transparency >>")
                     .bytes());
    }

    SoftMask moved(SoftMask mask, double dx) {
        MaskFacts facts = document_->mask(mask);
        const Art former = document_->firstChild(facts.content);
        facts.content = document_->makeArtwork();
        const Art image = document_->make(ArtKind::placed, Placement::inside, facts.content);
        PlacedImage placed = document_->placedImage(former);
        placed.matrix.tx += fixedFromReal(dx);
        document_->setPlacedImage(image, placed);
        Appearance look = document_->appearance(former);
        if (look.mask != SoftMask::null) {
            MaskFacts outer = document_->mask(look.mask);
            const Art content = outer.content;
            outer.content = document_->makeArtwork();
            const Art path = document_->duplicate(document_->firstChild(content), Placement::inside,
                                                  outer.content);
            Artist(*document_).move(path, dx, 0);
            look.mask = document_->addMask(outer);
            document_->setAppearance(image, look);
        }
        return document_->addMask(facts);
    }
    /// As editors do it: with what it is painted with, and with its mask.
    void moveAll(Art art, double dx) {
        artist().move(art, dx, 0);
        artist().style(art, [&](PathStyle& style) {
            Gradient gradient = document_->gradient(style.fill.source);
            gradient.matrix.tx += dx;
            style.fill.source = document_->addGradient(gradient);
        });
        Appearance look = document_->appearance(art);
        look.mask = moved(look.mask, dx);
        document_->setAppearance(art, look);
    }
    void change(Art art, const std::function<void(Appearance&)>& edit) {
        Appearance look = document_->appearance(art);
        edit(look);
        document_->setAppearance(art, look);
    }
};

constexpr const char* one = "q /Pattern cs /G scn 9 0 0 9 10 20 cm /M Do Q 0 0 5 5 re f";

TEST_F(StencilPatchTest, WhatStaysKeepsItsBytes) {
    for (const char* const content :
         {one, "q /S gs /H gs /Pattern cs /G scn 9 0 0 9 10 20 cm /M Do Q 0 0 5 5 re f",
          "q /Pattern cs /G scn 9 0 0 9 10 20 cm BI /W 1 /H 1 /IM true ID a EI Q"}) {
        openStencils(content);
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        EXPECT_TRUE(saved_.back().isNothing) << content;
    }
}

TEST_F(StencilPatchTest, EditsKeepTheObject) {
    using Self = StencilPatchTest;
    struct Row {
        const char* name;
        std::function<void(Self&, Artist&)> edit;
        const char* facts; ///< kept, changed, added, removed, moved
        std::vector<std::string> pieces;
    };
    for (const Row& row : std::vector<Row>{
             {"moved",
              [](Self&test, Artist&edits) { test.moveAll(edits.at(0), 5); },
              "1 1 0 0 0",
              {"/P1 scn", "1 0 0 1 .555555556 0 cm", "/M Do", "0 0 5 5 re f"}},
             {"moved, its paint left behind",
              [](Self&test, Artist&edits) {
                  edits.move(edits.at(0), 5, 0);
                  test.change(edits.at(0),
                              [&](Appearance& look) { look.mask = test.moved(look.mask, 5); });
              },
              "1 1 0 0 0",
              {"/G scn", "1 0 0 1 .555555556 0 cm", "/M Do"}},
             {"fainter",
              [](Self&test, Artist&edits) {
                  test.change(edits.at(0), [](Appearance& look) { look.fillOpacity = .5; });
              },
              "1 1 0 0 0",
              {"gs", "/M Do"}},
             {"deleted",
              [](Self&, Artist&edits) { edits.remove(edits.at(0)); },
              "1 0 0 1 0",
              {"9 0 0 9 10 20 cm", "Q 0 0 5 5 re f"}},
             {"raised",
              [](Self&, Artist&edits) { edits.raise(edits.at(0), edits.at(1)); },
              "1 0 0 0 1",
              {"0 0 5 5 re f", "/G scn", "9 0 0 9 10 20 cm", "/M Do"}},
             {"copied",
              [](Self&test, Artist&edits) { test.moveAll(edits.copy(edits.at(0)), 5); },
              "2 0 1 0 0",
              {"/M Do", "9 0 0 9 10 20 cm", "1 0 0 1 .555555556 0 cm", "/M Do"}},
         }) {
        SCOPED_TRACE(row.name);
        openStencils(one);
        Artist edits = artist();
        row.edit(*this, edits);
        expectSaved();
        EXPECT_EQ(facts(), row.facts);
        expectInOrder(row.pieces);
        EXPECT_THAT(bytes().substr(file_.size()), Not(HasSubstr("/Subtype /Image")));
        digest_ = identity_;
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        EXPECT_TRUE(saved_.back().isNothing);
    }
}

TEST_F(StencilPatchTest, OfOneColourItIsAnImage) {
    openStencils(one);
    Artist edits = artist();
    edits.fill(edits.at(0), .25);
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    expectInOrder({"9 0 0 9 10 20 cm", ".75 g", "/M Do", "0 0 5 5 re f"});
}

TEST_F(StencilPatchTest, TheMaskAroundMovesAlong) {
    openStencils("q /S gs /Pattern cs /G scn 9 0 0 9 10 20 cm /M Do Q 0 0 5 5 re f");
    moveAll(artist().at(0), 5);
    expectSaved();
    // It is set where the artboard lies, 5 points farther, under the matrix of the stencil.
    expectInOrder({" -.5555555555555556 -2.2222222222222223 cm", "/S gs", "/P1 scn",
                   "9 0 0 9 5 20 cm", "1 0 0 1 .555555556 0 cm", "/M Do"});
}

TEST_F(StencilPatchTest, WithoutItsMaskItIsAPath) {
    openStencils(one);
    change(artist().at(0), [](Appearance& look) { look.mask = SoftMask::null; });
    expectSaved();
    EXPECT_THAT(bytes().substr(file_.size()), HasSubstr("/SMask /None"));
    EXPECT_THAT(newContent(), Not(HasSubstr("/M Do")));
}

} // namespace
} // namespace corvane
