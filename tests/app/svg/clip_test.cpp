// Which clips are written, left out or combined, so that the look stays.
#include "tests/app/svg/art_builder.h"

#include <gtest/gtest.h>

namespace corvane::test {
namespace {

bool has(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

struct Row {
    const char* name;
    std::vector<Point> clip;
    std::vector<Point> content;
    PathStyle style;
    bool kept;
};

PathStyle mitered(double width, double limit) {
    PathStyle style = stroked(width);
    style.miterLimit = fixed(limit);
    return style;
}

TEST(Clip, IsWrittenOnlyWhereItMayCut) {
    const std::vector<Point> spike{at(20, 20), at(50, 24), at(20, 28)};
    const Row rows[] = {
        {"content within", box(10, 10, 90, 90), box(10, 10, 90, 90), filled(), false},
        {"content beyond", box(10, 10, 90, 90), box(10, 10, 90, 91), filled(), true},
        {"stroke within", box(10, 10, 90, 90), box(12, 12, 88, 88), stroked(4), false},
        {"stroke beyond", box(10, 10, 90, 90), box(12, 12, 88, 88), stroked(4.1), true},
        {"miter within", box(10, 10, 90, 90), spike, mitered(2, 5), false},
        {"miter beyond", box(10, 10, 90, 90), spike, mitered(2, 50), true},
        {"whole page", box(0, 0, 300, 200), box(-50, -50, 400, 400), filled(), false},
        {"nearly the page", box(0, 0, 299.9, 200), box(-50, -50, 400, 400), filled(), true},
        {"unpainted content", box(10, 10, 90, 90), box(0, 0, 99, 99), PathStyle{}, false},
        {"not a rectangle",
         {at(0, 0), at(300, 1), at(300, 200), at(0, 200)},
         box(1, 9, 9, 99),
         filled(),
         true},
    };
    for (const Row& row : rows) {
        ArtBuilder art;
        const Art group = art.clippedGroup(art.layerArt(), row.clip);
        art.behindClip(group, row.content, row.style);
        const std::string text = art.svg();
        EXPECT_EQ(has(text, "<clipPath"), row.kept) << row.name;
        EXPECT_EQ(has(text, "clip-path=\"url(#clip1)\""), row.kept) << row.name;
        EXPECT_EQ(has(text, " data-clip=\"M"), !row.kept) << row.name;
    }
}

TEST(Clip, CurvesCountByTheirControlPoints) {
    ArtBuilder art;
    const Art group = art.clippedGroup(art.layerArt(), box(10, 10, 90, 90));
    const Art path = art.behindClip(group, {at(20, 20), at(80, 20)}, filled());
    const Segment bulging{at(20, 20), at(20, 20), at(20, 120), 0};
    art.document.writeSegments(path, 0, std::vector<Segment>{bulging});
    EXPECT_TRUE(has(art.svg(), "<clipPath"));
}

TEST(Clip, OneRectangleInsideAnotherIsWrittenOnce) {
    for (const bool outerLarger : {true, false}) {
        ArtBuilder art;
        const std::vector<Point> large = box(10, 10, 90, 90);
        const std::vector<Point> small = box(20, 20, 80, 80);
        const Art outer = art.clippedGroup(art.layerArt(), outerLarger ? large : small);
        const Art inner = art.groupBehindClip(outer);
        PathStyle clip;
        clip.clip = 1;
        art.path(inner, outerLarger ? small : large, clip);
        art.document.setClipped(inner, true);
        art.behindClip(inner, box(0, 0, 200, 200), filled());
        const std::string text = art.layerText();
        EXPECT_TRUE(has(text, "<path d=\"M20 180H80V120H20Z\"/></clipPath>")) << text;
        EXPECT_TRUE(has(text, "data-clip=\"M10 190H90V110H10Z\"")) << text;
        EXPECT_FALSE(has(text, "clip2")) << text;
    }
}

TEST(Clip, WithoutAreaHidesWhatItClips) {
    const std::vector<std::vector<Point>> clips = {
        {}, {at(5, 5)}, {at(5, 5), at(90, 50)}, {at(5, 5), at(90, 50), at(5, 5)}, box(5, 5, 90, 5)};
    for (const std::vector<Point>& clip : clips) {
        ArtBuilder art;
        const Art group = art.clippedGroup(art.layerArt(), clip);
        art.behindClip(group, box(0, 0, 50, 50), filled());
        EXPECT_TRUE(has(art.svg(), "<g id=\"g1\" clip-path=\"url(#clip1)\" display=\"none\">"))
            << clip.size();
    }
    ArtBuilder art; // a huge, very flat triangle does have one
    const Art group =
        art.clippedGroup(art.layerArt(), {at(-32000, -32000), at(0, 0.00002), at(32000, 32000)});
    art.behindClip(group, box(0, 0, 50, 50), filled());
    EXPECT_FALSE(has(art.svg(), "display=\"none\""));
}

TEST(Clip, KeepsItsRuleSubpathsAndPaint) {
    ArtBuilder art;
    const Art group = art.group(art.layerArt());
    const Art clip = art.compound(group);
    PathStyle style = filled(0);
    style.rule = FillRule::evenOdd;
    art.path(clip, box(0, 0, 90, 90), style);
    art.path(clip, box(20, 20, 50, 50), style);
    art.document.setClipped(group, true);
    art.behindClip(group, box(10, 10, 80, 80), filled());
    EXPECT_EQ(art.layerText(),
              "  <clipPath id=\"clip1\"><path clip-rule=\"evenodd\" fill=\"#ffffff\""
              " d=\"M0 200H90V110H0ZM20 180H50V150H20Z\"/></clipPath>\n"
              "  <g id=\"g1\" clip-path=\"url(#clip1)\">\n"
              "   <path id=\"p1\" d=\"M10 190H80V120H10Z\"/>\n"
              "  </g>");
}

} // namespace
} // namespace corvane::test
