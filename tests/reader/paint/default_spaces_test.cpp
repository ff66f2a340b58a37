// Device colours as the default colour spaces of a page show them.
#include "reader/paint/seen_colour.h"
#include "tests/reader/extension_fixture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace corvane {
namespace {

/// Red becomes green, green blue, blue red.
constexpr const char* turned = "/DefaultRGB[/DeviceN[/A/B/C]/DeviceRGB 20 0 R]";
/// Red becomes blue.
constexpr const char* turnedBack = "/DefaultRGB[/DeviceN[/A/B/C]/DeviceRGB 21 0 R]";

class DefaultSpacesTest : public ExtensionTest {
protected:
    /// The colours of the fills, from the back to the front.
    std::string fills(Art container) {
        std::string text;
        for (Art art = document().lastChild(container); art != Art::null;
             art = document().previousSibling(art)) {
            if (document().kind(art) != ArtKind::path) {
                text += fills(art);
                continue;
            }
            const PathStyle style = document().style(art);
            if (style.fillPaint != 0) {
                text += textOf(style.fill);
            }
        }
        return text;
    }
    std::string textOf(const Colour& colour) {
        if (colour.kind == ColourKind::gradient) {
            return "(" + textOf(document().gradient(colour.source).stops.front().colour) + ")";
        }
        if (colour.kind == ColourKind::pattern) {
            return "[" + fills(document().pattern(colour.source).tile) + "]";
        }
        if (colour.kind == ColourKind::inks) {
            return textOf(document().inkMixture(colour.source).seen);
        }
        const SeenColour seen = seenColour(colour);
        std::array<char, 16> hex{};
        std::snprintf(hex.data(), hex.size(), "%02x%02x%02x ", seen.red, seen.green, seen.blue);
        return hex.data();
    }
    std::string drawn(const std::string& content, const std::string& spaces,
                      const std::string& other = "") {
        const std::string domain = "/FunctionType 4/Domain[0 1 0 1 0 1]/Range[0 1 0 1 0 1]";
        const std::string form = "/Subtype/Form/BBox[0 0 9 9]";
        const std::string tile =
            "/PatternType 1/PaintType 1/TilingType 1/BBox[0 0 9 9]/XStep 9/YStep 9";
        const std::string red = "1 0 0 rg 0 0 9 9 re f";
        draw(PdfBuilder::onePage(content, "/Resources<</ColorSpace<<" + spaces +
                                              ">>/XObject<</Bare 22 0 R/Empty 23 0 R/Own 24 0 R>>"
                                              "/Pattern<</Tile 25 0 R/OwnTile 26 0 R/Shade 27 0 R>>"
                                              ">>")
                 .stream(20, "{3 1 roll}", domain)
                 .stream(21, "{3 -1 roll}", domain)
                 .stream(22, red, form)
                 .stream(23, red, form + "/Resources<<>>")
                 .stream(24, red, form + "/Resources<</ColorSpace<<" + turnedBack + ">>>>")
                 .stream(25, red, tile + "/Resources<<>>")
                 .stream(26, red, tile + "/Resources<</ColorSpace<<" + turnedBack + ">>>>")
                 .object(27, "<</PatternType 2/Shading<</ShadingType 2/ColorSpace/DeviceRGB"
                             "/Coords[0 0 9 0]/Extend[true true]/Function<</FunctionType 2/N 1"
                             "/Domain[0 1]/C0[1 0 0]/C1[1 0 0]>>>>>>")
                 .object(28, other.empty() ? "null" : other)
                 .bytes());
        return fills(importedArt());
    }
};

TEST_F(DefaultSpacesTest, WhateverNamesADeviceSpace) {
    const std::string box = " 0 0 9 9 re f ";
    const std::string spaces = std::string(turned) +
                               "/Named[/DeviceRGB]/Table[/Indexed/DeviceRGB 0<FF0000>]"
                               "/Ink[/Separation/Ink/DeviceRGB<</FunctionType 2/N 1/Domain[0 1]"
                               "/C0[0 0 0]/C1[1 0 0]>>]";
    EXPECT_EQ(drawn("1 0 0 rg" + box + "0 1 0 sc" + box + "/DeviceRGB cs 1 0 0 sc" + box +
                        "/Named cs 1 0 0 sc" + box + "/Table cs 0 sc" + box + "/Ink cs 1 scn" +
                        box + ".2 g" + box,
                    spaces),
              "00ff00 0000ff 00ff00 00ff00 00ff00 00ff00 333333 ");
    // A form without a default of its own has that of the page; a tile has its own alone.
    EXPECT_EQ(drawn("/Bare Do /Empty Do /Own Do /Bare Do /Pattern cs /Tile scn" + box +
                        "/OwnTile scn" + box + "/Shade scn" + box,
                    spaces),
              "00ff00 00ff00 0000ff 00ff00 [ff0000 ][0000ff ](00ff00 )");
    EXPECT_EQ(drawn("0 g" + box + ".5 0 0 .5 k" + box,
                    "/DefaultGray[/Separation/All/DeviceGray<</FunctionType 2/N 1/Domain[0 1]"
                    "/C0[1]/C1[0]>>]/DefaultCMYK[/Indexed/DeviceCMYK 0<00000000>]"),
              "ffffff 008080 ");
}

TEST_F(DefaultSpacesTest, SpacesThatAreNoDefaultsAreIgnored) {
    for (const char* const spaces :
         {"/DefaultRGB/DeviceRGB", "/DefaultRGB/DefaultRGB", "/DefaultRGB/DeviceGray",
          "/DefaultRGB/Pattern", "/DefaultRGB[/Lab<</WhitePoint[1 1 1]>>]", "/DefaultRGB 99 0 R",
          "/DefaultRGB[/Indexed/DeviceRGB 0<0000FF>]", "/DefaultRGB 28 0 R", "/DefaultRGB 7"}) {
        // 28 is its own alternate.
        EXPECT_EQ(drawn("1 0 0 rg 0 0 9 9 re f", spaces, "[/DeviceN[/A/B/C]28 0 R 20 0 R]"),
                  "ff0000 ")
            << spaces;
    }
}

} // namespace
} // namespace corvane
