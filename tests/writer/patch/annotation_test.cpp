// Annotations of the artwork, which a save leaves as they are, and content of hidden layers.
#include "app/artwork/geometry/transform_art.h"
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class AnnotationTest : public PatchTest {
protected:
    void SetUp() override {
        PatchTest::SetUp();
        extension_.annotationKept = [](void* context, std::string_view name) {
            static_cast<AnnotationTest*>(context)->kept_.emplace_back(name);
        };
    }

    void openAnnotated(const std::string& entries = "") {
        openFile(withResources(PdfBuilder::onePage("0 0 5 5 re f /OC /L BDC 9 9 5 5 re f EMC",
                                                   std::string(resources) + entries +
                                                       "/Annots [30 0 R 33 0 R 31 0 R]"))
                     .object(1, "<< /Type /Catalog /Pages 2 0 R /OCProperties << /D << /OFF "
                                "[22 0 R] >> >> >>")
                     .object(30, "<< /Type /Annot /Subtype /Stamp /Rect [50 50 70 70] /AP << /N "
                                 "32 0 R >> >>")
                     .object(31, "<< /Type /Annot /Subtype /Link /Rect [90 50 99 70] >>")
                     .object(33, "<< /Type /Annot /Subtype /Square /Rect [20 50 40 70] /C [1 0 0] "
                                 "/CA .5 >>")
                     .stream(32, "0 0 8 8 re f BT /F 9 Tf (a) Tj ET",
                             "/Subtype /Form /BBox [0 0 10 10] /Resources << /Font << /F 20 0 R >> "
                             ">>")
                     .bytes());
    }
    /// Another group with all that it has but its mark.
    static void unmark(Document& document, Art group) {
        const Art made = document.make(ArtKind::group, Placement::inFront, group);
        document.setAppearance(made, document.appearance(group));
        const bool isClipped = document.clipped(group);
        document.setClipped(group, false);
        while (document.firstChild(group) != Art::null) {
            document.reorder(document.lastChild(group), Placement::inside, made);
        }
        document.setClipped(made, isClipped);
        document.dispose(group);
    }
    /// The layer in front is one like any other, and annotations are groups like any other.
    static void unmarkAll(Document& document) {
        const Layer front = document.firstLayer();
        LayerProperties properties = document.layerProperties(front);
        properties.role = LayerRole::page;
        document.setLayerProperties(front, properties);
        std::vector<Art> groups;
        for (Art art = document.firstChild(document.layerArt(front)); art != Art::null;
             art = document.nextSibling(art)) {
            groups.push_back(art);
        }
        std::ranges::for_each(groups, [&](Art group) { unmark(document, group); });
    }
    static void addLetter(Document& document, double x, double y) {
        const Art text = document.make(ArtKind::text, Placement::inside,
                                       document.layerArt(document.firstLayer()));
        document.setTextLine(
            text, {.matrix = {fixedOne, 0, 0, fixedOne, fixedFromReal(x), fixedFromReal(y)}});
        TextRun run{
            .font = document.addFont({.family = "DejaVu Sans"}), .size = 9 * fixedOne, .text = "a"};
        run.style.fillPaint = 1;
        document.addTextRun(text, run);
    }
    static void removeAll(Document& document, Art group) {
        while (document.firstChild(group) != Art::null) {
            document.dispose(document.firstChild(group));
        }
    }
    Art layer() { return document_->layerArt(document_->firstLayer()); }
    /// Artwork that does not say where it lay begins with what is seen of it.
    void forgetPlace() {
        Page& page = document_->page();
        const Rect seen = page.bounds();
        for (Layer each = document_->firstLayer(); each != Layer::null;
             each = document_->nextLayer(each)) {
            transformArt(*document_, document_->layerArt(each),
                         {.tx = -realFromFixed(seen.left), .ty = -realFromFixed(seen.bottom)});
        }
        page.setBounds({0, seen.top - seen.bottom, seen.right - seen.left, 0});
        page.setArtboard({seen.right - seen.left, seen.top - seen.bottom});
    }

    std::vector<std::string> kept_;
};

