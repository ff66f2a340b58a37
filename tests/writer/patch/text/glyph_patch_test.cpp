// What glyph procedures drew, edited and saved as patches.
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace corvane {
namespace {

class GlyphPatchTest : public PatchTest {};

struct Edit {
    const char* name;
    std::string content;
    std::function<void(Artist&)> edit; ///< of paths, which are numbered from the back
    const char* facts;                 ///< kept, changed, added, removed, moved
    std::string saved;                 ///< the content; empty: only what is seen counts
};

/// Each glyph is a square on a bar.
const std::string content = "1 0 0 rg BT /T 10 Tf 2 Tc 100 700 Td (aa) Tj [(a) 500 (b)] TJ ET "
                            "0 0 9 9 re f";

TEST_F(GlyphPatchTest, Edits) {
    const auto show = [](Artist& it, std::size_t path) { return it.document.parent(it.at(path)); };
    const Edit rows[] = {
        {"something else", content, [](Artist& it) { it.fill(it.at(6), 0.5); }, "2 1 0 0 0",
         "1 0 0 rg BT /T 10 Tf 2 Tc 100 700 Td (aa) Tj [(a) 500 (b)] TJ ET \n"
         "q\n.5 g\n0 0 9 9 re \nf\nQ\n\n"},
        {"it goes", content, [&](Artist& it) { it.remove(show(it, 0)); }, "2 0 0 1 0",
         "1 0 0 rg BT /T 10 Tf 2 Tc 100 700 Td  [-2400 ] TJ\n [(a) 500 (b)] TJ ET 0 0 9 9 re f\n"},
        {"it is moved", content, [&](Artist& it) { it.move(show(it, 4), 3, 4); }, "2 1 0 0 0",
         "1 0 0 rg BT /T 10 Tf 2 Tc 100 700 Td (aa) Tj  [-1900 ] TJ\n ET\nq\nq\n1 0 0 rg\nBT\n"
         "/T 10 Tf\n2 Tc 0 Tw 100 Tz 0 Ts 0 Tr\n1 0 0 1 127 704 Tm\n[(a) 500 (b) ] TJ\nET\nQ\nQ\n"
         " 0 0 9 9 re f\n"},
        {"a copy", content, [&](Artist& it) { it.copy(show(it, 0), 50, 50); }, "3 0 1 0 0", ""},
        {"its order", content, [&](Artist& it) { it.raise(show(it, 0), it.at(6)); }, "2 0 0 0 1",
         ""},
        {"another colour in it", content, [](Artist& it) { it.fill(it.at(1), 0.5); }, "2 1 0 0 0",
         ""},
        {"a path of it is moved", content, [](Artist& it) { it.move(it.at(1), 0, 5); }, "2 1 0 0 0",
         ""},
        {"a path of it goes", content, [](Artist& it) { it.remove(it.at(1)); }, "2 1 0 0 0", ""},
        {"a path is put into it", content, [](Artist& it) { it.raise(it.at(6), it.at(3)); },
         "1 1 0 1 0", ""},
        {"in a space of its own",
         "q .5 .1 0 -.5 10 600 cm 1 0 0 rg BT /T 20 Tf 3 Ts 100 70 Td (ab) Tj (a) Tj ET Q",
         [&](Artist& it) { it.move(show(it, 0), 5, 3); }, "1 1 0 0 0", ""},
        {"half seen through", "/Half gs " + content,
         [&](Artist& it) { it.move(show(it, 0), 5, 3); }, "2 1 0 0 0", ""},
    };
    for (const Edit& row : rows) {
        SCOPED_TRACE(row.name);
        openPage(row.content);
        Artist edits = artist();
        row.edit(edits);
        extension_.overwrites = true;
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        EXPECT_EQ(facts(), row.facts);
        if (!row.saved.empty()) {
            EXPECT_EQ(newContent(), row.saved);
        }
    }
}

TEST_F(GlyphPatchTest, Bitmaps) {
    openFile(PdfBuilder::onePage("1 0 0 rg BT /T 10 Tf 100 700 Td (aa) Tj ET 0 0 9 9 re f",
                                 "/Resources << /Font << /T 20 0 R >> >>")
                 .object(20,
                         "<< /Type /Font /Subtype /Type3 /FontMatrix [.1 0 0 .1 0 0] /CharProcs "
                         "<< /a 21 0 R >> /Encoding << /Differences [97 /a] >> /FirstChar 97 "
                         "/Widths [10] >>")
                 .stream(21, "10 0 0 0 8 8 d1 8 0 0 8 0 0 cm BI /W 1 /H 1 /IM true ID a EI")
                 .bytes());
    const Art group = document_->lastChild(document_->layerArt(document_->firstLayer()));
    const auto move = [&](Art bitmap) {
        PlacedImage placed = document_->placedImage(bitmap);
        placed.matrix.tx += 5 * fixedOne;
        document_->setPlacedImage(bitmap, placed);
    };
    move(document_->firstChild(group));
    EXPECT_EQ(save(), resultStopped) << "one of its letters";
    move(document_->lastChild(group));
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_EQ(facts(), "1 1 0 0 0");
    expectInOrder({"1 0 0 rg", "1 0 0 1 105 700 Tm\n[(aa) ] TJ"});
}

/// Paths are no text any more: that is for the person to say.
TEST_F(GlyphPatchTest, ALetterThatIsChangedAloneIsRefused) {
    openPage(content);
    Artist edits = artist();
    edits.fill(edits.at(1), 0.5);
    EXPECT_EQ(save(), resultStopped);
    EXPECT_EQ(bytes(), file_);
    EXPECT_THAT(front_.taken(), ::testing::ElementsAre("error 31"));
}

} // namespace
} // namespace corvane
