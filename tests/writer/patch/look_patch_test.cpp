// Opacity, blend modes and soft masks: opened, edited, and saved as patches.
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

#include <functional>
#include <sstream>

namespace corvane {
namespace {

using ::testing::HasSubstr;

class LookPatchTest : public PatchTest {
protected:
    void openLooks(const std::string& content) {
        const std::string form = "/Type /XObject /Subtype /Form /BBox [0 0 100 100] ";
        openFile(
            PdfBuilder::onePage(
                content,
                "/Resources << /ExtGState << /H << /ca .5 /CA .25 >> /E << /ca .3 /CA .3 >> "
                "/M << /BM /Multiply >> /F << /BM [/Odd /Screen] >> /O << /BM /Odd >> "
                "/S << /SMask << /S /Luminosity /G 30 0 R /BC [.5] /TR 31 0 R >> >> "
                "/A << /SMask << /S /Alpha /G 30 0 R >> >> /N << /SMask /None >> "
                "/R << /SMask << /S /Alpha /G 32 0 R >> >> >> "
                "/Shading << /W 36 0 R >> /XObject << /G 33 0 R /P 34 0 R /I 35 0 R >> >>")
                .stream(30, "0 0 50 100 re f",
                        form + "/Group << /S /Transparency /CS /DeviceGray >>")
                .object(31, "<< /FunctionType 2 /Domain [0 1] /N 1 /C0 [1] /C1 [0] >>")
                .stream(32, "/R gs 0 0 7 7 re f",
                        form + "/Resources << /ExtGState << /R << /SMask << /S /Alpha /G 32 0 R >> "
                               ">> >> >> /Group << /S /Transparency >>")
                .stream(33, "0 0 9 9 re f /M gs 4 4 9 9 re f",
                        form + "/Group << /S /Transparency /I true /K true >>")
                .stream(34, "0 0 9 9 re f", form)
                .stream(35, "a",
                        "/Type /XObject /Subtype /Image /Width 1 /Height 1 /BitsPerComponent 8 "
                        "/ColorSpace /DeviceGray")
                .object(36, "<< /ShadingType 3 /ColorSpace /DeviceGray /Coords [0 0 1 50 0 1] "
                            "/Function << /FunctionType 2 /Domain [0 1] /N 1 >> >>")
                .bytes());
    }

    std::string lookText(Art art) const {
        const Appearance look = document_->appearance(art);
        std::ostringstream text;
        const auto add = [&](const char* name, double value, double none) {
            if (value != none) {
                text << ' ' << name << value;
            }
        };
        add("o", look.opacity, 1);
        add("f", look.fillOpacity, 1);
        add("s", look.strokeOpacity, 1);
        add("b", static_cast<int>(look.blend), 0);
        text << (look.isIsolated ? " isolated" : "") << (look.isKnockout ? " knockout" : "");
        if (look.mask != SoftMask::null) {
            const MaskFacts& mask = document_->mask(look.mask);
            text << (mask.isLuminosity ? " light" : " alpha");
            add("b", mask.backdrop, 0);
            if (!mask.transfer.empty()) {
                text << " t" << mask.transfer.front() << '-' << mask.transfer.back();
            }
        }
        return text.str();
    }
    /// Of all art but clips, each group before what it holds, from the back.
    std::string looks() const {
        std::string text;
        const Art top = document_->layerArt(document_->firstLayer());
        const auto list = [&](auto& self, Art group) -> void {
            const Art clip = document_->clipped(group) ? document_->firstChild(group) : Art::null;
            for (Art art = document_->lastChild(group); art != Art::null;
                 art = document_->previousSibling(art)) {
                if (art == clip) {
                    continue;
                }
                const bool isGroup = document_->kind(art) == ArtKind::group;
                text += isGroup ? "[" : "(";
                text += lookText(art);
                if (isGroup) {
                    self(self, art);
                }
                text += isGroup ? "]" : ")";
            }
        };
        list(list, top);
        return text;
    }

    void expectKept(const std::string& wanted) {
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        ASSERT_TRUE(saved_.back().isPatched);
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(looks(), wanted) << newContent();
    }
};

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
             Row{"q /A gs 0 0 9 9 re W f Q 1 1 m 9 9 l S", "[( alpha)]()"},
             Row{"/R gs 0 0 9 9 re f", "( alpha)"},
             Row{"/H gs /M gs /G Do", "[ o0.5 b1 isolated knockout()( b1)]"},
             Row{"/H gs /P Do", "[( f0.5)]"},
             Row{"/H gs 9 0 0 9 0 0 cm /I Do", "( o0.5)"},
             Row{"/H gs 9 0 0 9 0 0 cm BI /W 1 /H 1 /BPC 8 /CS /G ID a EI", "( o0.5)"},
             Row{"/H gs 0 0 9 9 re W n /W sh", "[( o0.5)]"},
         }) {
        openLooks(row.content);
        EXPECT_EQ(looks(), row.looks) << row.content;
        ASSERT_EQ(save(), 0U);
        EXPECT_TRUE(saved_.back().isNothing) << row.content;
    }
}

