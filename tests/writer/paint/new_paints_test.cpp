// Gradients and patterns of the artwork as objects of the page, and back.
#include "tests/writer/patch/patch_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

Colour gray(double black) {
    Colour colour;
    colour.component[0] = fixedFromReal(black);
    return colour;
}

class NewPaintsTest : public PatchTest {
protected:
    void paint(Gradient gradient, bool strokes = false) {
        openPage("0 0 50 50 re f 60 60 9 9 re f");
        Artist a = artist();
        Colour colour{.kind = ColourKind::gradient};
        colour.source = document_->addGradient(std::move(gradient));
        a.style(a.at(0), [&](PathStyle& style) {
            (strokes ? style.strokePaint : style.fillPaint) = 1;
            (strokes ? style.stroke : style.fill) = colour;
        });
        ASSERT_EQ(save(), 0U);
        EXPECT_EQ(facts(), "1 1 0 0 0");
        ASSERT_EQ(open(), 0U);
    }
    PathStyle style() { return document_->style(artist().at(0)); }
};

TEST_F(NewPaintsTest, GradientsComeBack) {
    struct Row {
        Gradient gradient;
        bool strokes;
    };
    const std::vector<GradientStop> plain = {{0, gray(1), 1}, {.5, gray(.5), 1}, {1, gray(.9), 1}};
    const std::vector<GradientStop> cut = {{0, gray(1), 0},  {0, gray(1), 1}, {.5, gray(0), 1},
                                           {.5, gray(1), 1}, {1, gray(0), 1}, {1, gray(0), 0}};
    for (
        const Row& row : {
            Row{{.x1 = 5, .y1 = 6, .x2 = 40, .y2 = 9, .matrix = {2, 1, 0, 1, 4, 4}, .stops = plain},
                false},
            Row{{.x2 = 40, .matrix = {}, .stops = cut}, true},
            Row{{.radial = true, .x1 = 3, .y1 = 1, .r1 = 2, .r2 = 30, .matrix = {}, .stops = plain},
                true},
            Row{{.radial = true, .r1 = 2, .r2 = 30, .matrix = {}, .stops = cut}, false},
        }) {
        paint(row.gradient, row.strokes);
        const PathStyle saved = style();
        const Colour& colour = row.strokes ? saved.stroke : saved.fill;
        ASSERT_EQ(colour.kind, ColourKind::gradient);
        const Gradient& gradient = document_->gradient(colour.source);
        EXPECT_EQ(gradient.radial, row.gradient.radial);
        EXPECT_EQ(gradient.matrix, row.gradient.matrix);
        EXPECT_DOUBLE_EQ(gradient.x1, row.gradient.x1);
        EXPECT_DOUBLE_EQ(gradient.r1, row.gradient.r1);
        EXPECT_DOUBLE_EQ(gradient.x2, row.gradient.x2);
        ASSERT_EQ(gradient.stops.size(), row.gradient.stops.size());
        for (std::size_t i = 0; i < gradient.stops.size(); ++i) {
            EXPECT_DOUBLE_EQ(gradient.stops[i].offset, row.gradient.stops[i].offset);
            EXPECT_EQ(gradient.stops[i].opacity, row.gradient.stops[i].opacity);
            EXPECT_NEAR(gradient.stops[i].colour.component[0],
                        row.gradient.stops[i].colour.component[0], 2);
        }
    }
}

/// What a page cannot say in the gradient itself is in what stands around it.
TEST_F(NewPaintsTest, SpreadsAndOpacities) {
    struct Row {
        Gradient gradient;
        const char* holds;
    };
    const std::vector<GradientStop> plain = {{0, gray(1), 1}, {1, gray(0), 1}};
    for (const Row& row : {
             Row{{.x1 = 0,
            .x2 = 306,
            .matrix = {},
            .spread = GradientSpread::reflect,
            .stops = plain},
                 "/Encode [ 0 1 1 0 ]"},
             Row{{.x1 = 0,
             .x2 = 306,
             .matrix = {},
             .spread = GradientSpread::repeat,
             .stops = plain},
                 "/Encode [ 0 1 0 1 ]"},
             Row{{.x2 = 30, .matrix = {}, .stops = {{0, gray(1), .5}, {1, gray(0), 1}}},
                 "/S /Luminosity"},
             Row{{.x2 = 0, .matrix = {}, .stops = plain}, "/C0 [ 1 ] /C1 [ 1 ]"},
             Row{{.x2 = 9, .matrix = {0, 0, 0, 0, 5, 5}, .stops = plain}, "/Coords [ 0 0 1 0 ]"},
         }) {
        paint(row.gradient);
        EXPECT_NE(bytes().find(row.holds), std::string::npos) << row.holds;
    }
}

