// Colours of several inks: told to the host with names and tints, and written in their space.
#include "host/inks.h"
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class InkSpacesTest : public PatchTest {
protected:
    void SetUp() override {
        PatchTest::SetUp();
        extension_.omitted = [](void* context, Omission kind, std::int32_t count) {
            static_cast<InkSpacesTest*>(context)->omissions_[kind] = count;
        };
    }

    /// Spaces: /N and /M of the same inks, with another look, and a third in the form; /D, which
    /// has no number; /O, of no inks.
    void openInks(const std::string& content, const std::string& form = "") {
        openFile(PdfBuilder::onePage(content, "/Resources << " + std::string(spaces) +
                                                  " /XObject << /F 36 0 R >> /Font << /T 37 0 R "
                                                  ">> >>")
                     .object(30, "[/DeviceN [/Cyan /Sea#20;#ff] /DeviceCMYK 33 0 R 35 0 R]")
                     .object(31, "[/DeviceN [/Cyan /Sea#20;#ff] /DeviceGray 34 0 R]")
                     .object(32, "[/DeviceN [/None /None] /DeviceGray 34 0 R]")
                     .stream(33, "{ 0 0 }", program("0 1 0 1 0 1 0 1"))
                     .stream(34, "{ pop 1 exch sub }", program("0 1"))
                     .stream(38, "{ pop 100 mul 0 0 }", program("0 100 -100 100 -100 100"))
                     .object(35, "<< /Subtype /NChannel >>")
                     .stream(36, form,
                             "/Type /XObject /Subtype /Form /BBox [0 0 200 200] "
                             "/Resources << /ColorSpace << /N 39 0 R >> >>")
                     .object(39, "[/DeviceN [/Cyan /Sea#20;#ff] /DeviceRGB 40 0 R]")
                     .stream(40, "{ pop 1 exch sub dup dup }", program("0 1 0 1 0 1"))
                     .object(37, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                     .bytes());
    }

    static std::string program(const char* range) {
        return "/FunctionType 4 /Domain [0 1 0 1] /Range [" + std::string(range) + "]";
    }

    /// Names and tints of a colour; empty: it is no mixture.
    std::string inksOf(const Colour& colour) const {
        if (colour.kind != ColourKind::inks) {
            return "";
        }
        const InkMixture& mixture = document_->inkMixture(colour.source);
        std::string text;
        const std::vector<std::string_view> names = inkNames(mixture.names);
        for (std::size_t i = 0; i < names.size(); ++i) {
            text += std::string(names[i]) + "=" +
                    std::to_string(std::lround(realFromFixed(mixture.tints[i]) * 100)) + " ";
        }
        return text;
    }
    std::string fill(std::size_t index) {
        return inksOf(document_->style(artist().at(index)).fill);
    }
    Colour mixture(std::initializer_list<std::pair<const char*, double>> inks, Colour seen) {
        InkMixture made{.names = {}, .tints = {}, .seen = seen};
        for (const auto& [name, tint] : inks) {
            appendInkName(made.names, name);
            made.tints.push_back(fixedFromReal(tint));
        }
        return {.kind = ColourKind::inks,
                .component = {},
                .source = document_->addInkMixture(std::move(made))};
    }
    void setFill(Art art, const Colour& colour) {
        artist().style(art, [&](PathStyle& style) { style.fill = colour; });
    }
    /// Saves and opens again; what was appended.
    std::string saved() {
        EXPECT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        const std::string added = bytes().substr(file_.size());
        EXPECT_EQ(open(), 0U);
        digest_ = identity_;
        return added;
    }

    static constexpr std::string_view spaces =
        "/ColorSpace << /N 30 0 R /M 31 0 R /O 32 0 R /D [/DeviceN [/Gold /R#e9d] [/Lab << "
        "/WhitePoint [.9642 1 .8249] >>] 38 0 R] >>";
    std::map<Omission, std::int32_t> omissions_;
    const std::map<Omission, std::int32_t> lost{{Omission::ink, 1}};
};

TEST_F(InkSpacesTest, PaintsHaveNamesAndTints) {
    openInks("/N cs 0 0 9 9 re f .5 .25 scn /N CS 20 0 9 9 re B 7 -1 scn 40 0 9 9 re f "
             "/O cs 0 0 9 9 re f 0 g 60 0 9 9 re f");
    EXPECT_EQ(fill(0), "Cyan=100 Sea ;\xFF=100 ");
    EXPECT_EQ(fill(1), "Cyan=50 Sea ;\xFF=25 ");
    const Art both = artist().at(1);
    EXPECT_EQ(inksOf(document_->style(both).stroke), "Cyan=100 Sea ;\xFF=100 ");
    const Colour seen = document_->inkMixture(document_->style(both).fill.source).seen;
    EXPECT_EQ(seen.component[0], fixedFromReal(.5));
    EXPECT_EQ(fill(2), "Cyan=100 Sea ;\xFF=0 ");
    EXPECT_EQ(document_->style(artist().at(3)).fillPaint, 0) << "inks that are not printed";
    EXPECT_EQ(fill(4), "");
    EXPECT_TRUE(omissions_.empty());
    ASSERT_EQ(save(), 0U);
    EXPECT_TRUE(saved_.back().isNothing);

    omissions_.clear();
    extension_.version = 9;
    openInks("/N cs .5 .25 scn 0 0 9 9 re f");
    EXPECT_EQ(document_->style(artist().at(0)).fill.kind, ColourKind::process);
    EXPECT_EQ(omissions_, lost);
}

TEST_F(InkSpacesTest, WhatIsWrittenAnewStaysInTheSpaceOfThePage) {
    struct Row {
        const char* content;
        const char* space; ///< how new content says it
        const char* inks;
    };
    for (const Row& row : {
             Row{"/N cs .5 .25 scn 0 0 9 9 re f", "/CS1 30 0 R", "Cyan=50 Sea ;\xFF=25 "},
             Row{"/M cs .5 .25 scn 0 0 9 9 re f", "/CS1 31 0 R", "Cyan=50 Sea ;\xFF=25 "},
             Row{"/D cs 1 0 scn 0 0 9 9 re f",
                 "[ /DeviceN [ /Gold /R#E9d ] [ /Lab << /WhitePoint [ .9642  1  .8249  ] >> ] 38 0 "
                 "R ]",
                 "Gold=100 R\xE9"
                 "d=0 "},
         }) {
        openInks(row.content);
        const Art copy = artist().copy(artist().at(0), 30, 30);
        document_->setSource(copy, {.ordinal = 1000});
        const std::string added = saved();
        EXPECT_THAT(added, HasSubstr(row.space));
        EXPECT_EQ(fill(0), row.inks);
        EXPECT_EQ(fill(1), row.inks);
    }
}

TEST_F(InkSpacesTest, TintsAreChanged) {
    openInks("/M cs .5 .25 scn 0 0 9 9 re f 20 0 9 9 re f");
    const Colour was = document_->style(artist().at(0)).fill;
    InkMixture edited = document_->inkMixture(was.source);
    edited.tints = {fixedFromReal(.75), fixedFromReal(.25)};
    Colour is = was;
    is.source = document_->addInkMixture(edited);
    setFill(artist().at(0), is);
    const std::string added = saved();
    EXPECT_THAT(added, HasSubstr(".75 .25 scn"));
    EXPECT_THAT(added, Not(HasSubstr("/DeviceN [ ")));
    EXPECT_EQ(fill(0), "Cyan=75 Sea ;\xFF=25 ");
    EXPECT_EQ(fill(1), "Cyan=50 Sea ;\xFF=25 ");
}

TEST_F(InkSpacesTest, AnotherColourHasNoInks) {
    openInks("/N cs .5 .25 scn 0 0 9 9 re f 20 0 9 9 re f");
    Artist a = artist();
    a.fill(a.at(0), .5);
    a.move(a.at(1), 3, 4);
    const std::string added = saved();
    EXPECT_THAT(added, HasSubstr(".5 g"));
    EXPECT_EQ(fill(0), "");
    EXPECT_EQ(fill(1), "Cyan=50 Sea ;\xFF=25 ");

    openInks("/N cs .5 .25 scn 0 0 9 9 re f");
    InkMixture was = document_->inkMixture(document_->style(artist().at(0)).fill.source);
    setFill(artist().at(0), was.seen);
    ASSERT_EQ(save(), 0U);
    EXPECT_EQ(saved_.back().isNothing, false) << "amounts of ink that were given exactly";
}

/// Inks that the page does not have get a space in which the tints look as the artwork has them.
TEST_F(InkSpacesTest, InksOfAnotherPage) {
    const Colour gray{.kind = ColourKind::gray, .component = {fixedFromReal(.75)}};
    const Colour cmyk{.kind = ColourKind::process,
                      .component = {fixedFromReal(.1), 0, fixedFromReal(.4), 0}};
    Colour rgb{.kind = ColourKind::process,
               .component = {fixedFromReal(.5), fixedFromReal(.25), 0, 0},
               .origin = ColourOrigin::fromRgb};
    for (const Colour& seen : {gray, cmyk, rgb}) {
        openInks("0 0 9 9 re f 20 0 9 9 re f");
        setFill(artist().at(0), mixture({{"Far (1)", .5}, {"None", 1}, {"Near", .125}}, seen));
        setFill(artist().at(1), mixture({{"Far (1)", 0}, {"Near", 0}}, seen));
        const std::string added = saved();
        EXPECT_THAT(added, HasSubstr("[ /DeviceN [ /Far#20#281#29 /None /Near ] "));
        EXPECT_EQ(fill(0), "Far (1)=50 None=100 Near=13 ");
        EXPECT_EQ(fill(1), "Far (1)=0 Near=0 ");
        for (const std::size_t i : {0U, 1U}) {
            const Colour back =
                document_->inkMixture(document_->style(artist().at(i)).fill.source).seen;
            EXPECT_EQ(back.kind, seen.kind);
            for (int component = 0; component < 4; ++component) {
                EXPECT_NEAR(back.component[component], seen.component[component], 2);
            }
        }
        ASSERT_EQ(save(), 0U);
        EXPECT_TRUE(saved_.back().isNothing);
    }
}

/// One ink is a mixture where it is no custom colour.
TEST_F(InkSpacesTest, OneInk) {
    openFile(PdfBuilder::onePage("/A CS /S cs .5 scn .25 SCN 0 0 9 9 re B",
                                 "/Resources << /ColorSpace << /A [/Separation /All /DeviceGray "
                                 "30 0 R] /S 31 0 R >> >>")
                 .object(30, "<< /FunctionType 2 /Domain [0 1] /C0 [1] /C1 [0] /N 1 >>")
                 .object(31, "[/Separation /Deep /DeviceCMYK 32 0 R]")
                 .object(32, "<< /FunctionType 2 /Domain [0 1] /C0 [0 0 0 0] /C1 [1 0 0 0] /N 3 >>")
                 .bytes());
    const PathStyle style = document_->style(artist().at(0));
    EXPECT_EQ(inksOf(style.fill), "Deep=50 ");
    EXPECT_EQ(inksOf(style.stroke), "All=25 ");
    EXPECT_TRUE(omissions_.empty());
    const Art copy = artist().copy(artist().at(0), 30, 30);
    document_->setSource(copy, {.ordinal = 1000});
    artist().style(copy, [&](PathStyle& other) {
        other.stroke = mixture({{"Far", .5}}, document_->inkMixture(style.fill.source).seen);
    });
    const std::string added = saved();
    EXPECT_THAT(added, HasSubstr("/CS1 31 0 R"));
    EXPECT_THAT(added, HasSubstr("[ /Separation /Far /DeviceCMYK "));
    EXPECT_EQ(fill(1), "Deep=50 ");
    EXPECT_EQ(inksOf(document_->style(artist().at(0)).stroke), "All=25 ");
}

TEST_F(InkSpacesTest, OfFormsAndText) {
    openInks("/F Do 0 0 9 9 re f BT /T 9 Tf /N cs .25 1 scn 50 50 Td (Ink) Tj ET",
             "/N cs .5 .25 scn 30 0 9 9 re f");
    Artist a = artist();
    EXPECT_EQ(fill(0), "Cyan=50 Sea ;\xFF=25 ");
    const Art copy = document_->duplicate(a.at(0), Placement::inFront, a.at(1));
    document_->setSource(copy, {.ordinal = 1000});
    a.move(copy, 60, 60);
    const std::string added = saved();
    EXPECT_THAT(added, HasSubstr("/CS1 39 0 R")) << "the form's own";
    EXPECT_EQ(fill(2), "Cyan=50 Sea ;\xFF=25 ");
}

/// The square of the image has the colour, under a mask that is the image.
TEST_F(InkSpacesTest, OfStencils) {
    openInks("q 40 0 0 40 0 0 cm /N cs .5 .25 scn BI /W 8 /H 1 /IM true /BPC 1 ID \xAA EI Q "
             "0 0 9 9 re f");
    EXPECT_EQ(fill(0), "Cyan=50 Sea ;\xFF=25 ");
    const Art stencil = artist().at(0);
    EXPECT_NE(document_->appearance(stencil).mask, SoftMask::null);
    ASSERT_EQ(save(), 0U);
    EXPECT_TRUE(saved_.back().isNothing);
    InkMixture edited = document_->inkMixture(document_->style(stencil).fill.source);
    edited.tints[0] = fixedOne;
    setFill(
        stencil,
        {.kind = ColourKind::inks, .component = {}, .source = document_->addInkMixture(edited)});
    const std::string added = saved();
    EXPECT_THAT(added, HasSubstr("1 .25 scn"));
    EXPECT_THAT(added, HasSubstr("BI /W 8 /H 1 /IM true")) << "the image itself stays";
    EXPECT_EQ(fill(0), "Cyan=100 Sea ;\xFF=25 ");
}

/// Names that PDF does not allow, and more than are held, cost the inks, not the colour.
TEST_F(InkSpacesTest, NamesThatAreNotHeld) {
    const std::string hundred(100, 'x');
    struct Row {
        std::string names;
        int count = 2;
    };
    for (const auto& [names, count] :
         {Row{"/A /All"}, Row{"/A (B)"}, Row{"/A /" + hundred + hundred},
          Row{"/A" + hundred + " /B" + hundred + " /C" + hundred + " /D" + hundred + " /E" +
                  hundred + " /F" + hundred,
              6}}) {
        std::string inputs;
        std::string calculation = "{";
        for (int i = 0; i < count; ++i) {
            inputs += "0 1 ";
            calculation += i == 0 ? "" : " pop";
        }
        omissions_.clear();
        openFile(PdfBuilder::onePage("/N cs 1 1 scn 0 0 9 9 re f",
                                     "/Resources << /ColorSpace << /N [/DeviceN [" + names +
                                         "] /DeviceGray 34 0 R] >> >>")
                     .stream(34, calculation + "}",
                             "/FunctionType 4 /Range [0 1] /Domain [" + inputs + "]")
                     .bytes());
        EXPECT_EQ(document_->style(artist().at(0)).fill.kind, ColourKind::gray) << names;
        EXPECT_EQ(omissions_, lost) << names;
    }
}

} // namespace
} // namespace corvane
