// Images that are edited and saved as patches: what the page has keeps its object.
#include "tests/writer/patch/image/image_patch_fixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

struct Edit {
    const char* name;
    std::string content;
    std::function<void(Hanger&)> edit;
    const char* facts; ///< kept, changed, added, removed, moved
    std::string saved; ///< the content; empty: only what is seen counts
};

const std::string own = "q 9 0 0 9 10 20 cm BI /W 2 /H 1 /BPC 8 /CS /G ID EI EI Q 0 0 5 5 re f";

TEST_F(ImagePatchTest, Edits) {
    const Edit rows[] = {
        {"one is moved", two, [](Hanger& it) { it.move(0, 9, 18); }, "2 1 0 0 0",
         "q 9 0 0 9 10 20 cm \nq\n1 0 0 1 1 2 cm\n/A Do\nQ\n Q 0 0 5 5 re f q 8 0 0 8 50 60 cm /B "
         "Do "
         "Q\n"},
        {"one is turned", two,
         [](Hanger& it) {
             it.place(1, {0, 8 * fixedOne, -8 * fixedOne, 0, 0, fixedOne});
         },
         "2 1 0 0 0", ""},
        {"one goes", two, [](Hanger& it) { it.document.dispose(it.images[0]); }, "2 0 0 1 0",
         "q 9 0 0 9 10 20 cm   Q 0 0 5 5 re f q 8 0 0 8 50 60 cm /B Do Q\n"},
        {"a copy", two,
         [](Hanger& it) {
             it.images[0] = it.document.duplicate(it.images[0], Placement::inFront, it.images[1]);
             it.move(0, 20, 0);
         },
         "3 0 1 0 0", ""},
        {"another order", two,
         [](Hanger& it) { it.document.reorder(it.images[0], Placement::inFront, it.images[1]); },
         "2 0 0 0 1", ""},
        {"an inline image is moved", own, [](Hanger& it) { it.move(0, 0, 9); }, "1 1 0 0 0",
         "q 9 0 0 9 10 20 cm \nq\n1 0 0 1 0 1 cm\nBI /W 2 /H 1 /BPC 8 /CS /G ID EI EI\nQ\n Q 0 0 5 "
         "5 re f\n"},
        {"an inline image goes", own, [](Hanger& it) { it.document.dispose(it.images[0]); },
         "1 0 0 1 0", "q 9 0 0 9 10 20 cm   Q 0 0 5 5 re f\n"},
        {"an inline image between text",
         "BT 9 0 0 9 0 0 Tm BI /W 2 /H 1 /BPC 8 /CS /G ID EI EI 5 5 Td ET 0 0 5 5 re f",
         [](Hanger& it) { it.move(0, 3, 9); }, "1 1 0 0 0", ""},
        {"in a space of its own, under transparency",
         "/Half gs q .5 .1 0 -.5 10 600 cm q 40 0 0 40 0 0 cm /A Do Q Q q 8 0 0 8 50 60 cm /B Do Q",
         [](Hanger& it) {
             it.move(0, 5, 3);
             it.document.reorder(it.images[1], Placement::behind, it.images[0]);
         },
         "1 1 0 0 0", ""},
    };
    for (const Edit& row : rows) {
        SCOPED_TRACE(row.name);
        openImages(row.content);
        Hanger edits = hanger();
        row.edit(edits);
        const std::string edited = look();
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        EXPECT_EQ(facts(), row.facts);
        EXPECT_EQ(look(), edited) << newContent();
        EXPECT_THAT(object("3"), Not(HasSubstr("/X1")));
        if (!row.saved.empty()) {
            EXPECT_EQ(newContent(), row.saved);
        }
    }
}

/// Readers know the end of an inline image by what stands behind it.
TEST_F(ImagePatchTest, InlineImagesEndWhereTheyDidWhateverGoesBehindThem) {
    const std::string image = "BI /W 1 /H 1 /BPC 8 /CS /G ID @ EI ";
    const std::string clipped = " 0 0 90 90 re W n 1 1 5 5 re f";
    struct Row {
        std::string content;
        bool removesPath;
        std::size_t paths;
    };
    for (const Row& row : {Row{image + "Q words 9 9 5 5 re f" + clipped, false, 3},
                           Row{image + "Q Q words 9 9 5 5 re f" + clipped, false, 3},
                           Row{image + "9 9 5 5 re f words" + clipped, true, 2},
                           Row{image + "Q 9 9 5 5 re f words" + clipped, true, 2},
                           Row{image + "Q 9 9 5 5 re f" + clipped, true, 2}}) {
        openImages(row.content);
        Artist edits(*document_);
        if (row.removesPath) {
            edits.remove(edits.at(0));
        }
        edits.add(3, 3, 9, 9);
        ASSERT_EQ(save(), 0U) << row.content;
        ASSERT_EQ(open(), 0U) << row.content;
        EXPECT_EQ(hanger().images.size(), 1U) << newContent();
        EXPECT_EQ(artist().objects.size(), row.paths) << newContent();
    }
}

