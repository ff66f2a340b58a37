// Gradients, patterns, custom colours and notes as SVG.
#include "tests/app/svg/art_builder.h"

#include <gtest/gtest.h>

namespace corvane::test {
namespace {

Gradient ramp(double x1, double x2) {
    Gradient gradient;
    gradient.x1 = x1;
    gradient.x2 = x2;
    gradient.stops = {{0, {}}, {1, {}}};
    gradient.stops[1].colour.component[0] = 0;
    return gradient;
}

/// The page's corner undone: what makes an element without a transform.
constexpr RealMatrix upright{1, 0, 0, -1, 0, 200};

PathStyle filledWith(ColourKind kind, PaintSource source) {
    PathStyle style = filled();
    style.fill.kind = kind;
    style.fill.source = source;
    style.fill.component[0] = 0;
    return style;
}

TEST(WriteSvgPaint, gradientsStandOnceInFrontOfTheirFirstUse) {
    ArtBuilder art;
    Gradient line = ramp(10, 110.5);
    line.matrix = upright;
    line.spread = GradientSpread::reflect;
    Gradient round = ramp(50, 60);
    round.radial = true;
    round.y1 = round.y2 = 1e-7;
    round.r1 = 0.1;
    round.r2 = 0.1 + 0.2;
    round.matrix = {0.5, 0, 0.25, 1, 7, 30};
    round.stops = {{1.0 / 3, {ColourKind::process, {fixedOne, 0, 0, 0}, ColourOrigin::given, {}}},
                   {0.5, {ColourKind::process, {0, 0, 0, 0}, ColourOrigin::fromRgb, {}}}};
    PathStyle both = filledWith(ColourKind::gradient, art.document.addGradient(round));
    both.strokePaint = 1;
    both.stroke.kind = ColourKind::gradient;
    both.stroke.source = art.document.addGradient(line);
    art.path(art.layerArt(), box(0, 0, 10, 10), both);
    PathStyle again = filledWith(ColourKind::gradient, both.stroke.source);
    art.path(art.layerArt(), box(0, 0, 20, 20), again);
    EXPECT_EQ(
        art.layerText(),
        "  <radialGradient id=\"gradient1\" gradientUnits=\"userSpaceOnUse\" cx=\"60\" cy=\"1e-07\""
        " r=\".3\" fx=\"50\" fy=\"1e-07\" fr=\".1\""
        " gradientTransform=\"matrix(.5 0 .25 -1 7 170)\">\n"
        "   <stop offset=\".333333333333\" stop-color=\"#00ffff\" data-stop-cmyk=\"1 0 0 0\"/>\n"
        "   <stop offset=\".5\" stop-color=\"#ffffff\" data-stop-rgb=\"1 1 1\"/>\n"
        "  </radialGradient>\n"
        "  <linearGradient id=\"gradient2\" gradientUnits=\"userSpaceOnUse\" x1=\"10\" y1=\"0\""
        " x2=\"110.5\" y2=\"0\" spreadMethod=\"reflect\">\n"
        "   <stop offset=\"0\" stop-color=\"#000000\"/>\n"
        "   <stop offset=\"1\" stop-color=\"#ffffff\"/>\n"
        "  </linearGradient>\n"
        "  <path id=\"p1\" fill=\"url(#gradient1)\" stroke=\"url(#gradient2)\""
        " d=\"M0 200H10V190H0Z\"/>\n"
        "  <path id=\"p2\" fill=\"url(#gradient2)\" d=\"M0 200H20V180H0Z\"/>");
}

TEST(WriteSvgPaint, patternsHoldTheirTileAndFollowWhatItNeeds) {
    ArtBuilder art;
    Pattern inner;
    inner.tile = art.document.makeArtwork();
    inner.right = inner.top = 4;
    inner.stepX = inner.stepY = 4;
    const PaintSource dots = art.document.addPattern(inner);
    Pattern outer;
    outer.tile = art.document.makeArtwork();
    art.document.setClipped(outer.tile, true);
    art.path(outer.tile, box(0, 0, 8, 8), filledWith(ColourKind::pattern, dots));
    art.path(outer.tile, {at(0, 0), at(5, 0), at(0, 5)}, PathStyle{});
    outer.left = 0.1;
    outer.bottom = 0.2;
    outer.right = outer.top = 9;
    outer.stepX = outer.right - outer.left;
    outer.stepY = 12;
    outer.matrix = {2, 0, 0, 2, 0, 0};
    const PaintSource boxes = art.document.addPattern(outer);
    art.path(art.layerArt(), box(0, 0, 90, 90), filledWith(ColourKind::pattern, boxes));
    EXPECT_EQ(art.layerText(),
              "  <pattern id=\"pattern1\" patternUnits=\"userSpaceOnUse\" x=\"0\" y=\"196\""
              " width=\"4\" height=\"4\" viewBox=\"0 196 4 4\"/>\n"
              "  <pattern id=\"pattern2\" patternUnits=\"userSpaceOnUse\" x=\".1\" y=\"187.8\""
              " width=\"8.9\" height=\"12\" viewBox=\".1 187.8 8.9 12\" "
              "patternTransform=\"matrix(2 0 0 2 0 -200)\""
              " data-cell-height=\"8.8\">\n"
              "   <clipPath id=\"clip1\"><path d=\"M0 200H5L0 195Z\"/></clipPath>\n"
              "   <g id=\"g1\" clip-path=\"url(#clip1)\">\n"
              "    <path id=\"tp1\" fill=\"url(#pattern1)\" d=\"M0 200H8V192H0Z\"/>\n"
              "   </g>\n"
              "  </pattern>\n"
              "  <path id=\"p1\" fill=\"url(#pattern2)\" d=\"M0 200H90V110H0Z\"/>");
}

/// What a pen does to the element it does to its paint, too, unless that undoes it.
TEST(WriteSvgPaint, paintLiesOnThePageWhateverThePen) {
    ArtBuilder art;
    Gradient gradient = ramp(0, 60);
    gradient.matrix = {1, .5, 0, 1, 10, 0};
    Pattern pattern;
    pattern.tile = art.document.makeArtwork();
    art.path(pattern.tile, box(0, 0, 2, 3), filled());
    pattern.right = pattern.stepX = 4;
    pattern.top = pattern.stepY = 5;
    PathStyle style = filledWith(ColourKind::pattern, art.document.addPattern(pattern));
    style.strokePaint = 1;
    style.stroke.kind = ColourKind::gradient;
    style.stroke.source = art.document.addGradient(gradient);
    art.path(art.layerArt(), box(0, 0, 50, 50), style);
    style.pen = {1, 0, .5};
    art.path(art.layerArt(), box(0, 0, 50, 50), style);
    style.strokePaint = 0;
    art.path(art.layerArt(), box(0, 0, 40, 40), style);
    const std::string text = art.layerText();
    for (const char* part :
         {"<linearGradient id=\"gradient2\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
          "xlink:href=\"#gradient1\" gradientTransform=\"matrix(1 -1 0 -2 10 400)\"/>",
          "<pattern id=\"pattern2\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
          "xlink:href=\"#pattern1\" patternTransform=\"matrix(1 0 0 2 0 0)\"/>",
          "fill=\"url(#pattern2)\" stroke=\"url(#gradient2)\" transform=\"matrix(1 0 0 .5 0 0)\" "
          "d=\"M0 400 50 400 50 300 0 300Z\"/>",
          "<path id=\"p3\" fill=\"url(#pattern1)\" d=\"M0 200H40V160H0Z\"/>"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << text;
    }
}

/// Paint of a clip is kept, of a guide and of what is not painted not.
TEST(WriteSvgPaint, onlyPaintInUseIsWritten) {
    ArtBuilder art;
    const PaintSource used = art.document.addGradient(ramp(0, 1));
    PathStyle unused = filledWith(ColourKind::gradient, art.document.addGradient(ramp(0, 2)));
    const Art guide = art.path(art.layerArt(), box(0, 0, 1, 1), unused);
    art.document.setGuide(guide, true);
    unused.fillPaint = 0;
    art.path(art.layerArt(), box(0, 0, 2, 2), unused);
    const Art clipped = art.clippedGroup(art.layerArt(), box(0, 0, 3, 3));
    art.document.setStyle(art.document.firstChild(clipped), filledWith(ColourKind::gradient, used));
    art.behindClip(clipped, box(0, 0, 9, 9), filled());
    const std::string text = art.layerText();
    EXPECT_EQ(text.find("x2=\"2\""), std::string::npos);
    EXPECT_LT(text.find("<linearGradient id=\"gradient1\""),
              text.find("<clipPath id=\"clip1\"><path fill=\"url(#gradient1)\""));
}

TEST(WriteSvgPaint, customColoursAreSeenAsTheirInks) {
    ArtBuilder art;
    const PaintSource spot =
        art.document.addSpotColour({"Red \"&<1>", {0, fixedOne, fixed(0.5), 0}});
    PathStyle style = filledWith(ColourKind::custom, spot);
    art.path(art.layerArt(), box(0, 0, 1, 1), style);
    style = stroked(1);
    style.stroke.kind = ColourKind::custom;
    style.stroke.source = spot;
    style.stroke.component[0] = fixed(0.5);
    art.path(art.layerArt(), box(0, 0, 1, 1), style);
    const PaintSource black = art.document.addSpotColour({"Black", {0, 0, 0, fixedOne}});
    art.path(art.layerArt(), box(0, 0, 1, 1), filledWith(ColourKind::custom, black));
    EXPECT_EQ(art.layerText(),
              "  <path id=\"p1\" fill=\"#ff0080\" data-fill-spot=\"Red &quot;&amp;&lt;1&gt;\""
              " data-fill-cmyk=\"0 1 .5 0\" d=\"M0 200H1V199H0Z\"/>\n"
              "  <path id=\"p2\" fill=\"none\" stroke=\"#ff80bf\""
              " data-stroke-spot=\"Red &quot;&amp;&lt;1&gt;\" data-stroke-cmyk=\"0 1 .5 0\""
              " data-stroke-tint=\".5\" d=\"M0 200H1V199H0Z\"/>\n"
              "  <path id=\"p3\" data-fill-spot=\"Black\" data-fill-cmyk=\"0 0 0 1\""
              " d=\"M0 200H1V199H0Z\"/>");
}

TEST(WriteSvgPaint, notesAreDescriptions) {
    ArtBuilder art;
    PathStyle style = filled();
    style.note = art.document.addNote("a < b\n& c");
    const Art clipped = art.clippedGroup(art.layerArt(), box(0, 0, 9, 9));
    PathStyle clip = art.document.style(art.document.firstChild(clipped));
    clip.note = art.document.addNote("");
    art.document.setStyle(art.document.firstChild(clipped), clip);
    art.behindClip(clipped, box(0, 0, 1, 1), style);
    EXPECT_EQ(
        art.layerText(),
        "  <clipPath id=\"clip1\"><path d=\"M0 200H9V191H0Z\"><desc></desc></path></clipPath>\n"
        "  <g id=\"g1\" clip-path=\"url(#clip1)\">\n"
        "   <path id=\"p1\" d=\"M0 200H1V199H0Z\"><desc>a &lt; b&#10;&amp; c</desc></path>\n"
        "  </g>");
}

} // namespace
} // namespace corvane::test
