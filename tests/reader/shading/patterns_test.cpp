// Patterns and shadings of a page as gradients, patterns and images of the host.
#include "tests/reader/extension_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace corvane {
namespace {

class PatternsTest : public ExtensionTest {
protected:
    /// Draws with object 8 as the pattern /P and object 9 as the shading /S.
    void drawWith(const std::string& content, const std::string& pattern,
                  const std::string& shading, std::string_view tile = "") {
        PdfBuilder file =
            PdfBuilder::onePage(content, "/Resources<</Pattern<</P 8 0 R>>/Shading<</S 9 0 R>>"
                                         "/ColorSpace<</U[/Pattern/DeviceRGB]>>>>");
        if (tile.empty()) {
            file.object(8, "<<" + pattern + ">>");
        } else {
            file.stream(8, tile, pattern);
        }
        draw(file.object(9, "<<" + shading + ">>").bytes());
    }
    Art firstArt() { return document().lastChild(importedArt()); }
    Colour fill() { return document().style(firstArt()).fill; }
};

std::string stopsText(const Gradient& gradient) {
    std::ostringstream text;
    for (const GradientStop& stop : gradient.stops) {
        text << stop.offset << ":" << 255 - stop.colour.component[0] * 255 / fixedOne << ","
             << stop.opacity << " ";
    }
    return text.str();
}

constexpr const char* grays = "/Function<</FunctionType 2/Domain[0 1]/C0[0]/C1[1]/N 1>>";
constexpr const char* jump =
    "/Function<</FunctionType 3/Domain[0 1]/Bounds[.25]/Encode[0 1 0 1]/Functions["
    "<</FunctionType 2/Domain[0 1]/C0[0]/C1[1]/N 1>><</FunctionType 2/Domain[0 1]/C0[0]/C1[0]/N 1>>"
    "]>>";

TEST_F(PatternsTest, StopsAndPlacesOfGradients) {
    struct Row {
        std::string shading;
        const char* stops;
        const char* places; ///< x1 y1 r1 x2 y2 r2
    };
    const std::string axial = "/ShadingType 2/ColorSpace/DeviceGray/Coords[10 0 110 0]";
    const std::string radial = "/ShadingType 3/ColorSpace/DeviceGray";
    for (const Row& row : {
             Row{axial + grays + "/Extend[true true]", "0:0,1 1:255,1 ", "10 0 0 110 0 0"},
             Row{axial + grays, "0:0,0 0:0,1 1:255,1 1:255,0 ", "10 0 0 110 0 0"},
             Row{axial + grays + "/Background[.2]/Extend[true false]", "0:0,1 1:255,1 1:51,1 ",
                 "10 0 0 110 0 0"},
             Row{axial + jump + "/Extend[true true]", "0:0,1 0.25:255,1 0.25:0,1 1:0,1 ",
                 "10 0 0 110 0 0"},
             Row{axial + grays + "/Domain[.25 .75]/Extend[true true]", "0:64,1 1:192,1 ",
                 "10 0 0 110 0 0"},
             Row{radial + "/Coords[5 6 0 7 8 30]" + grays + "/Extend[false true]", "0:0,1 1:255,1 ",
                 "5 6 0 7 8 30"},
             Row{radial + "/Coords[7 8 30 5 6 2]" + grays + "/Extend[true false]",
                 "0:255,0 0:255,1 1:0,1 ", "5 6 2 7 8 30"},
             // No number, as a place in a table.
             Row{"/ShadingType 2/ColorSpace[/Indexed/DeviceGray 1<FF00>]/Coords[0 0 9 0]"
                 "/Domain[0 2]/Extend[true true]/Function<</FunctionType 2/Domain[0 2]/N 2000000"
                 "/C0[0]/C1[0]>>",
                 "0:255,1 1:255,1 ", "0 0 0 9 0 0"},
             Row{"/ShadingType 2/ColorSpace/DeviceGray/Coords[9 9 9 9]" + std::string(grays),
                 "0:0,0 ", "0 0 0 0 0 0"},
         }) {
        drawWith("/Pattern cs /P scn 0 0 9 9 re f", "/PatternType 2/Shading 9 0 R", row.shading);
        ASSERT_EQ(fill().kind, ColourKind::gradient) << row.shading;
        const Gradient& gradient = document().gradient(fill().source);
        EXPECT_EQ(stopsText(gradient), row.stops) << row.shading;
        std::ostringstream places;
        places << gradient.x1 << " " << gradient.y1 << " " << gradient.r1 << " " << gradient.x2
               << " " << gradient.y2 << " " << gradient.r2;
        EXPECT_EQ(places.str(), row.places) << row.shading;
    }
}

/// A curve of a function is met within a level, in no more stops than it takes.
TEST_F(PatternsTest, StopsFollowCurves) {
    drawWith("/S sh", "",
             "/ShadingType 2/ColorSpace/DeviceGray/Coords[0 0 1 0]/Extend[true true]"
             "/Function<</FunctionType 2/Domain[0 1]/C0[0]/C1[1]/N 3>>");
    const std::vector<GradientStop>& stops = document().gradient(fill().source).stops;
    EXPECT_LT(stops.size(), 40U);
    for (std::size_t i = 0; i + 1 < stops.size(); ++i) {
        for (const double share : {.25, .5, .75}) {
            const auto light = [](const GradientStop& stop) {
                return 1 - static_cast<double>(stop.colour.component[0]) / fixedOne;
            };
            const double place = std::lerp(stops[i].offset, stops[i + 1].offset, share);
            EXPECT_NEAR(std::lerp(light(stops[i]), light(stops[i + 1]), share), std::pow(place, 3),
                        1.0 / 255);
        }
    }
}

TEST_F(PatternsTest, MatricesLeadFromTheContentThatUsesThem) {
    drawWith("2 0 0 2 50 60 cm /Pattern cs /P scn 0 0 9 9 re f /S sh",
             "/PatternType 2/Matrix[3 0 0 3 1 2]/Shading 9 0 R",
             "/ShadingType 2/ColorSpace/DeviceGray/Coords[0 0 1 0]" + std::string(grays));
    EXPECT_EQ(document().gradient(fill().source).matrix, (RealMatrix{3, 0, 0, 3, 1, 2}));
    const Art shaded = document().firstChild(importedArt());
    EXPECT_EQ(document().gradient(document().style(shaded).fill.source).matrix,
              (RealMatrix{2, 0, 0, 2, 50, 60}));
}

TEST_F(PatternsTest, ShadingsFillTheirClip) {
    drawWith("q 10 20 30 40 re W n /S sh Q", "",
             "/ShadingType 2/ColorSpace/DeviceGray/Coords[0 0 1 0]" + std::string(grays));
    const Art group = firstArt();
    ASSERT_TRUE(document().clipped(group));
    const Segments corners = document().segments(document().lastChild(group));
    ASSERT_EQ(corners.size(), 4U);
    EXPECT_EQ(corners[0].anchor, (Point{10 * fixedOne, 20 * fixedOne}));
    EXPECT_EQ(corners[2].anchor, (Point{40 * fixedOne, 60 * fixedOne}));
}

TEST_F(PatternsTest, TilesOfPatterns) {
    struct Row {
        const char* entries;
        const char* cell; ///< left bottom right top, steps
        int copies;       ///< groups in the tile; 0: the path itself
    };
    for (const Row& row : {
             Row{"/BBox[0 0 8 8]/XStep 8/YStep 8", "0 0 8 8 8 8", 0},
             Row{"/BBox[0 0 8 8]/XStep -8/YStep 10", "0 0 8 8 8 10", 1},
             Row{"/BBox[1 0 9 8]/XStep 5/YStep 8", "1 0 6 8 5 8", 2},
             Row{"/BBox[0 0 8 8]/XStep 0", "0 0 8 8 8 8", 0},
             Row{"/BBox[0 0 64 64]/XStep 64/YStep 64/Matrix[.125 0 0 .125 0 0]", "0 0 8 8 8 8", 0},
         }) {
        drawWith("/U cs 1 0 0 /P scn 0 0 9 9 re f",
                 std::string("/PatternType 1/PaintType 2/Resources<<>>") + row.entries, "",
                 "0 1 0 rg 0 0 4 4 re f");
        ASSERT_EQ(fill().kind, ColourKind::pattern) << row.entries;
        const Pattern& pattern = document().pattern(fill().source);
        std::ostringstream cell;
        cell << pattern.left << " " << pattern.bottom << " " << pattern.right << " " << pattern.top
             << " " << pattern.stepX << " " << pattern.stepY;
        EXPECT_EQ(cell.str(), row.cell) << row.entries;
        Art path = document().firstChild(pattern.tile);
        int copies = 0;
        for (Art art = path; document().kind(path) == ArtKind::group && art != Art::null;
             art = document().nextSibling(art)) {
            ++copies;
        }
        EXPECT_EQ(copies, row.copies) << row.entries;
        path = copies == 0 ? path : document().lastChild(path);
        // The content sets a colour in vain: it is that of scn, red.
        EXPECT_EQ(document().style(path).fill.component[0], 0) << row.entries;
        EXPECT_EQ(document().style(path).fill.component[1], fixedOne) << row.entries;
    }
}

TEST_F(PatternsTest, CellsThatCannotBeHeld) {
    drawWith("/Pattern cs /P scn 0 0 9 9 re f",
             "/PatternType 1/PaintType 1/BBox[0 0 99 99]/XStep 99/YStep 99/Resources<<>>"
             "/Matrix[2147483647 0 0 -1 0 0]",
             "", "0 0 4 4 re f");
    EXPECT_EQ(document().style(firstArt()).fillPaint, 0);
}

TEST_F(PatternsTest, TilesThatPaintNothing) {
    for (const char* steps : {"/XStep 8/YStep 8", "/XStep 9/YStep 9", "/XStep 4/YStep 3"}) {
        drawWith("/Pattern cs /P scn 0 0 9 9 re f",
                 std::string("/PatternType 1/PaintType 1/BBox[0 0 8 8]/Resources<<>>") + steps, "",
                 "q 0 0 4 4 re Q");
        ASSERT_EQ(fill().kind, ColourKind::pattern) << steps;
        EXPECT_EQ(document().firstChild(document().pattern(fill().source).tile), Art::null)
            << steps;
    }
}

TEST_F(PatternsTest, ImagesArePaintedWhateverTheFillIs) {
    const std::string rows = "/Width 1/Height 1/BitsPerComponent ";
    PdfBuilder file = PdfBuilder::onePage(
        "/Pattern cs /P scn 9 0 0 9 0 0 cm /I Do /M Do BI/W 1/H 1/BPC 8/CS/G ID a EI",
        "/Resources<</Pattern<</P 8 0 R>>/XObject<</I 10 0 R/M 11 0 R>>>>");
    file.object(8,
                "<</PatternType 2/Shading<</ShadingType 2/ColorSpace/DeviceGray/Coords[0 0 9 0]" +
                    std::string(grays) + ">>>>")
        .stream(10, "a", "/Subtype/Image/ColorSpace/DeviceGray" + rows + "8")
        .stream(11, "a", "/Subtype/Image/ImageMask true" + rows + "1");
    draw(file.bytes());
    int placed = 0;
    for (Art art = firstArt(); art != Art::null; art = document().previousSibling(art)) {
        placed += document().kind(art) == ArtKind::placed ? 1 : 0;
    }
    EXPECT_EQ(placed, 2) << "but for the stencil";
}

/// Has the document take the bytes of images; they are dropped.
void takeImages(std::span<HostProcedure> table) {
    static HostError (*known)(const ImageFacts*, Image*, std::uint8_t*) = nullptr;
    known = slotProcedure(table.data(), slot::addImage);
    fillSlot(
        table, slot::addImage,
        +[](const ImageFacts* facts, Image* image, std::uint8_t* wantsBytes) {
            const HostError error = known(facts, image, wantsBytes);
            *wantsBytes = 1;
            return error;
        });
    fillSlot(
        table, slot::addImageBytes,
        +[](Image, const std::byte*, std::int64_t) { return HostError::none; });
    fillSlot(
        table, slot::endImage, +[](Image) { return HostError::none; });
}

/// The host is asked about once in a million steps, within one operator too.
TEST_F(PatternsTest, ColoursAreWorkOfThePage) {
    const auto repeated = [](std::string_view text, int times) {
        std::string all;
        for (int i = 0; i < times; ++i) {
            all += text;
        }
        return all;
    };
    takeImages(std::span(table_->ref().get(), slotCount));
    static int asked = 0;
    const auto questions = [&](const std::string& content, const std::string& shading) {
        const std::string tint = "[/Separation/X/DeviceGray 10 0 R]";
        PdfBuilder file = PdfBuilder::onePage(
            content, "/Resources<</Shading<</S 9 0 R>>/ColorSpace<</C" + tint +
                         ">>/ExtGState<</G<</SMask<</S/Alpha/G 11 0 R/TR<</FunctionType 3"
                         "/Domain[0 1]/Functions[10 0 R]/Bounds[]/Encode[0 1]>>>>>>>>>>");
        file.object(9, "<</ColorSpace" + tint + shading + ">>")
            .stream(10, "{" + repeated("dup sin pop ", 200) + " 360 mul sin abs}",
                    "/FunctionType 4/Domain[0 1]/Range[0 1]")
            .stream(11, "", "/Subtype/Form/BBox[0 0 9 9]/Group<</S/Transparency>>")
            .stream(12, "{pop 60 div}", "/FunctionType 4/Domain[0 60 0 60]/Range[0 1]");
        scope_.reset();
        document_.emplace();
        scope_.emplace(*document_);
        document().page().setProfile(rules().profile);
        document().expectImport();
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        asked = 0;
        const CallbackScope counting(document(), [] { return ++asked < 0; });
        readCache(cache);
        return asked;
    };
    struct Row {
        const char* name;
        std::string content;
        std::string shading = "/ShadingType 9";
    };
    const std::string linear = "/Function<</FunctionType 2/Domain[0 1]/N 1>>";
    for (const Row& row : {
             Row{"pixels", "0 0 12 12 re W n /S sh",
                 "/ShadingType 1/Domain[0 60 0 60]/Function 12 0 R"},
             Row{"stops", "/S sh", "/ShadingType 2/Coords[0 0 9 0]" + linear},
             Row{"a ramp", "0 0 9 9 re W n /S sh", "/ShadingType 3/Coords[0 0 1 50 0 1]" + linear},
             Row{"colours of a space", "/C cs" + repeated(" .5 scn", 500)},
             Row{"transfer functions", repeated("/G gs ", 3)},
         }) {
        EXPECT_GT(questions(row.content, row.shading), questions("", row.shading)) << row.name;
    }
}

TEST_F(PatternsTest, APatternThatPaintsItselfEnds) {
    PdfBuilder file = PdfBuilder::onePage("/Pattern cs /P scn 0 0 9 9 re f",
                                          "/Resources<</Pattern<</P 8 0 R>>>>");
    file.stream(8, "/Pattern cs /P scn 0 0 4 4 re f 5 5 2 2 re S",
                "/PatternType 1/PaintType 1/BBox[0 0 8 8]/XStep 8/YStep 8"
                "/Resources<</Pattern<</P 8 0 R>>>>");
    draw(file.bytes());
    ASSERT_EQ(fill().kind, ColourKind::pattern);
    const Art tile = document().pattern(fill().source).tile;
    EXPECT_EQ(document().style(document().lastChild(tile)).fillPaint, 0);
    EXPECT_EQ(document().style(document().firstChild(tile)).strokePaint, 1);
}

} // namespace
} // namespace corvane
