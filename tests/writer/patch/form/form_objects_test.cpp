// New forms as objects of the file: their dictionaries, and how many are written.
#include "tests/writer/patch/form/form_fixture.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

using FormObjectsTest = FormPatchTest;

TEST_F(FormObjectsTest, BoxesGrowWithWhatAPersonSees) {
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

TEST_F(FormObjectsTest, CopiesHaveNoPlaceInTheStructure) {
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

TEST_F(FormObjectsTest, EverySaveBeginsFromWhatWasOpened) {
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

TEST_F(FormObjectsTest, OnlyWhatChangedIsWritten) {
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

TEST_F(FormObjectsTest, WhatFormsHoldCountsWhereMuchIsMissing) {
    openFile(file("/A Do 0 0 5 5 re f", squares + "9 9 9 9 re f", "").bytes());
    FormArtist edited = formArtist();
    edited.remove(edited.at(0));
    edited.remove(edited.at(1));
    EXPECT_NE(save(), 0U);
    ASSERT_EQ(missing_.size(), 1U);
    EXPECT_EQ(missing_[0].missing, 2);
    EXPECT_EQ(missing_[0].whole, 4);
}

/// A path that goes on behind the groups that it began in leaves nothing of them.
TEST_F(FormObjectsTest, PathsThatGoOnBehindGroups) {
    const auto hasEmptyGroup = [&](Art top) {
        std::vector<Art> groups{top};
        for (std::size_t i = 0; i < groups.size(); ++i) {
            const Art clip =
                document_->clipped(groups[i]) ? document_->firstChild(groups[i]) : Art::null;
            const Art first =
                clip == Art::null ? document_->firstChild(groups[i]) : document_->nextSibling(clip);
            if (first == Art::null && i != 0) {
                return true;
            }
            for (Art art = first; art != Art::null; art = document_->nextSibling(art)) {
                if (document_->kind(art) == ArtKind::group) {
                    groups.push_back(art);
                }
            }
        }
        return false;
    };
    const std::string layer = "/OC /L BDC ";
    struct Row {
        std::string content; ///< of the form
        std::size_t paths;
    };
    const Row rows[] = {
        {layer + "0 0 5 5 re W n 5 5 8 8 re EMC S", 1},
        {layer + "BT 7 Tr /G 9 Tf (a) Tj ET 5 5 8 8 re EMC S", 1},
        {layer + "0 0 m EMC S", 0},
        {"q 0 0 5 5 re W n " + layer + "5 5 8 8 re Q 0 0 30 30 re W n", 0},
        {"q q 0 0 5 5 re W n 1 1 2 2 re Q f Q", 1},
        {"q 0 0 9 9 re W n 1 1 2 2 re q Q f Q", 1},
        {"q " + layer + "1 1 2 2 re f 3 3 2 2 re EMC f Q", 2},
    };
    for (const Row& row : rows) {
        PdfBuilder page = file("/A Do 0 0 5 5 re f", row.content, "");
        page.stream(30, row.content,
                    std::string(formEntries) +
                        "/Resources << /Font << /G 34 0 R >> /Properties << /L 35 0 R >> >> "
                        "/BBox [0 0 500 500]")
            .object(35, "<< /Type /OCG /Name (L) >>");
        openFile(page.bytes());
        EXPECT_FALSE(hasEmptyGroup(document_->layerArt(document_->firstLayer()))) << row.content;
        EXPECT_EQ(seen().size(), row.paths + 1) << row.content;
        EXPECT_EQ(save(), 0U) << row.content;
        EXPECT_TRUE(saved_.back().isNothing) << row.content;
    }
}

TEST_F(FormObjectsTest, WhatCameOutOfAFormIsNotMissing) {
    struct Row {
        const char* name;
        std::string content; ///< of the form
        std::function<void(FormArtist&)> edit;
        std::int32_t missing;
    };
    const Row rows[] = {
        {"it is dissolved", squares, [](FormArtist& it) { it.ungroup(it.forms[0]); }, 0},
        {"so is one in it", squares + "/B Do",
         [](FormArtist& it) {
             it.ungroup(it.forms[0]);
             it.ungroup(it.forms[1]);
         },
         0},
        {"one stays in another", squares + "/B Do", [](FormArtist& it) { it.ungroup(it.forms[0]); },
         0},
        {"a part goes", squares + squares,
         [](FormArtist& it) {
             it.ungroup(it.forms[0]);
             for (const std::size_t gone : {0U, 1U, 2U}) {
                 it.remove(it.at(gone));
             }
         },
         3},
        {"it paints what no art shows", squares + "9 0 0 9 0 0 cm /None Do /Odd Do",
         [](FormArtist& it) { it.ungroup(it.forms[0]); }, 2},
    };
    for (const Row& row : rows) {
        missing_.clear();
        openFile(file("/A Do 0 0 5 5 re f", row.content, "0 0 7 7 re f 1 1 7 7 re f").bytes());
        FormArtist edited = formArtist();
        row.edit(edited);
        EXPECT_EQ(save() != 0, row.missing != 0) << row.name;
        EXPECT_EQ(missing_.empty() ? 0 : missing_[0].missing, row.missing) << row.name;
    }
}

/// A pattern that was set around a form lies on the page, and not in the form's space.
TEST_F(FormObjectsTest, APatternThatItInheritsMovesAlong) {
    openFile(withResources(PdfBuilder::onePage("/Pattern cs /P scn /A Do /B Do",
                                               "/Resources << /XObject << /A 30 0 R /B 31 0 R >> "
                                               "/Pattern << /P 23 0 R >> >>"))
                 .stream(30, "0 0 9 9 re f", std::string(formEntries) + "/BBox [0 0 50 50]")
                 .stream(31, "20 0 9 9 re f", std::string(formEntries) + "/BBox [0 0 50 50]")
                 .bytes());
    const auto patternOf = [&](std::size_t path) {
        return document_->pattern(document_->style(formArtist().at(path)).fill.source);
    };
    const Pattern was = patternOf(0);
    FormArtist a = formArtist();
    a.moveAll(a.forms[0], 7, 3);
    Pattern moved = was;
    moved.tile = document_->makeArtwork();
    document_->duplicate(document_->firstChild(was.tile), Placement::inside, moved.tile);
    moved.matrix.tx += 7;
    moved.matrix.ty += 3;
    a.style(a.at(0), [&](PathStyle& style) { style.fill.source = document_->addPattern(moved); });
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    ASSERT_EQ(open(), 0U);
    EXPECT_EQ(newForms(), 0U);
    EXPECT_EQ(patternOf(0).matrix, moved.matrix) << newContent();
    EXPECT_EQ(patternOf(1).matrix, was.matrix) << "of the other form";
}

} // namespace
} // namespace corvane