TEST_F(AnnotationTest, AreLeftAlone) {
    struct Row {
        const char* name;
        std::function<void(Document&, Art)> edit; ///< of the layer's own group
        std::vector<std::string> kept;
        bool isNothing = false;
    };
    const auto firstPath = [](Document& document, Art group) {
        return document.lastChild(document.lastChild(group));
    };
    const Row rows[] = {
        {"nothing", [](Document&, Art) {}, {}, true},
        {"a square in front of them",
         [](Document& document, Art) { Artist(document).add(1, 1, 2, 2); },
         {}},
        {"one is repainted",
         [&](Document& document, Art group) {
             Artist(document).fill(firstPath(document, group), .5);
         },
         {"stamp, object 30"}},
        {"one without an appearance stream is repainted",
         [&](Document& document, Art group) {
             const Art square = document.nextSibling(document.firstChild(group));
             Artist(document).fill(document.lastChild(square), .5);
         },
         {"rectangle, object 33"}},
        {"two are emptied; nothing was seen of the link",
         [](Document& document, Art group) {
             for (const Art art : {document.firstChild(group), document.lastChild(group)}) {
                 document.setClipped(art, false);
                 while (document.firstChild(art) != Art::null) {
                     document.dispose(document.firstChild(art));
                 }
             }
         },
         {"stamp, object 30"}},
    };
    for (const Row& row : rows) {
        openAnnotated();
        kept_.clear();
        row.edit(*document_, layer());
        const bool isRefused = !row.kept.empty();
        EXPECT_EQ(save() != 0, isRefused) << row.name;
        EXPECT_EQ(kept_, row.kept) << row.name;
        if (isRefused) {
            EXPECT_EQ(bytes(), file_) << row.name;
            EXPECT_THAT(::testing::PrintToString(front_.taken()), HasSubstr("error 34"));
            extension_.overwrites = true;
            EXPECT_EQ(save(), 0U) << row.name;
            extension_.overwrites = false;
            EXPECT_EQ(bytes(), file_) << row.name << ": nothing else was changed";
            continue;
        }
        EXPECT_EQ(saved_.back().isNothing, row.isNothing) << row.name;
        EXPECT_THAT(bytes().substr(file_.size()), Not(HasSubstr("\n30 0 obj"))) << row.name;
    }
    expectInOrder({"0 0 5 5 re f /OC /L BDC 9 9 5 5 re f EMC"});
}

/// Editors that drop our marks leave annotations as groups like any other, or none at all.
TEST_F(AnnotationTest, AreKnownAgainWithoutMarks) {
    struct Row {
        const char* name;
        std::function<void(Document&, Art)> edit; ///< of the layer's own group
        std::vector<std::string> kept;
        std::int32_t added = 0;
    };
    const auto dissolve = [](Document& document, Art group) {
        while (document.firstChild(group) != Art::null) {
            document.reorder(document.lastChild(group), Placement::inFront, group);
        }
        document.dispose(group);
    };
    const Row rows[] = {
        {"marks", [](Document&, Art) {}, {}},
        {"the look of the square is its path's, and the link's group is gone",
         [&](Document& document, Art group) {
             const Art square = document.nextSibling(document.firstChild(group));
             const Art path = document.lastChild(square);
             document.setAppearance(path, document.appearance(square));
             document.setAppearance(square, {});
             dissolve(document, square);
             dissolve(document, document.firstChild(group));
         },
         {}},
        {"a group has the id of an object",
         [](Document& document, Art group) {
             const Art stamp = document.lastChild(group);
             document.setSource(stamp, {.start = 0, .end = 0, .ordinal = 0, .content = 1});
             const Art square = document.nextSibling(document.firstChild(group));
             document.setSource(square, {.start = 0, .end = 0, .ordinal = 0, .content = 2});
         },
         {}},
        {"a square in front of them, which is grouped with one",
         [](Document& document, Art group) {
             Artist artist(document);
             artist.group({document.lastChild(group), artist.add(1, 1, 2, 2)});
         },
         {},
         1},
        {"one has a copy",
         [](Document& document, Art group) {
             document.duplicate(document.lastChild(group), Placement::inside, group);
         },
         {},
         2},
        {"the stamp holds a square more",
         [](Document& document, Art group) {
             Artist(document).add(55, 55, 2, 2, document.lastChild(document.lastChild(group)));
         },
         {"stamp, object 30, whose place holds something new, which becomes content of the page"}},
        {"one is repainted",
         [](Document& document, Art group) {
             const Art square = document.nextSibling(document.firstChild(group));
             Artist(document).fill(document.lastChild(square), .5);
         },
         {"rectangle, object 33, whose place holds something new, which becomes content of the "
          "page"}},
        {"all are gone, and a square is elsewhere",
         [](Document& document, Art group) {
             removeAll(document, group);
             Artist(document).add(1, 1, 2, 2);
         },
         {},
         1},
        {"the same with text",
         [](Document& document, Art group) {
             removeAll(document, group);
             addLetter(document, 150, 150);
         },
         {},
         1},
        {"text where one was",
         [](Document& document, Art group) {
             removeAll(document, group);
             addLetter(document, 25, 55);
         },
         {"rectangle, object 33, whose place holds something new, which becomes content of the "
          "page"}},
    };
    for (const Row& row : rows) {
        openAnnotated();
        kept_.clear();
        unmarkAll(*document_);
        row.edit(*document_, layer());
        EXPECT_EQ(save() != 0, !row.kept.empty()) << row.name;
        EXPECT_EQ(kept_, row.kept) << row.name;
        if (row.kept.empty()) {
            EXPECT_EQ(saved_.back().added, row.added) << row.name;
            EXPECT_EQ(saved_.back().isNothing, row.added == 0) << row.name;
        }
    }
}

