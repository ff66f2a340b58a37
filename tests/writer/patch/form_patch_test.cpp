// Edits inside forms, saved: each becomes a new object that one place draws, and all else that
// draws the form stays as it was.
#include "tests/reader/seen_text.h"
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::size_t countOf(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos;
         at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

/// Edits of a page that draws forms.
class FormArtist : public Artist {
public:
    explicit FormArtist(Document& edited) : Artist(edited) {
        for (Layer layer = document.lastLayer(); layer != Layer::null;
             layer = document.previousLayer(layer)) {
            list(document.layerArt(layer));
        }
    }

    void moveAll(Art art, double dx, double dy) {
        if (document.kind(art) == ArtKind::group) {
            for (const Art child : childrenOf(art)) {
                moveAll(child, dx, dy);
            }
        } else if (document.kind(art) == ArtKind::text) {
            document.transformText(art, {.tx = dx, .ty = dy});
        } else if (document.kind(art) == ArtKind::placed) {
            PlacedImage placed = document.placedImage(art);
            placed.matrix.tx += fixedFromReal(dx);
            placed.matrix.ty += fixedFromReal(dy);
            document.setPlacedImage(art, placed);
        } else {
            move(art, dx, dy);
        }
    }
    Art duplicate(Art group) { return document.duplicate(group, Placement::inFront, group); }
    /// What the form holds stays in its place.
    void ungroup(Art group) {
        if (document.clipped(group)) {
            release(group);
        }
        for (const Art art : childrenOf(group)) {
            document.reorder(art, Placement::behind, group);
        }
        document.dispose(group);
    }
    void retype(Art old, std::string_view letters) {
        TextRun run = document.textRun(old, 0);
        run.text = letters;
        run.pieces = {};
        const Art made = document.make(ArtKind::text, Placement::inFront, old);
        document.setTextLine(made, document.textLine(old));
        document.addTextRun(made, run);
        document.dispose(old);
    }
    /// From the front.
    std::vector<Art> childrenOf(Art group) const {
        std::vector<Art> children;
        for (Art art = document.firstChild(group); art != Art::null;
             art = document.nextSibling(art)) {
            children.push_back(art);
        }
        return children;
    }

    std::vector<Art> forms; ///< from the back, the outer ones in front of those within them
    std::vector<Art> texts;
    std::vector<Art> images;

private:
    void list(Art container) {
        if (document.form(container)) {
            forms.push_back(container);
        }
        for (Art art = document.lastChild(container); art != Art::null;
             art = document.previousSibling(art)) {
            const ArtKind kind = document.kind(art);
            if (kind == ArtKind::group) {
                list(art);
            } else if (kind == ArtKind::text || kind == ArtKind::placed) {
                (kind == ArtKind::text ? texts : images).push_back(art);
            }
        }
    }
};

struct FormEdit {
    const char* name;
    std::string content; ///< of the page
    std::string a;       ///< content of the form /A, whose box cuts nothing
    std::string b;       ///< and of /B, which /A can draw
    std::function<void(FormArtist&)> edit;
    const char* facts; ///< kept, changed, added, removed, moved
    std::size_t forms; ///< new ones
    /// In the page's content, in this order.
    std::vector<std::string> pieces;
};

class FormPatchTest : public PatchTest {
protected:
    static constexpr std::string_view formEntries = "/Type /XObject /Subtype /Form ";
    static constexpr std::string_view named =
        "/Resources << /XObject << /A 30 0 R /B 31 0 R /C 32 0 R /I 33 0 R >> /Font << /F 20 0 R "
        ">> /ExtGState << /Half << /ca .5 >> >> >> ";

    static PdfBuilder file(std::string_view content, std::string_view a, std::string_view b,
                           std::string_view entriesOfA = "/BBox [0 0 500 500] ") {
        const std::string ofA =
            std::string(formEntries) +
            "/Resources << /XObject << /B 31 0 R /J 33 0 R >> /Font << /G 34 0 R >> >> " +
            std::string(entriesOfA);
        // /C has the name of /A's form, but its resources are those of the page.
        return PdfBuilder::onePage(content, named)
            .object(2, "<< /Type /Pages /Kids [3 0 R 5 0 R] /Count 2 >>")
            .object(5, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 4 0 R " +
                           std::string(named) + " >>")
            .object(20, "<< /Type /Font /Subtype /Type1 /BaseFont /Times-Roman >>")
            .stream(30, a, ofA)
            .stream(31, b,
                    std::string(formEntries) +
                        "/BBox [0 0 500 500] /Matrix [.5 0 0 .5 0 0] /Resources << >>")
            .stream(32, a, std::string(formEntries) + "/BBox [0 0 500 500]")
            .stream(33, "abcd",
                    "/Type /XObject /Subtype /Image /Width 2 /Height 2 /BitsPerComponent 8 "
                    "/ColorSpace /DeviceGray")
            .object(34, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>");
    }

    FormArtist formArtist() { return FormArtist(*document_); }

    /// Images and text, as `seen` tells paths.
    std::string look() {
        std::string text = test::runsText(*document_);
        for (const Art art : formArtist().images) {
            const PlacedImage placed = document_->placedImage(art);
            const std::string key(document_->images().facts(placed.image).key);
            text += "\n" + key;
            for (const Fixed number : {placed.matrix.a, placed.matrix.b, placed.matrix.c,
                                       placed.matrix.d, placed.matrix.tx, placed.matrix.ty}) {
                text += " " + test::realText(std::round(realFromFixed(number) * 64) / 64);
            }
        }
        return text;
    }

    std::string update() const { return bytes().substr(file_.size()); }
    std::size_t newForms() const { return countOf(update(), "/Subtype /Form"); }

    /// Saves; the second page, which draws the same, is as before.
    void expectSavedAlone(test::SeenTolerance tolerance = {}) {
        const std::string expected = look();
        expectSaved(tolerance);
        EXPECT_EQ(look(), expected);
    }

    void expectOtherPageAsBefore(const std::vector<test::SeenPath>& before) {
        page_ = 2;
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(differenceOf(before, seen(), {}), "");
        page_ = 1;
    }
};

const std::string squares = "1 0 0 rg 10 10 30 30 re f\n0 0 1 rg 50 50 30 30 re f\n";
const std::string placedA = "q 1 0 0 1 5 5 cm /A Do Q\n0 0 10 10 re f";

TEST_F(FormPatchTest, Edits) {
    const FormEdit rows[] = {
        {"an object is painted otherwise",
         placedA,
         squares,
         "",
         [](FormArtist& it) { it.fill(it.at(0), .5); },
         "2 1 0 0 0",
         1,
         {"q 1 0 0 1 5 5 cm", "/X1 Do", "Q\n0 0 10 10 re f"}},
        {"an object goes",
         placedA,
         squares,
         "",
         [](FormArtist& it) { it.remove(it.at(1)); },
         "2 0 0 1 0",
         1,
         {"/X1 Do"}},
        {"an object is drawn in it",
         placedA,
         squares,
         "",
         [](FormArtist& it) { it.add(20, 20, 60, 60, it.at(0)); },
         "3 0 1 0 0",
         1,
         {"/X1 Do"}},
        {"its objects change their order",
         placedA,
         squares,
         "",
         [](FormArtist& it) { it.raise(it.at(0), it.at(1)); },
         "2 0 0 0 1",
         1,
         {"/X1 Do"}},
        {"all of it is moved",
         placedA,
         squares,
         "",
         [](FormArtist& it) { it.moveAll(it.forms[0], 7, 3); },
         "1 2 0 0 0",
         0,
         {"1 0 0 1 7 3 cm\n/A Do"}},
        {"under a clip of its own it is moved",
         placedA,
         "q 10 10 20 20 re W n " + squares + "Q",
         "",
         [](FormArtist& it) { it.moveAll(it.forms[0], 7, 3); },
         "",
         0,
         {"1 0 0 1 7 3 cm\n/A Do"}},
        {"one of two drawings is changed",
         "/A Do q 1 0 0 1 300 0 cm /A Do Q",
         squares,
         "",
         [](FormArtist& it) { it.fill(it.at(2), .5); },
         "3 1 0 0 0",
         1,
         {"/A Do", "300 0 cm", "/X1 Do"}},
        {"a form within a form is changed",
         "/A Do",
         "/B Do 0 1 0 rg 1 1 5 5 re f",
         squares,
         [](FormArtist& it) { it.fill(it.at(0), .5); },
         "2 1 0 0 0",
         2,
         {"/X1 Do"}},
        {"a form within a form is moved",
         "/A Do",
         "/B Do 0 1 0 rg 1 1 5 5 re f",
         squares,
         [](FormArtist& it) { it.moveAll(it.forms[1], 9, 0); },
         "1 2 0 0 0",
         1,
         {"/X1 Do"}},
        {"forms within one another are moved",
         "/A Do",
         "/B Do 0 1 0 rg 1 1 5 5 re f",
         squares,
         [](FormArtist& it) { it.moveAll(it.forms[0], 9, 4); },
         "0 3 0 0 0",
         0,
         {"1 0 0 1 9 4 cm\n/A Do"}},
        {"a copy",
         placedA,
         squares,
         "",
         [](FormArtist& it) { it.moveAll(it.duplicate(it.forms[0]), 100, 0); },
         "3 0 2 0 0",
         0,
         {"/A Do", "1 0 0 1 100 0 cm\n/A Do"}},
        {"a copy that is painted otherwise",
         placedA,
         squares,
         "",
         [](FormArtist& it) { it.fill(it.document.lastChild(it.duplicate(it.forms[0])), .5); },
         "3 0 2 0 0",
         1,
         {"/A Do", "/X1 Do"}},
        {"it is raised",
         placedA,
         squares,
         "",
         [](FormArtist& it) { it.raise(it.forms[0], it.at(2)); },
         "",
         0,
         {}},
        {"it goes",
         placedA + " 0 20 5 5 re f 0 40 5 5 re f",
         squares,
         "",
         [](FormArtist& it) { it.remove(it.forms[0]); },
         "3 0 0 2 0",
         0,
         {}},
        {"it is ungrouped",
         placedA + " 0 20 5 5 re f 0 40 5 5 re f",
         squares,
         "",
         [](FormArtist& it) { it.ungroup(it.forms[0]); },
         "3 0 2 2 0",
         0,
         {}},
        {"its resources are those of the page",
         "/C Do",
         "/Half gs " + squares,
         "",
         [](FormArtist& it) { it.fill(it.at(0), .5); },
         "1 1 0 0 0",
         1,
         {"/X1 Do"}},
        {"it begins with a colour of the page",
         "1 0 0 rg /A Do",
         "0 0 10 10 re f 0 1 0 rg 5 5 9 9 re f",
         "",
         [](FormArtist& it) { it.raise(it.at(0), it.at(1)); },
         "1 0 0 0 1",
         1,
         {"1 0 0 rg /X1 Do"}},
        {"and new objects do not",
         "1 0 0 rg /A Do",
         "0 0 10 10 re f 5 5 9 9 re f",
         "",
         [](FormArtist& it) {
             it.add(20, 20, 60, 60, it.at(1));
             it.raise(it.at(0), it.at(1));
         },
         "",
         1,
         {"1 0 0 rg /X1 Do"}},
        {"what it holds gets into another form",
         "/A Do 1 0 0 1 20 20 cm /B Do",
         squares,
         squares,
         [](FormArtist& it) { it.raise(it.at(0), it.at(3)); },
         "3 0 1 1 0",
         2,
         {"/X1 Do", "/X2 Do"}},
        {"it gets into another form",
         "/A Do 0 0 5 5 re f 1 0 0 1 20 20 cm /B Do",
         squares,
         squares + "0 0 7 7 re f",
         [](FormArtist& it) { it.raise(it.forms[0], it.at(5)); },
         "4 0 2 2 0",
         1,
         {"/X1 Do"}},
        {"a copy gets into another form, and is moved",
         "/A Do 1 0 0 1 20 20 cm /C Do",
         squares,
         "",
         [](FormArtist& it) {
             const Art copy = it.duplicate(it.forms[1]);
             it.moveAll(copy, 30, 10);
             it.raise(copy, it.at(0));
         },
         "4 0 2 0 0",
         2,
         {"/X1 Do", "/C Do"}},
        {"text is typed anew",
         "/A Do 0 0 5 5 re f",
         "BT /G 12 Tf 50 60 Td (Quay) Tj ET 1 0 0 rg 0 0 9 9 re f",
         "",
         [](FormArtist& it) { it.retype(it.texts[0], "Pier"); },
         "2 1 0 0 0",
         1,
         {"/X1 Do"}},
        {"text is moved",
         "/A Do 0 0 5 5 re f",
         "BT /G 12 Tf 50 60 Td (Quay) Tj ET 0 0 9 9 re f",
         "",
         [](FormArtist& it) { it.moveAll(it.texts[0], 9, 0); },
         "2 1 0 0 0",
         1,
         {"/X1 Do"}},
        {"text is ungrouped",
         "/A Do 0 0 5 5 re f 1 20 5 5 re f",
         "BT /G 12 Tf 50 60 Td (Quay) Tj ET",
         "",
         [](FormArtist& it) { it.ungroup(it.forms[0]); },
         "2 0 1 1 0",
         0,
         {}},
        {"an image is moved",
         "/A Do 0 0 5 5 re f",
         "q 9 0 0 9 10 20 cm /J Do Q 0 0 5 5 re f",
         "",
         [](FormArtist& it) { it.moveAll(it.images[0], 9, 18); },
         "2 1 0 0 0",
         1,
         {"/X1 Do"}},
        {"an inline image is moved",
         "/A Do 0 0 5 5 re f",
         "q 9 0 0 9 10 20 cm BI /W 2 /H 1 /BPC 8 /CS /G ID EI EI Q 0 0 5 5 re f",
         "",
         [](FormArtist& it) { it.moveAll(it.images[0], 9, 18); },
         "2 1 0 0 0",
         1,
         {"/X1 Do"}},
        {"an image is ungrouped",
         "/A Do 0 0 5 5 re f 0 0 6 6 re f",
         "q 9 0 0 9 10 20 cm /J Do Q",
         "",
         [](FormArtist& it) { it.ungroup(it.forms[0]); },
         "2 0 1 1 0",
         0,
         {}},
        {"images and text are moved with it",
         "/A Do 0 0 5 5 re f",
         "q 9 0 0 9 10 20 cm /J Do Q BT /G 12 Tf 50 60 Td (Quay) Tj ET " + squares,
         "",
         [](FormArtist& it) { it.moveAll(it.forms[0], -3, 18); },
         "1 4 0 0 0",
         0,
         {"1 0 0 1 -3 18 cm\n/A Do"}},
    };
    for (const FormEdit& row : rows) {
        SCOPED_TRACE(row.name);
        const std::vector<test::SeenPath> before = [&] {
            openFile(file(row.content, row.a, row.b).bytes());
            return seen();
        }();
        FormArtist edited = formArtist();
        row.edit(edited);
        expectSavedAlone();
        if (*row.facts != '\0') {
            EXPECT_EQ(facts(), row.facts);
        }
        EXPECT_EQ(newForms(), row.forms) << update();
        expectInOrder(row.pieces);
        expectOtherPageAsBefore(before);
    }
}

TEST_F(FormPatchTest, BoxesGrowWithWhatAPersonSees) {
    struct Row {
        const char* name;
        std::string entries; ///< of the form
        std::function<void(FormArtist&)> edit;
        std::string wanted;
    };
    const std::string cut = "/BBox [0 0 60.5 60] ";
    const Row rows[] = {
        {"the clip stays", cut, [](FormArtist& it) { it.fill(it.at(0), .5); },
         "/BBox [0 0 60.5 60]"},
        {"the clip goes", cut, [](FormArtist& it) { it.release(it.forms[0]); },
         "/BBox [ 0 0 80 80 ]"},
        {"the clip is another one", cut, [](FormArtist& it) { it.move(it.clips[0], 10, 10); },
         "/BBox [ 0 0 80 80 ]"},
        {"in a space of its own", "/BBox [0 0 30 30] /Matrix [0 2 -2 0 300 0] ",
         [](FormArtist& it) { it.release(it.forms[0]); }, "/BBox [ 0 0 80 80 ]"},
        {"nothing beyond it", "/BBox [0 0 90 90] ",
         [](FormArtist& it) {
             it.fill(it.at(0), .5);
             it.release(it.forms[0]);
         },
         "/BBox [0 0 90 90]"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        openFile(file("/A Do", squares, "", row.entries).bytes());
        FormArtist edited = formArtist();
        row.edit(edited);
        expectSavedAlone();
        EXPECT_THAT(update(), HasSubstr(row.wanted));
    }
}

TEST_F(FormPatchTest, CopiesHaveNoPlaceInTheStructure) {
    const std::string entries = "/BBox [0 0 500 500] /StructParents 7 /PieceInfo << >> "
                                "/LastModified (D:2020) /Group << /S /Transparency >> ";
    openFile(file("/A Do", squares, "", entries).bytes());
    FormArtist edited = formArtist();
    const Art copy = edited.duplicate(edited.forms[0]);
    edited.fill(edited.document.lastChild(copy), .75);
    edited.fill(edited.at(0), .5);
    expectSavedAlone();
    EXPECT_EQ(newForms(), 2U);
    EXPECT_EQ(countOf(update(), "/StructParents 7"), 1U);
    EXPECT_EQ(countOf(update(), "/Group << /S /Transparency >>"), 2U);
    EXPECT_THAT(update(), Not(HasSubstr("(D:2020)")));
}

TEST_F(FormPatchTest, EverySaveBeginsFromWhatWasOpened) {
    openFile(file("/A Do 0 0 5 5 re f", "/B Do", squares).bytes());
    FormArtist edited = formArtist();
    edited.fill(edited.at(0), .5);
    ASSERT_EQ(save(), 0U);
    EXPECT_EQ(newForms(), 2U);
    // The same artwork, with another edit.
    edited.fill(edited.at(1), .25);
    ASSERT_EQ(save(), 0U);
    EXPECT_EQ(facts(), "1 2 0 0 0");
    EXPECT_EQ(newForms(), 4U);
    const std::vector<test::SeenPath> wanted = seen();
    ASSERT_EQ(open(), 0U);
    EXPECT_EQ(differenceOf(wanted, seen(), {}), "");
}

TEST_F(FormPatchTest, OnlyWhatChangedIsWritten) {
    std::string content;
    constexpr int drawings = 300;
    for (int i = 0; i < drawings; ++i) {
        content += "q 1 0 0 1 " + std::to_string(i % 50 * 9) + " " + std::to_string(i / 50 * 9) +
                   " cm /A Do Q\n";
    }
    openFile(file(content, "1 0 0 rg 0 0 4 4 re f 0 g 4 4 4 4 re f", "").bytes());
    FormArtist edited = formArtist();
    edited.fill(edited.at(drawings), .5);
    expectSaved();
    EXPECT_EQ(facts(), std::to_string(2 * drawings - 1) + " 1 0 0 0");
    EXPECT_EQ(newForms(), 1U);
    EXPECT_EQ(countOf(newContent(), "/A Do"), drawings - 1U);
}

TEST_F(FormPatchTest, WhatFormsHoldCountsWhereMuchIsMissing) {
    openFile(file("/A Do 0 0 5 5 re f", squares + "9 9 9 9 re f", "").bytes());
    FormArtist edited = formArtist();
    edited.remove(edited.at(0));
    edited.remove(edited.at(1));
    EXPECT_NE(save(), 0U);
    ASSERT_EQ(missing_.size(), 1U);
    EXPECT_EQ(missing_[0].missing, 2);
    EXPECT_EQ(missing_[0].whole, 4);
}

} // namespace
} // namespace corvane
