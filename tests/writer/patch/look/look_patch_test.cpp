// Opacity, blending and groups: opened, edited, and saved as patches.
#include "tests/writer/patch/look/look_patch_fixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace corvane {
namespace {

using ::testing::HasSubstr;

TEST_F(LookPatchTest, StatesBecomeLooksOfArt) {
    struct Row {
        const char* content;
        const char* looks;
    };
    for (const Row& row : {
             Row{"/H gs 0 0 9 9 re f", "( f0.5)"},
             Row{"/H gs 0 0 9 9 re S", "( s0.25)"},
             Row{"/H gs 0 0 9 9 re B", "( f0.5 s0.25)"},
             Row{"/E gs 0 0 9 9 re B", "( o0.3)"},
             Row{"/M gs 0 0 9 9 re f /F gs 0 0 9 9 re f /O gs 0 0 9 9 re f", "( b1)( b2)()"},
             Row{"/S gs 0 0 9 9 re f /N gs 0 0 9 9 re f", "( light b0.501961 t1-0)()"},
             Row{"q /A gs 0 0 9 9 re W f Q 1 1 m 9 9 l S", "( alpha)()"},
             Row{"/R gs 0 0 9 9 re f", "( alpha)"},
             Row{"/H gs /M gs /G Do", "[ o0.5 b1 isolated knockout()( b1)]"},
             Row{"/H gs /P Do", "[( f0.5)]"},
             Row{"/H gs 9 0 0 9 0 0 cm /I Do", "( o0.5)"},
             Row{"/H gs 9 0 0 9 0 0 cm BI /W 1 /H 1 /BPC 8 /CS /G ID a EI", "( o0.5)"},
             Row{"/H gs 0 0 9 9 re W n /W sh", "[( o0.5)]"},
             Row{"/V gs 0 0 9 9 re f 0 0 9 9 re S 0 0 9 9 re n", "( over skip)( overline skip)()"},
             Row{"/J gs 0 0 9 9 re f /Any ri 0 0 9 9 re f", "( i2)()"},
             Row{"/Saturation ri 9 0 0 9 0 0 cm /I Do /N Do", "( i3)( i1)"},
             Row{"/J gs BT /F 10 Tf 2 2 Td (a) Tj ET 0 0 9 9 re W n /W sh", "[( i2)][( i2)]"},
             Row{"/U gs 0 0 9 9 re f 0 0 9 9 re B", "()( overline)"},
             Row{"q /V gs /E gs 0 0 9 9 re B Q 0 0 9 9 re f", "( o0.3 over overline skip)()"},
         }) {
        openLooks(row.content);
        EXPECT_EQ(looks(), row.looks) << row.content;
        ASSERT_EQ(save(), 0U);
        EXPECT_TRUE(saved_.back().isNothing) << row.content;
    }
}

TEST_F(LookPatchTest, AnObjectGetsAnotherLook) {
    struct Row {
        const char* name;
        Appearance look;
        const char* looks;
        const char* state;
    };
    for (const Row& row : {
             Row{"opacity", {.opacity = .4}, "( f0.4)( f0.5)", "/ca 0.4 >>"},
             Row{"blending",
                 {.fillOpacity = .2, .blend = BlendMode::hardLight},
                 "( f0.2 b8)( f0.5)",
                 "/ca 0.2 /BM /HardLight >>"},
         }) {
        SCOPED_TRACE(row.name);
        openLooks("2 0 0 2 0 0 cm 0 0 9 9 re f /H gs 20 20 9 9 re f");
        document_->setAppearance(artist().at(0), row.look);
        ASSERT_NO_FATAL_FAILURE(expectKept(row.looks));
        EXPECT_THAT(newContent(), HasSubstr("/H gs 20 20 9 9 re f"));
        EXPECT_THAT(bytes(), HasSubstr(row.state));
        EXPECT_EQ(facts(), "1 1 0 0 0");
    }
    openLooks("/H gs /M gs 0 0 9 9 re f");
    document_->setAppearance(artist().at(0), {});
    ASSERT_NO_FATAL_FAILURE(expectKept("()"));

    openLooks("/H gs 9 0 0 9 0 0 cm /I Do");
    const Art image = document_->firstChild(document_->layerArt(document_->firstLayer()));
    document_->setAppearance(image, {.opacity = .25});
    ASSERT_NO_FATAL_FAILURE(expectKept("( o0.25)"));
}

TEST_F(LookPatchTest, OverprintStaysWithItsObject) {
    const std::string two = "q /V gs 1 0 0 0 k 0 0 9 9 re f Q 20 20 9 9 re f";
    const auto edited = [&](const std::function<void(Artist&)>& edit, const std::string& looks) {
        openLooks(two);
        Artist edits = artist();
        edit(edits);
        ASSERT_NO_FATAL_FAILURE(expectKept(looks));
    };
    edited([](Artist& it) { it.fill(it.at(0), .5); }, "( over skip)()");
    EXPECT_EQ(bytes().find("/OP false", file_.size()), std::string::npos) << "the page's own state";
    edited([](Artist& it) { it.move(it.at(0), 3, 4); }, "( over skip)()");
    edited([](Artist& it) { it.raise(it.at(0), it.at(1)); }, "()( over skip)");
    edited([](Artist& it) { it.lower(it.copy(it.at(0), 5, 5), it.at(0)); },
           "[( over skip)( over skip)]()");
    edited(
        [](Artist& it) {
            it.document.setSource(it.at(0), {.ordinal = 1000});
            it.document.setAppearance(it.at(1), {.overprint = {.fills = true}});
            it.move(it.at(0), 100, 100);
        },
        "( over skip)( over)");
    EXPECT_THAT(bytes(), HasSubstr("/OP false /op true /OPM 1 >>"));
    EXPECT_THAT(bytes(), HasSubstr("/OP false /op true /OPM 0 >>"));
    openLooks(two);
    document_->setAppearance(artist().at(0), {});
    ASSERT_EQ(save(), 0U);
    EXPECT_TRUE(saved_.back().isNothing) << "an editor dropped what it does not know";
}

/// Readers ignore the opacity of a stroke with tiles.
TEST_F(LookPatchTest, TilesOfAStrokeAreSeenThroughAsAGroup) {
    openLooks("/H gs /Pattern CS /T SCN 4 w 20 20 30 30 re B");
    document_->setAppearance(artist().at(0), {.fillOpacity = .5, .strokeOpacity = .75});
    ASSERT_NO_FATAL_FAILURE(expectKept("( f0.5)[ o0.75()]"));
    EXPECT_THAT(bytes(), HasSubstr("/ca 0.75"));
}

TEST_F(LookPatchTest, StatesThatLaterOnesReplaceAreNotSetAgain) {
    std::string content = "2 w ";
    std::string states;
    constexpr int count = 40;
    for (int i = 0; i < count; ++i) {
        const std::string name = "/G" + std::to_string(i);
        content += name + " gs 1 0 0 rg 0 0 9 9 re f\n";
        states +=
            name + (i == 0 ? " << /LW 3 /CA .5 >>" : " << /ca ." + std::to_string(i + 10) + " >>");
    }
    openFile(
        PdfBuilder::onePage(content, "/Resources << /ExtGState << " + states + " >> >>").bytes());
    Artist edits = artist();
    edits.raise(edits.at(count - 2), edits.at(count - 1));
    expectSaved();
    const std::string text = newContent();
    const std::string behind = text.substr(text.find("/G39 gs"));
    EXPECT_THAT(behind, HasSubstr("/G0 gs\n/G38 gs\n1 0 0 rg")) << "all that is left of the others";
}

TEST_F(LookPatchTest, IntentsStayWithTheirObjects) {
    const std::string two = "q /J gs 0 0 9 9 re f Q 20 20 9 9 re f";
    const auto edited = [&](const std::function<void(Artist&)>& edit, const std::string& looks) {
        openLooks(two);
        Artist edits = artist();
        edit(edits);
        ASSERT_NO_FATAL_FAILURE(expectKept(looks));
    };
    edited([](Artist& it) { it.raise(it.at(0), it.at(1)); }, "()( i2)");
    edited(
        [](Artist& it) {
            it.document.setAppearance(
                it.at(1), {.opacity = .5, .intent = RenderingIntent::absoluteColorimetric});
        },
        "( i2)( f0.5 i1)");
    EXPECT_THAT(bytes(), HasSubstr("/RI /AbsoluteColorimetric"));
    edited(
        [](Artist& it) {
            it.document.setAppearance(it.add(50, 50, 9, 9),
                                      {.intent = RenderingIntent::saturation});
        },
        "( i2)()( i3)");
    openLooks(two);
    document_->setAppearance(artist().at(0), {});
    ASSERT_EQ(save(), 0U);
    EXPECT_TRUE(saved_.back().isNothing) << "an editor dropped what it does not know";
}

TEST_F(LookPatchTest, GroupsAreOneThing) {
    openLooks("0 0 9 9 re f 4 4 9 9 re f 40 4 9 9 re f");
    Artist edits = artist();
    const Art group = edits.group({edits.at(0), edits.at(1)});
    document_->setAppearance(group, {.opacity = .5});
    ASSERT_NO_FATAL_FAILURE(expectKept("[ o0.5()()]()"));
    EXPECT_THAT(bytes(), HasSubstr("/Group << /S /Transparency /I true >>"));

    openLooks("0 0 9 9 re f 4 4 9 9 re f");
    Artist alone = artist();
    document_->setAppearance(alone.group({alone.at(0)}), {.opacity = .5});
    ASSERT_NO_FATAL_FAILURE(expectKept("( f0.5)()"));
}

TEST_F(LookPatchTest, EditsOfWholes) {
    const Appearance half{.opacity = .5};
    struct Row {
        const char* name;
        const char* content;
        const char* entries; ///< of the page
        std::function<void(Artist&)> edit;
        const char* looks;
        const char* facts;
    };
    // The group that an object is in, and a new one of it and the next.
    const auto around = [&](std::size_t object) {
        return [object, half](Artist& it) {
            it.document.setAppearance(it.document.parent(it.at(object)), half);
        };
    };
    const auto groups = [&](std::size_t object) {
        return [object, half](Artist& it) {
            const Art group = it.group({it.at(object), it.at(object + 1)});
            it.document.setAppearance(group, half);
        };
    };
    const Row rows[] = {
        {"a clip that the page has", "q 0 0 50 50 re W n 0 0 9 9 re f 4 4 9 9 re f Q 40 4 9 9 re f",
         "", around(0), "[ o0.5[()()]]()", "1 2 0 0 0"},
        {"a clip within a clip",
         "q 0 0 60 60 re W n 1 1 9 9 re f q 0 0 50 50 re W n 0 0 9 9 re f 4 4 9 9 re f Q 40 4 9 9 "
         "re f Q",
         "", around(1), "[()[ o0.5[()()]]()]", "2 2 0 0 0"},
        {"objects of two clips, in the middle",
         "q 0 0 50 50 re W n 0 0 9 9 re f Q q 0 0 60 60 re W n 4 4 9 9 re f Q 40 4 9 9 re f", "",
         [&](Artist& it) {
             it.document.setAppearance(
                 it.group({it.document.parent(it.at(0)), it.document.parent(it.at(1))}), half);
         },
         "[ o0.5[()][()]]()", "1 2 0 0 0"},
        {"objects of two tags",
         "/P << /MCID 0 >> BDC 0 0 9 9 re f EMC /P << /MCID 1 >> BDC 4 4 9 9 re f EMC 40 4 9 9 re "
         "f",
         "", groups(0), "[ o0.5()()]()", "1 2 0 0 0"},
        {"of one tag, in front", "0 0 9 9 re f /P << /MCID 0 >> BDC 4 4 9 9 re f 6 6 9 9 re f EMC",
         "", groups(1), "()[ o0.5()()]", "1 2 0 0 0"},
        {"tiles of a page that is turned", "/Pattern cs /T scn 0 0 9 9 re f 4 4 9 9 re f",
         "/Rotate 90", groups(0), "[ o0.5( t0 -1 3 611)( t0 -1 3 611)]", "0 2 0 0 0"},
        {"tiles of a form", "/L Do", "", groups(0), "[[ o0.5( t0 2 54 2)( t0 2 54 2)]]",
         "0 2 0 0 0"},
        {"within a form", "/D Do 20 0 5 5 re f", "", groups(0), "[[ o0.5()()]]()", "1 2 0 0 0"},
        {"within a form that is moved", "/D Do 20 0 5 5 re f", "",
         [&](Artist& it) {
             const Art form = it.document.parent(it.at(0));
             it.document.setAppearance(it.group({it.at(0), it.at(1)}), half);
             it.move(form, 30, 0);
         },
         "[[[ o0.5()()]]]()", "1 3 0 0 0"},
        {"a form that is no group", "/D Do 20 0 5 5 re f", "", around(0), "[ o0.5[()()]]()",
         "1 2 0 0 0"},
        {"a form that is one", "/G Do 20 0 5 5 re f", "", around(0),
         "[ o0.5 isolated knockout()( b1)]()", "1 2 0 0 0"},
        {"glyphs", "BT /F 10 Tf 2 2 Td (aa) Tj ET 20 0 5 5 re f", "", around(0), "[ o0.5[()()]]()",
         "1 1 0 0 0"},
        {"a form in a state", "/H gs /D Do 20 0 5 5 re f", "", around(0),
         "[ o0.5[( f0.5)( f0.5)]]( f0.5)", "1 2 0 0 0"},
        {"within a form in a state", "/H gs /M gs /D Do 20 0 5 5 re f", "", groups(0),
         "[[ o0.5 isolated( f0.5 b1)( f0.5 b1)]]( f0.5 b1)", "1 2 0 0 0"},
        {"order in a form in a state", "/H gs /M gs /D Do 20 0 5 5 re f", "",
         [&](Artist& it) { it.raise(it.at(0), it.at(1)); }, "[( f0.5 b1)( f0.5 b1)]( f0.5 b1)",
         "2 0 0 0 1"},
        {"new art in a form in a state", "/H gs /M gs /D Do 20 0 5 5 re f", "",
         [&](Artist& it) {
             it.add(1, 1, 9, 9, it.at(0));
             it.raise(it.at(0), it.at(1));
         },
         "[()( f0.5 b1)( f0.5 b1)]( f0.5 b1)", "2 0 1 0 1"},
        {"between objects of a state of their own", "/H gs /S Do 20 0 5 5 re f", "",
         [&](Artist& it) { it.raise(it.at(0), it.at(1)); }, "[( f0.3)[( f0.5)( f0.3)]]( f0.5)",
         "2 0 0 0 2"},
        {"under a mask around the form it is raised", "/A gs /D Do 20 0 5 5 re f", "",
         [&](Artist& it) { it.raise(it.at(0), it.at(1)); }, "[( alpha)( alpha)]( alpha)",
         "2 0 0 0 1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        openLooks(row.content, row.entries);
        Artist edits = artist();
        row.edit(edits);
        const std::vector<test::SeenPath> edited = seen();
        expectKept(row.looks);
        EXPECT_EQ(differenceOf(edited, seen(), {}), "");
        EXPECT_EQ(facts(), row.facts);
    }
}

TEST_F(LookPatchTest, NewArt) {
    openLooks("0 0 9 9 re f");
    Artist edits = artist();
    const Art both = edits.add(20, 20, 30, 30);
    edits.style(both, [](PathStyle& style) { style.strokePaint = 1; });
    document_->setAppearance(both, {.opacity = .5});
    document_->setAppearance(edits.add(60, 20, 9, 9), {.fillOpacity = .7});
    ASSERT_NO_FATAL_FAILURE(expectKept("()[[ o0.5()]( f0.7)]"));

    openLooks("0 0 9 9 re f");
    Artist tiler = artist();
    const Art stroked = tiler.add(20, 20, 30, 30);
    const PaintSource tiles = document_->addPattern({.tile = document_->makeArtwork(),
                                                     .right = 4,
                                                     .top = 4,
                                                     .stepX = 4,
                                                     .stepY = 4,
                                                     .matrix = {}});
    tiler.style(stroked, [&](PathStyle& style) {
        style.strokePaint = 1;
        style.stroke = {.kind = ColourKind::pattern};
        style.stroke.source = tiles;
    });
    document_->setAppearance(stroked, {.strokeOpacity = .5});
    ASSERT_NO_FATAL_FAILURE(expectKept("()[()[ o0.5()]]"));
}

} // namespace
} // namespace corvane