/// The page's own paint stays where an edit left it, moves where the artwork moved it, and goes
/// where it is another one.
TEST_F(NewPaintsTest, PaintOfThePage) {
    enum class Edit { shape, both, stops };
    for (const Edit edit : {Edit::shape, Edit::both, Edit::stops}) {
        openFile(PdfBuilder::onePage("/Pattern cs /G scn 0 0 50 50 re f 0 g 60 60 9 9 re f",
                                     "/Resources << /Pattern << /G 8 0 R >> >>")
                     .object(8, "<< /PatternType 2 /Shading << /ShadingType 2 /ColorSpace "
                                "/DeviceGray /Coords [0 0 50 0] /Function << /FunctionType 2 "
                                "/Domain [0 1] /C0 [0] /C1 [1] /N 1 >> /Extend [true true] >> >>")
                     .bytes());
        Artist a = artist();
        Gradient gradient = document_->gradient(document_->style(a.at(0)).fill.source);
        if (edit != Edit::stops) {
            a.move(a.at(0), 30, 40);
        }
        if (edit == Edit::both) {
            gradient.matrix.tx += 30;
            gradient.matrix.ty += 40;
        } else if (edit == Edit::stops) {
            gradient.stops[0].colour = gray(.5);
        }
        a.style(a.at(0),
                [&](PathStyle& style) { style.fill.source = document_->addGradient(gradient); });
        ASSERT_EQ(save(), 0U);
        const std::string added = bytes().substr(file_.size());
        EXPECT_EQ(added.find("/Type /Pattern") != std::string::npos, edit == Edit::stops);
        EXPECT_EQ(added.find("/Matrix [ 1 0 0 1 30 40 ]") != std::string::npos, edit == Edit::both);
        ASSERT_EQ(open(), 0U);
        const Gradient& saved = document_->gradient(style().fill.source);
        EXPECT_EQ(saved.matrix, gradient.matrix);
        EXPECT_EQ(saved.stops, gradient.stops);
    }
}

TEST_F(NewPaintsTest, TilesAreDrawnOnce) {
    openPage("0 0 50 50 re f 60 60 9 9 re f");
    Artist a = artist();
    const Art tile = document_->makeArtwork();
    const Art mark = document_->duplicate(a.at(1), Placement::inside, tile);
    a.style(mark, [](PathStyle& style) { style.fill = gray(.25); });
    Colour colour{.kind = ColourKind::pattern};
    colour.source = document_->addPattern({.tile = tile,
                                           .left = 60,
                                           .bottom = 60,
                                           .right = 70,
                                           .top = 72,
                                           .stepX = 10,
                                           .stepY = 15,
                                           .matrix = {2, 0, 0, 2, 1, 0}});
    for (const std::size_t i : {0U, 1U}) {
        a.style(a.at(i), [&](PathStyle& style) {
            style.fill = colour;
            style.strokePaint = 1;
            style.stroke = colour;
        });
    }
    ASSERT_EQ(save(), 0U);
    const std::string added = bytes().substr(file_.size());
    EXPECT_EQ(added.find("/PatternType 1"), added.rfind("/PatternType 1"));
    ASSERT_EQ(open(), 0U);
    const Pattern& pattern = document_->pattern(style().fill.source);
    EXPECT_EQ(style().stroke.source, style().fill.source);
    EXPECT_EQ(pattern.stepY, 15);
    EXPECT_EQ(pattern.matrix, (RealMatrix{2, 0, 0, 2, 1, 0}));
}

/// A custom colour is written as the ink that it names: the page's own where that has one.
TEST_F(NewPaintsTest, CustomColoursAreInks) {
    struct Row {
        const char* name;
        const char* space; ///< of the content's resources
        std::string object;
    };
    const std::string made =
        "/Separation /Sea#20Blue#28x#29 /DeviceCMYK << /FunctionType 2 /Domain "
        "[ 0 1 ] /N 1 /C0 [ 0 0 0 0 ] /C1 [ 1 .5 0 0 ] >> ]";
    for (const Row& row :
         {Row{"new", "", made}, Row{"of the page", "/ColorSpace << /S 40 0 R >>", ""},
          Row{"another", "/ColorSpace << /S 41 0 R >>", made}}) {
        openFile(
            PdfBuilder::onePage("0 0 50 50 re f", "/Resources << " + std::string(row.space) + " >>")
                .object(40, "[ /Separation /Sea#20Blue#28x#29 /DeviceGray 42 0 R ]")
                .object(41, "[ /Separation /Blue /DeviceGray 42 0 R ]")
                .object(42, "<< /FunctionType 2 /Domain [0 1] /N 1 /C0 [1] /C1 [0] >>")
                .bytes());
        Colour colour{.kind = ColourKind::custom};
        colour.component[0] = fixedFromReal(.25);
        colour.source = document_->addSpotColour(
            {.name = "Sea Blue(x)", .process = {fixedOne, fixedOne / 2, 0, 0}});
        Artist a = artist();
        a.style(a.at(0), [&](PathStyle& style) {
            style.strokePaint = 1;
            style.fill = style.stroke = colour;
        });
        ASSERT_EQ(save(), 0U) << row.name;
        expectInOrder({" cs .75 scn", " CS .75 SCN"});
        EXPECT_EQ(bytes().find(made, file_.size()) != std::string::npos, !row.object.empty())
            << row.name;
        ASSERT_EQ(open(), 0U);
        ASSERT_EQ(style().fill.kind, ColourKind::custom) << row.name;
        const SpotColour& ink = document_->spotColour(style().fill.source);
        EXPECT_EQ(ink.name, "Sea Blue(x)");
        EXPECT_EQ(style().fill.component[0], colour.component[0]);
        EXPECT_EQ(ink.process[3] == fixedOne, row.object.empty()) << "that of the page is black";
    }
}

} // namespace
} // namespace corvane