/// Markup draws no clip that cuts nothing: where editors drop marks, nothing says that it was
/// there.
TEST_F(AnnotationTest, AreKnownAgainWithoutClipsThatCutNothing) {
    struct Row {
        const char* name;
        const char* content; ///< of an appearance in a box of 20 by 10 points
        bool isKept;
    };
    const Row rows[] = {
        {"a border up to the box", ".5 .5 19 9 re S", true},
        {"a field: text within its own clip", "0 0 20 10 re W n BT /F 9 Tf (a) Tj ET", true},
        {"a line of no width", "0 w 2 2 m 18 8 l S", true},
        {"a path that is cut", "5 5 40 4 re f", false},
        {"a miter beyond the box", "1 1 m 19 5 l 1 9 l S", false},
    };
    for (const Row& row : rows) {
        openFile(withResources(PdfBuilder::onePage("0 0 5 5 re f",
                                                   std::string(resources) + "/Annots [30 0 R]"))
                     .object(30, "<< /Type /Annot /Subtype /Widget /Rect [50 50 70 60] /AP << /N "
                                 "32 0 R >> >>")
                     .stream(32, row.content,
                             "/Subtype /Form /BBox [0 0 20 10] /Resources << /Font << /F 20 0 R >> "
                             ">>")
                     .bytes());
        const Art group = document_->firstChild(layer());
        ASSERT_TRUE(document_->clipped(group)) << row.name;
        document_->setClipped(group, false);
        document_->dispose(document_->firstChild(group));
        unmarkAll(*document_);
        EXPECT_EQ(save() == 0, row.isKept) << row.name;
        EXPECT_TRUE(!row.isKept || saved_.back().isNothing) << row.name;
    }
}

/// A page that is replaced whole keeps its annotations, so none may be drawn into it as well.
TEST_F(AnnotationTest, AreNotDrawnIntoAPageThatIsReplaced) {
    struct Row {
        const char* name;
        std::function<void(Document&, Art)> edit; ///< of the layer's own group
        std::vector<std::string> kept;
        std::size_t drawn = 2; ///< paths of the page
    };
    const auto withoutMarks = [](Document& document, Art) { unmarkAll(document); };
    const auto stampPath = [](Document& document, Art group) {
        return document.lastChild(document.lastChild(group));
    };
    const Row rows[] = {
        {"marked", [](Document&, Art) {}, {}},
        {"without marks", withoutMarks, {}},
        {"marked, with a copy",
         [](Document& document, Art group) {
             const Art stamp = document.lastChild(group);
             document.duplicate(stamp, Placement::inFront, stamp);
         },
         {},
         3},
        {"marked, one repainted",
         [&](Document& document, Art group) {
             Artist(document).fill(stampPath(document, group), .5);
         },
         {"stamp, object 30"}},
        {"without marks, one repainted",
         [&](Document& document, Art group) {
             unmarkAll(document);
             Artist(document).fill(stampPath(document, group), .5);
         },
         {"stamp, object 30, whose place holds something new, which becomes content of the page"},
         3},
    };
    extension_.artworkDigest = nullptr;
    extension_.guardsPage = true;
    extension_.overwrites = true;
    for (const char* const crop : {"", "/CropBox [10 20 110 120] /Rotate 90"}) {
        for (const Row& row : rows) {
            openAnnotated(crop);
            kept_.clear();
            row.edit(*document_, layer());
            forgetPlace();
            const std::size_t annotations = 3;
            EXPECT_EQ(save(), 0U) << row.name;
            EXPECT_EQ(kept_, row.kept) << row.name << crop;
            ASSERT_EQ(open(), 0U);
            EXPECT_EQ(artist().objects.size(), row.drawn + annotations) << row.name << crop;
        }
    }
}

/// An object of the page is no annotation, however alike they look.
TEST_F(AnnotationTest, ArtOfThePageIsNotTakenForOne) {
    openFile(withResources(PdfBuilder::onePage("q 5 5 9 9 re W n 1 1 30 30 re f Q 60 60 9 9 re f",
                                               "/Annots [30 0 R]"))
                 .object(30,
                         "<< /Type /Annot /Subtype /Stamp /Rect [5 5 14 14] /AP << /N 32 0 R >> "
                         ">>")
                 .stream(32, "1 1 30 30 re f", "/Subtype /Form /BBox [5 5 14 14]")
                 .bytes());
    document_->dispose(document_->firstChild(layer()));
    EXPECT_EQ(save(), 0U);
    EXPECT_EQ(saved_.back().removed, 0);
    EXPECT_TRUE(saved_.back().isNothing);
}

/// A further copy of an annotation is content of the page.
TEST_F(AnnotationTest, ACopyIsNew) {
    openAnnotated();
    const Art stamp = document_->lastChild(layer());
    document_->duplicate(stamp, Placement::inFront, stamp);
    EXPECT_EQ(save(), 0U);
    EXPECT_TRUE(kept_.empty());
    EXPECT_EQ(saved_.back().added, 2); // a path and a run of text
}

} // namespace
} // namespace corvane