TEST_F(LookPatchTest, OneMaskIsOneThing) {
    openLooks("/A gs 0 0 9 9 re f /A gs 1 1 9 9 re f q 2 0 0 2 0 0 cm /A gs 1 1 9 9 re f Q");
    const Artist edits = artist();
    const auto maskAt = [&](std::size_t i) { return document_->appearance(edits.at(i)).mask; };
    EXPECT_EQ(maskAt(0), maskAt(1));
    EXPECT_NE(maskAt(0), maskAt(2)) << "it lies elsewhere";
}

TEST_F(LookPatchTest, AnObjectGetsAnotherLook) {
    struct Row {
        const char* name;
        Appearance look;
        const char* looks;
        const char* state;
    };
    for (const Row& row : {
             Row{"opacity", {.opacity = .4}, "[( f0.4)]( f0.5)", "/ca 0.4 >>"},
             Row{"blending",
                 {.fillOpacity = .2, .blend = BlendMode::hardLight},
                 "[( f0.2 b8)]( f0.5)",
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
    ASSERT_NO_FATAL_FAILURE(expectKept("[()]"));

    openLooks("/H gs 9 0 0 9 0 0 cm /I Do");
    const Art image = document_->firstChild(document_->layerArt(document_->firstLayer()));
    document_->setAppearance(image, {.opacity = .25});
    ASSERT_NO_FATAL_FAILURE(expectKept("[( o0.25)]"));
}

TEST_F(LookPatchTest, MasksAreDrawnWhereTheyLie) {
    openLooks("2 0 0 2 30 0 cm 0 0 9 9 re f 20 20 9 9 re f");
    Artist edits = artist();
    const Art drawn = edits.add(10, 20, 30, 40);
    const Art content = document_->makeArtwork();
    document_->reorder(drawn, Placement::inside, content);
    const SoftMask mask = document_->addMask({.content = content, .isLuminosity = true});
    document_->setAppearance(edits.at(0), {.mask = mask});
    document_->setAppearance(edits.at(1), {.mask = mask});
    ASSERT_NO_FATAL_FAILURE(expectKept("[( light)][( light)]"));
    const Appearance look = document_->appearance(artist().at(0));
    const Art group = document_->firstChild(document_->mask(look.mask).content);
    const Art path =
        document_->kind(group) == ArtKind::path ? document_->nextSibling(group) : group;
    EXPECT_EQ(document_->segments(path)[0].anchor, (Point{10 * fixedOne, 20 * fixedOne}));
    EXPECT_EQ(look.mask, document_->appearance(artist().at(1)).mask);
}

TEST_F(LookPatchTest, WhatMasksHoldIsEdited) {
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

TEST_F(LookPatchTest, ANewMaskMayHoldText) {
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
    ASSERT_NO_FATAL_FAILURE(expectKept("[( alpha)]"));
    EXPECT_THAT(bytes(), HasSubstr("/FontFile"));
}

TEST_F(LookPatchTest, AMaskMovesOnlyWithItsObject) {
    openLooks("/A gs 0 0 9 9 re f");
    artist().move(artist().at(0), 30, 0);
    ASSERT_NO_FATAL_FAILURE(expectKept("[( alpha)]"));
    EXPECT_EQ(newContent().find(" cm"), std::string::npos) << "it stays where the artwork has it";
}

TEST_F(LookPatchTest, GroupsAreOneThing) {
    openLooks("0 0 9 9 re f 4 4 9 9 re f 40 4 9 9 re f");
    Artist edits = artist();
    const Art group = edits.group({edits.at(0), edits.at(1)});
    document_->setAppearance(group, {.opacity = .5});
    ASSERT_NO_FATAL_FAILURE(expectKept("[ o0.5[()][()]]()"));
    EXPECT_THAT(bytes(), HasSubstr("/Group << /S /Transparency /I true >>"));

    openLooks("0 0 9 9 re f 4 4 9 9 re f");
    Artist alone = artist();
    document_->setAppearance(alone.group({alone.at(0)}), {.opacity = .5});
    ASSERT_NO_FATAL_FAILURE(expectKept("[( f0.5)]()"));
}

TEST_F(LookPatchTest, NewArt) {
    openLooks("0 0 9 9 re f");
    Artist edits = artist();
    const Art both = edits.add(20, 20, 30, 30);
    edits.style(both, [](PathStyle& style) { style.strokePaint = 1; });
    document_->setAppearance(both, {.opacity = .5});
    document_->setAppearance(edits.add(60, 20, 9, 9), {.fillOpacity = .7});
    ASSERT_NO_FATAL_FAILURE(expectKept("()[[ o0.5()][( f0.7)]]"));
}

} // namespace
} // namespace corvane
