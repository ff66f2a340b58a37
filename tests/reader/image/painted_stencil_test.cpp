// Stencils in gradients and patterns: paths under a mask of the image.
#include "tests/reader/extension_fixture.h"

#include <gtest/gtest.h>

#include <sstream>

namespace corvane {
namespace {

class PaintedStencilTest : public ExtensionTest {
protected:
    std::string drawImages(const std::string& content) {
        const std::string image = "/Type /XObject /Subtype /Image /Width 1 /Height 1 ";
        return draw(
            PdfBuilder::onePage(
                content,
                "/Resources << /Pattern << /T 8 0 R /G << /PatternType 2 /Shading 9 0 R >> >> "
                "/XObject << /M 20 0 R /I 21 0 R /B 23 0 R >> /ExtGState << /H << /ca .5 /BM "
                "/Multiply >> "
                "/S << /SMask << /S /Alpha /G 22 0 R >> >> >> >>")
                .stream(8, "0 0 4 4 re f",
                        "/PatternType 1 /PaintType 1 /BBox [0 0 8 8] /XStep 8 /YStep 8 "
                        "/Resources << >>")
                .object(9, "<< /ShadingType 2 /ColorSpace /DeviceGray /Coords [0 0 9 0] /Function "
                           "<< /FunctionType 2 /Domain [0 1] /C0 [0] /C1 [1] /N 1 >> >>")
                .stream(20, "a", image + "/ImageMask true /BitsPerComponent 1")
                .stream(21, "a", image + "/ColorSpace /DeviceGray /BitsPerComponent 8")
                .stream(23, "a", image + "/ImageMask true /Filter /Odd")
                .stream(22, "0 0 9 9 re f",
                        "/Subtype /Form /BBox [0 0 9 9] /Group << /S /Transparency >>")
                .bytes());
    }

    /// The number of the image's object, where it lies, and "masked".
    std::string imageText(Art art) {
        const PlacedImage placed = document().placedImage(art);
        const std::string_view key = document().images().facts(placed.image).key;
        std::ostringstream text;
        text << key.substr(0, key.find('-')) << " at " << (placed.matrix.tx >> 16) << ','
             << (placed.matrix.ty >> 16);
        if (document().appearance(art).mask != SoftMask::null) {
            text << " masked";
        }
        return text.str();
    }
    std::string artText(Art art) {
        if (art == Art::null) {
            return "nothing";
        }
        if (document().kind(art) == ArtKind::placed) {
            return imageText(art);
        }
        const Appearance look = document().appearance(art);
        const ColourKind fill = document().style(art).fill.kind;
        std::ostringstream text;
        text << (fill == ColourKind::pattern    ? "pattern"
                 : fill == ColourKind::gradient ? "gradient"
                                                : "colour");
        text << ' ' << look.fillOpacity << (look.blend == BlendMode::multiply ? " multiply" : "");
        const Segments corners = document().segments(art);
        text << " from " << (corners[0].anchor.x >> 16) << ',' << (corners[0].anchor.y >> 16)
             << " to " << (corners[2].anchor.x >> 16) << ',' << (corners[2].anchor.y >> 16);
        const MaskFacts& mask = document().mask(look.mask);
        text << (mask.isLuminosity ? " through " : " behind ")
             << imageText(document().firstChild(mask.content));
        return text.str();
    }
};

TEST_F(PaintedStencilTest, PathsUnderMasksAndImages) {
    struct Row {
        const char* content;
        const char* art;
    };
    for (const Row& row : {
             Row{"/Pattern cs /T scn 5 0 0 6 1 2 cm /M Do",
                 "pattern 1 from 1,2 to 6,8 through 20 at 1,2"},
             Row{"/Pattern cs /T scn 5 0 0 6 1 2 cm /B Do",
                 "pattern 1 from 1,2 to 6,8 through 23 at 1,2"},
             Row{"/Pattern cs /G scn 5 0 0 6 1 2 cm /M Do",
                 "gradient 1 from 1,2 to 6,8 through 20 at 1,2"},
             Row{"/Pattern cs /T scn 5 0 0 6 1 2 cm BI /W 1 /H 1 /IM true ID a EI",
                 "pattern 1 from 1,2 to 6,8 through 0 at 1,2"},
             Row{"/H gs /Pattern cs /T scn 5 0 0 6 1 2 cm /M Do",
                 "pattern 0.5 multiply from 1,2 to 6,8 through 20 at 1,2"},
             Row{"/S gs /Pattern cs /T scn 5 0 0 6 1 2 cm /M Do",
                 "pattern 1 from 1,2 to 6,8 through 20 at 1,2 masked"},
             Row{"5 0 0 6 1 2 cm /M Do", "20 at 1,2"},
             // What an image is filled with, it says itself.
             Row{"/Pattern cs /T scn 5 0 0 6 1 2 cm /I Do", "21 at 1,2"},
             Row{"/Odd cs 5 0 0 6 1 2 cm /I Do", "21 at 1,2"},
             Row{"/Pattern cs /T scn BI /W 1 /H 1 /CS /G /BPC 8 ID a EI", "0 at 0,0"},
             Row{"/Odd cs 5 0 0 6 1 2 cm /M Do", "nothing"},
         }) {
        drawImages(row.content);
        EXPECT_EQ(artText(document().lastChild(importedArt())), row.art) << row.content;
    }
}

TEST_F(PaintedStencilTest, AHostWithoutMasksHasNone) {
    extension_.version = 5;
    EXPECT_EQ(drawImages("/Pattern cs /T scn /M Do"), "6 19");
    EXPECT_EQ(document().firstChild(importedArt()), Art::null);
}

} // namespace
} // namespace corvane
