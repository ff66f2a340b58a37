// What text clips, edited and saved as patches.
#include "tests/writer/patch/patch_fixture.h"

#include <gtest/gtest.h>

#include <functional>

namespace corvane {
namespace {

class TextClipTest : public PatchTest {
protected:
    /// A line that clips its group, in Helvetica of the page.
    static Art clipLine(Document& document, Art group, std::string_view letters, double x,
                        double y) {
        const Art text = document.make(ArtKind::text, Placement::inside, group);
        document.setTextLine(
            text, {.matrix = {fixedOne, 0, 0, fixedOne, fixedFromReal(x), fixedFromReal(y)}});
        TextRun run{.font = document.addFont({.family = "Helvetica"}),
                    .size = 20 * fixedOne,
                    .text = letters};
        run.style.clip = 1;
        document.addTextRun(text, run);
        return text;
    }
};

struct Row {
    const char* name;
    std::string content;
    std::function<void(Artist&)> edit;
    const char* facts;                 ///< kept, changed, added, removed, moved
    std::vector<std::string> contents; ///< pieces of what is saved, in order
};

TEST_F(TextClipTest, Edits) {
    const std::string clip = "BT /F 20 Tf 7 Tr 100 700 Td (hello) Tj ET ";
    const std::string squares = "100 700 40 9 re f 100 710 40 9 re f ";
    const std::string within = "q " + clip + squares + "Q 0 0 9 9 re f";
    const Row rows[] = {
        {"another colour",
         within,
         [](Artist& it) { it.fill(it.at(0), .5); },
         "2 1 0 0 0",
         {"q " + clip, "q\n.5 g\n100 700 40 9 re", "Q", "100 710 40 9 re f Q 0 0 9 9 re f"}},
        {"an object goes",
         within,
         [](Artist& it) { it.remove(it.at(0)); },
         "2 0 0 1 0",
         {"q " + clip, "100 710 40 9 re f Q"}},
        {"a new object",
         within,
         [](Artist& it) { it.add(110, 705, 5, 5, it.at(0)); },
         "3 0 1 0 0",
         {clip, "100 700 40 9 re f", "110 705 m", "100 710 40 9 re f"}},
        {"another order",
         within,
         [](Artist& it) { it.raise(it.at(0), it.at(1)); },
         "2 0 0 0 1",
         {clip, "100 710 40 9 re f", "100 700 40 9 re", "Q 0 0 9 9 re f"}},
        {"an object gets out of the clip",
         within,
         [](Artist& it) { it.raise(it.at(1), it.at(2)); },
         "2 0 0 0 1",
         {clip, "Q 0 0 9 9 re f", "100 710 40 9 re"}},
        {"an object gets into the clip",
         within,
         [](Artist& it) { it.raise(it.at(2), it.at(1)); },
         "2 0 0 0 1",
         {clip + squares, "Q", "7 Tr", "100 700 Tm\n[<68656C6C6F> ] TJ\nET", "0 0 9 9 re"}},
        {"a clip that is in force nowhere else",
         within,
         [](Artist& it) {
             // Its group comes in front of everything: the letters clip once more there.
             it.raise(it.document.parent(it.clips[0]), it.at(2));
         },
         "",
         {}},
        {"the clip is released",
         within,
         [](Artist& it) { it.release(it.document.parent(it.clips[0])); },
         "1 0 0 0 2",
         {clip + "  Q", "100 700 40 9 re", "100 710 40 9 re", "0 0 9 9 re f"}},
        {"the clip is moved, and what it clips",
         within,
         [](Artist& it) {
             it.document.transformText(it.clips[0], {.tx = 50});
             it.move(it.at(0), 50, 0);
             it.move(it.at(1), 50, 0);
         },
         "1 2 0 0 0",
         {"Tm\n[<68656C6C6F> ] TJ\nET", "150 700 m", "0 0 9 9 re f"}},
        {"all that it clips becomes one thing",
         within,
         [](Artist& it) {
             it.document.setAppearance(it.document.parent(it.clips[0]), {.opacity = .5});
         },
         "1 2 0 0 0",
         {clip + "  Q", "/X1 Do", "0 0 9 9 re f"}},
        {"letters that are painted as well",
         "q BT /F 20 Tf 4 Tr 100 700 Td (hello) Tj ET " + squares + "Q",
         [](Artist& it) { it.fill(it.at(0), .5); },
         "2 1 0 0 0",
         {"BT /F 20 Tf 4 Tr 100 700 Td (hello) Tj ET", ".5 g"}},
        {"lines",
         "q BT /F 20 Tf 7 Tr 100 700 Td (hello) Tj 0 -9 Td [(he) 90 (l)] TJ /F 9 Tf (lo) Tj ET " +
             squares + "Q 0 0 9 9 re f",
         [](Artist& it) { it.fill(it.at(1), .5); },
         "2 1 0 0 0",
         {}},
        {"in a space of its own",
         "q .5 .1 0 -.5 10 600 cm BT /F 20 Tf 7 Tr 100 70 Td (hello) Tj ET 90 60 50 20 re f Q 0 0 "
         "9 "
         "9 re f",
         [](Artist& it) { it.raise(it.document.parent(it.clips[0]), it.at(1)); },
         "",
         {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        openPage(row.content);
        Artist edits = artist();
        row.edit(edits);
        expectSaved();
        if (row.facts[0] != '\0') {
            EXPECT_EQ(facts(), row.facts) << newContent();
        }
        expectInOrder(row.contents);
        digest_ = identity_;
        ASSERT_EQ(save(), 0U);
        EXPECT_TRUE(saved_.back().isNothing) << newContent();
    }
}

/// Of another program: letters of no page.
TEST_F(TextClipTest, ANewClip) {
    openPage("0 0 9 9 re f 20 20 9 9 re f");
    Artist edits = artist();
    const Art group = edits.group({edits.at(1)});
    clipLine(*document_, group, "hello", 10, 10);
    document_->setClipped(group, true);
    expectSaved();
    EXPECT_EQ(facts(), "1 0 0 0 1");
    expectInOrder({"7 Tr", "ET", "0 Tr", "20 20 9 9 re"});
}

TEST_F(TextClipTest, LinesOfANewClipAreOneTextObject) {
    openPage("0 0 9 9 re f 20 20 9 9 re f");
    Artist edits = artist();
    const Art group = edits.group({edits.at(1)});
    const Art lines = document_->make(ArtKind::group, Placement::inside, group);
    clipLine(*document_, lines, "hello", 10, 10);
    clipLine(*document_, lines, "no", 10, 30);
    document_->setClipped(group, true);
    expectSaved();
    expectInOrder({"BT\n", " Tm\n", " TJ\n", " Tm\n", " TJ\nET\n", "20 20 9 9 re"});
}

TEST_F(TextClipTest, AFormThatMovesTakesItAlong) {
    const std::string form = "q BT /F 20 Tf 7 Tr 10 10 Td (hello) Tj ET 9 9 60 20 re f Q";
    const auto open = [&] {
        openFile(withResources(PdfBuilder::onePage("q /A Do Q 0 0 9 9 re f",
                                                   "/Resources << /XObject << /A 30 0 R >> >>"))
                     .stream(30, form,
                             "/Type /XObject /Subtype /Form /BBox [0 0 99 99] /Resources << /Font "
                             "<< /F 20 0 R >> >>")
                     .bytes());
    };
    open();
    ASSERT_EQ(save(), 0U);
    EXPECT_TRUE(saved_.back().isNothing);
    open();
    Artist edits = artist();
    for (const Art clip : edits.clips) {
        if (document_->kind(clip) == ArtKind::text) {
            document_->transformText(clip, {.tx = 50, .ty = 5});
        } else {
            edits.move(clip, 50, 5);
        }
    }
    edits.move(edits.at(0), 50, 5);
    expectSaved();
    expectInOrder({"1 0 0 1 50 5 cm", "/A Do"});
}

} // namespace
} // namespace corvane