TEST_F(ImagePatchTest, SmoothnessMakesAnotherObjectOfTheSamePicture) {
    openImages(two);
    Hanger edits = hanger();
    const Image picture = edits.picture({.width = 1, .height = 1}, "a");
    edits.add(picture, {fixedOne, 0, 0, fixedOne, 0, 0});
    document_->setPlacedImage(edits.add(picture, {fixedOne, 0, 0, fixedOne, 9, 0}),
                              {picture, {fixedOne, 0, 0, fixedOne, 9, 0}, false});
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    const std::string added = bytes().substr(file_.size());
    EXPECT_THAT(added, HasSubstr("/Interpolate true"));
    EXPECT_THAT(added, HasSubstr("/Interpolate false"));
    EXPECT_THAT(newContent(), HasSubstr("/X2 Do"));
    std::vector<bool> smooth;
    for (const Art art : hanger().images) {
        smooth.push_back(document_->placedImage(art).isSmooth);
    }
    EXPECT_EQ(smooth, (std::vector<bool>{true, true, true, false}));

    openImages(two);
    PlacedImage rough = document_->placedImage(hanger().images[0]);
    rough.isSmooth = false;
    document_->setPlacedImage(hanger().images[0], rough);
    ASSERT_EQ(save(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre(HasSubstr("write 1011")));
    EXPECT_EQ(bytes(), file_);
}

TEST_F(ImagePatchTest, NamesThatContentUsesInVainStaySo) {
    const std::string form = "/Subtype /Form /BBox [0 0 9 9]";
    openFile(
        PdfBuilder::onePage("q 9 0 0 9 10 20 cm /A Do Q /X1 Do /Fm Do 0 0 5 5 re f /X",
                            "/Resources << /XObject << /A 20 0 R /Fm 21 0 R /Own 22 0 R >> /Font "
                            "<< /T 23 0 R >> >> /Annots [25 0 R]")
            .stream(20, "abcd", gray)
            .stream(21, "/X#32 Do", form)
            .stream(22, "/X3 Do", form + " /Resources << >>")
            .object(23, "<< /Subtype /Type3 /CharProcs << /a 24 0 R >> >>")
            .stream(24, "9 0 d0 /X4 Do")
            .object(25, "<< /Subtype /Stamp /Rect [0 0 9 9] /AP << /N << /On 26 0 R >> >> >>")
            .stream(26, "/X5 Do", form)
            .bytes());
    Hanger edits = hanger();
    for (int i = 0; i < 2; ++i) {
        edits.add(edits.picture({.width = 1, .height = 1}, "a"), {fixedOne, 0, 0, fixedOne, 9, 0});
    }
    ASSERT_EQ(save(), 0U);
    const std::string page = object("3");
    // Some readers look further out for what a form's own resources lack.
    for (const char* const name : {"/X1", "/X2", "/X3", "/X4", "/X5"}) {
        EXPECT_THAT(page, Not(HasSubstr(name)));
    }
    EXPECT_THAT(page, HasSubstr("/X6 "));
}

TEST_F(ImagePatchTest, AFrameFromElsewhereIsRefusedInItsOwnWords) {
    openImages(two);
    Hanger edits = hanger();
    bool wantsBytes = false;
    const Image elsewhere = document_->images().add(
        {.width = 2, .height = 2, .key = "20-1234", .isPlaceholder = true}, wantsBytes);
    edits.add(elsewhere, {fixedOne, 0, 0, fixedOne, 0, 0});
    EXPECT_NE(save(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre("error 31"));
    EXPECT_EQ(bytes(), file_);

    openImages(two);
    Hanger(*document_)
        .add(document_->images().add({.width = 2, .height = 2}, ImageFile{}, nullptr),
             {fixedOne, 0, 0, fixedOne, 0, 0});
    EXPECT_NE(save(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre("error 31"));
}

TEST_F(ImagePatchTest, TilesHoldImages) {
    openImages(two);
    Hanger edits = hanger();
    Pattern pattern{.tile = document_->makeArtwork(),
                    .left = 0,
                    .bottom = 0,
                    .right = 10,
                    .top = 10,
                    .stepX = 10,
                    .stepY = 10,
                    .matrix = {}};
    const Art placed = document_->make(ArtKind::placed, Placement::inside, pattern.tile);
    document_->setPlacedImage(placed, {.image = edits.picture({.width = 1, .height = 1}, "a"),
                                       .matrix = {5 * fixedOne, 0, 0, 5 * fixedOne, 0, 0}});
    const PaintSource source = document_->addPattern(pattern);
    Artist artist(*document_);
    artist.style(artist.add(0, 0, 20, 20), [&](PathStyle& style) {
        style.fill = {.kind = ColourKind::pattern, .component = {}, .source = source};
    });
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    const std::string added = bytes().substr(file_.size());
    EXPECT_THAT(added, HasSubstr("/X1 Do"));
    EXPECT_THAT(added, HasSubstr("/Subtype /Image /Width 1"));
}

TEST_F(ImagePatchTest, APageThatIsDrawnAnewHasItsImages) {
    openImages(two);
    Hanger edits = hanger();
    const Image picture = edits.picture({.width = 1, .height = 1}, "a");
    edits.show(1, picture);
    edits.add(picture, {fixedOne, 0, 0, fixedOne, 0, 0});
    const Art group = document_->make(ArtKind::group, Placement::inFront, edits.images[0]);
    document_->reorder(edits.images[0], Placement::inside, group);
    const std::string edited = look();
    digest_ = 1; // another page
    extension_.overwrites = true;
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    ASSERT_FALSE(saved_.back().isPatched);
    ASSERT_EQ(open(), 0U);
    std::string reopened = look(); // the new one has an object by now
    const std::string number = reopened.substr(reopened.find('\n') + 1, 2);
    for (std::size_t at = 0; (at = reopened.find("\n" + number + " ")) != std::string::npos;) {
        reopened.replace(at + 1, 2, "new");
    }
    EXPECT_EQ(reopened, edited);
    EXPECT_THAT(object("3"), HasSubstr("/XObject <<\n/X1 20 0 R\n/X2 "));
    EXPECT_THAT(object("3"), Not(HasSubstr("/X3")));
}

} // namespace
} // namespace corvane
