// Colours that are chosen on a page with default colour spaces.
#include "codecs/icc/icc_profile.h"
#include "codecs/icc/screen_profile.h"
#include "reader/paint/seen_colour.h"
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <span>

namespace corvane {
namespace {

class PlainSpacesTest : public PatchTest {
protected:
    /// Defaults of all three kinds that show other colours.
    void openTurned(const std::string& content) {
        openFile(
            PdfBuilder::onePage(
                content, "/Resources<</ColorSpace<</DefaultGray[/Separation/All/DeviceGray 9 0 R]"
                         "/DefaultRGB[/DeviceN[/A/B/C]/DeviceRGB 7 0 R]"
                         "/DefaultCMYK[/DeviceN[/A/B/C/D]/DeviceCMYK 8 0 R]>>>>")
                .stream(7, "{3 1 roll}", "/FunctionType 4/Domain[0 1 0 1 0 1]/Range[0 1 0 1 0 1]")
                .stream(8, "{4 1 roll}",
                        "/FunctionType 4/Domain[0 1 0 1 0 1 0 1]/Range[0 1 0 1 0 1 0 1]")
                .object(9, "<</FunctionType 2/N 1/Domain[0 1]/C0[1]/C1[0]>>")
                .bytes());
    }
    SeenColour fillOf(std::size_t index) {
        const Colour fill = document_->style(artist().at(index)).fill;
        return seenColour(fill.kind == ColourKind::inks ? document_->inkMixture(fill.source).seen
                                                        : fill);
    }
};

constexpr Colour red{.kind = ColourKind::process,
                     .component = {0, fixedOne, fixedOne, 0},
                     .origin = ColourOrigin::fromRgb};
constexpr Colour inks{.kind = ColourKind::process,
                      .component = {fixedOne, 0, fixedOne / 2, fixedOne / 4}};

TEST_F(PlainSpacesTest, ColoursAreAsTheyWereChosen) {
    openTurned("1 0 0 rg 0 0 9 9 re f 20 0 9 9 re f .25 g 40 0 9 9 re f 60 0 9 9 re f");
    EXPECT_EQ(fillOf(0), (SeenColour{0, 255, 0}));
    EXPECT_EQ(fillOf(2), (SeenColour{191, 191, 191}));
    Artist edits = artist();
    const auto paint = [&](std::size_t index, const Colour& colour) {
        edits.style(edits.at(index), [&](PathStyle& style) { style.fill = colour; });
    };
    paint(1, red);
    edits.fill(edits.at(2), .8);
    paint(3, inks);
    edits.move(edits.at(0), 5, 5);
    edits.add(80, 0, 9, 9); // a quarter of black
    ASSERT_EQ(save(), 0U);
    EXPECT_THAT(newContent(), ::testing::HasSubstr("1 0 0 rg")) << "of what is only moved";
    ASSERT_EQ(open(), 0U);
    EXPECT_EQ(fillOf(0), (SeenColour{0, 255, 0}));
    EXPECT_EQ(fillOf(1), (SeenColour{255, 0, 0}));
    EXPECT_EQ(fillOf(2), (SeenColour{51, 51, 51}));
    EXPECT_EQ(fillOf(3), seenColour(inks));
    EXPECT_EQ(fillOf(4), (SeenColour{191, 191, 191}));
    EXPECT_EQ(document_->style(artist().at(2)).fill.kind, ColourKind::gray);
}

TEST_F(PlainSpacesTest, GradientsAndInksToo) {
    openTurned("0 0 9 9 re f 20 0 9 9 re f");
    Artist edits = artist();
    Colour gradient{.kind = ColourKind::gradient, .component = {}};
    gradient.source =
        document_->addGradient({.x2 = 9, .matrix = {}, .stops = {{0, red, 1}, {1, inks, .5}}});
    const Colour ink{.kind = ColourKind::custom,
                     .component = {},
                     .source = document_->addSpotColour(
                         {.name = "Gold", .process = {0, fixedOne / 4, fixedOne, 0}})};
    edits.style(edits.at(0), [&](PathStyle& style) { style.fill = gradient; });
    edits.style(edits.at(1), [&](PathStyle& style) { style.fill = ink; });
    ASSERT_EQ(save(), 0U);
    ASSERT_EQ(open(), 0U);
    const Colour first = document_->style(artist().at(0)).fill;
    ASSERT_EQ(first.kind, ColourKind::gradient);
    const Gradient& read = document_->gradient(first.source);
    EXPECT_EQ(seenColour(read.stops.front().colour), seenColour(red));
    EXPECT_EQ(seenColour(read.stops.back().colour), seenColour(inks));
    const Colour second = document_->style(artist().at(1)).fill;
    ASSERT_EQ(second.kind, ColourKind::custom);
    const SpotColour& gold = document_->spotColour(second.source);
    EXPECT_EQ(gold.name, "Gold");
    EXPECT_EQ(seenColour({.kind = ColourKind::process,
                          .component = {gold.process[0], gold.process[1], gold.process[2],
                                        gold.process[3]}}),
              (SeenColour{255, 191, 0}));
}

TEST(ScreenProfile, LooksAsADeviceDoes) {
    for (const bool isGray : {true, false}) {
        const std::string bytes = screenProfile(isGray);
        const auto profile =
            IccProfile::read(std::as_bytes(std::span(bytes)), isGray ? 1 : 3, openIccLibrary());
        ASSERT_NE(profile, nullptr);
        EXPECT_TRUE(profile->isLikeDevice());
    }
}

} // namespace
} // namespace corvane
