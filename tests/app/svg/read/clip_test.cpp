#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

namespace corvane::test {
namespace {

const std::string square = "<rect width='100' height='100'/>";
const std::string drawnSquare = "<path d=\"M0 0H100V100H0Z\"/>";

std::string clipped(const std::string& clip, const std::string& inside) {
    return clip + "<g clip-path=\"url(#clip1)\">" + inside + "</g>";
}

TEST(ReadClips, GroupsAndShapes) {
    const std::string clip = "<clipPath id='a'><path d='M0 0L50 50H0Z'/></clipPath>";
    const std::string wanted =
        clipped("<clipPath><path d=\"M0 0 50 50H0Z\"/></clipPath>", drawnSquare);
    EXPECT_EQ(redrawn(clip + "<g clip-path='url(#a)'>" + square + "</g>"), wanted);
    EXPECT_EQ(redrawn(clip + "<g style='clip-path:url(\"#a\")'>" + square + "</g>"), wanted);
    EXPECT_EQ(redrawn(clip + "<rect clip-path='url(#a)' width='100' height='100'/>"), wanted);
    // The clip lies in the user space of what it clips.
    EXPECT_EQ(redrawn(clip + "<g transform='scale(2)' clip-path='url(#a)'>" + square + "</g>"),
              clipped("<clipPath><path d=\"M0 0 100 100H0Z\"/></clipPath>",
                      "<path d=\"M0 0H200V200H0Z\"/>"));
    EXPECT_EQ(redrawn("<clipPath id='a' clipPathUnits='objectBoundingBox'>"
                      "<path d='M0 0L.5 .5H0Z'/></clipPath>"
                      "<g clip-path='url(#a)'>" +
                      square + "</g>"),
              wanted);
    EXPECT_EQ(redrawn("<clipPath id='a' clipPathUnits='objectBoundingBox'>"
                      "<path d='M0 0L.5 .5H0Z'/></clipPath>"
                      "<rect clip-path='url(#a)' width='100' height='100'/>"),
              wanted);
}

TEST(ReadClips, ShapesThatFollowEachOtherShareAGroup) {
    const std::string clip = "<clipPath id='a'><path d='M0 0L50 50H0Z'/></clipPath>";
    const std::string shape = "<rect clip-path='url(#a)' width='100' height='100'/>";
    EXPECT_EQ(
        redrawn(clip + shape + shape),
        clipped("<clipPath><path d=\"M0 0 50 50H0Z\"/></clipPath>", drawnSquare + drawnSquare));
    const ReadArt apart(foreignSvg(clip + shape + square + shape));
    const Art layer = apart.document.layerArt(apart.document.firstLayer());
    EXPECT_EQ(apart.document.kind(apart.document.firstChild(layer)), ArtKind::group);
    EXPECT_EQ(apart.document.kind(apart.document.lastChild(layer)), ArtKind::group);
}

TEST(ReadClips, SeveralPartsAreOneArea) {
    // The parts run in different directions, and overlap.
    const ReadArt art(foreignSvg("<clipPath id='a'><path d='M0 0H50V50H0Z'/>"
                                 "<path d='M40 40V90H90V40Z'/></clipPath>"
                                 "<g clip-path='url(#a)'>" +
                                 square + "</g>"));
    const Document& document = art.document;
    const Art group = document.firstChild(document.layerArt(document.firstLayer()));
    const Art clip = document.firstChild(group);
    ASSERT_EQ(document.kind(clip), ArtKind::compound);
    int turns = 0;
    for (Art path = document.firstChild(clip); path != Art::null;
         path = document.nextSibling(path)) {
        double area = 0;
        const Segments segments = document.segments(path);
        for (std::int32_t i = 0; i < segments.size(); ++i) {
            const Point a = segments[i].anchor;
            const Point b = segments[(i + 1) % segments.size()].anchor;
            area += double{1} * a.x * b.y - double{1} * b.x * a.y;
        }
        turns += area > 0 ? 1 : -1;
    }
    EXPECT_EQ(std::abs(turns), 2);
    EXPECT_EQ(document.style(document.firstChild(clip)).rule, FillRule::nonzero);
}

/// The points of a curve may enclose no area where the curve does.
TEST(ReadClips, PartsOfFewPointsUniteToo) {
    const std::string box = "<path d='M50 0H150V100H50Z'/>";
    const auto startOfLeaf = [&](const std::string& leaf) {
        const ReadArt art(foreignSvg("<clipPath id='a'>" + leaf + box +
                                     "</clipPath><g clip-path='url(#a)'>" + square + "</g>"));
        const Document& document = art.document;
        const Art group = document.firstChild(document.layerArt(document.firstLayer()));
        Art part = document.firstChild(document.firstChild(group));
        while (document.segments(part).size() != 2) {
            part = document.nextSibling(part);
        }
        return document.segments(part)[0].anchor.x;
    };
    // One is the other upside down: of the two, one must be turned round.
    EXPECT_NE(startOfLeaf("<path d='M0 0C0 200 100 200 100 0Z'/>"),
              startOfLeaf("<path d='M0 200C0 0 100 0 100 200Z'/>"));
}

TEST(ReadClips, PercentagesAreOfTheViewportOfWhatIsClipped) {
    EXPECT_EQ(redrawn("<clipPath id='a'><rect width='50%' height='25%'/></clipPath>"
                      "<svg width='100' height='80' overflow='visible'>"
                      "<g clip-path='url(#a)'>" +
                      square + "</g></svg>"),
              "<g>" + clipped("<clipPath><path d=\"M0 0H50V20H0Z\"/></clipPath>", drawnSquare) +
                  "</g>");
}

TEST(ReadClips, ClipsOfClipsRulesAndFaults) {
    const ReadArt both(foreignSvg(
        "<clipPath id='a'><path d='M0 0L50 50H0Z'/></clipPath>"
        "<clipPath id='b' clip-path='url(#a)'><path clip-rule='evenodd' d='M0 9L50 50H0Z'/>"
        "</clipPath><g clip-path='url(#b)'>" +
        square + "</g>"));
    EXPECT_EQ(both.drawn(), "<clipPath><path d=\"M0 0 50 50H0Z\"/></clipPath>"
                            "<g clip-path=\"url(#clip1)\">"
                            "<clipPath><path clip-rule=\"evenodd\" d=\"M0 9 50 50H0Z\"/>"
                            "</clipPath><g clip-path=\"url(#clip2)\">" +
                                drawnSquare + "</g></g>");
    const ReadArt circle(foreignSvg("<clipPath id='a' clip-path='url(#a)'/>"
                                    "<g clip-path='url(#a)'>" +
                                    square + "</g>"));
    EXPECT_EQ(circle.ignored("clip-path"), 1);
    EXPECT_NE(circle.svg().find("display=\"none\""), std::string::npos); // an empty clip hides
    const ReadArt missing(foreignSvg("<g clip-path='url(#a)'>" + square + "</g>"));
    EXPECT_EQ(missing.ignored("clip-path"), 1);
    EXPECT_EQ(missing.drawn(), "<g>" + drawnSquare + "</g>");
    EXPECT_EQ(redrawn("<clipPath id='a'><use href='#s' x='5'/></clipPath>"
                      "<defs><path id='s' d='M0 0L50 50H0Z'/></defs><g clip-path='url(#a)'>" +
                      square + "</g>"),
              clipped("<clipPath><path d=\"M5 0 55 50H5Z\"/></clipPath>", drawnSquare));
}

/// Letters that clip have no paint, and no ids.
TEST(ReadClips, Text) {
    const auto text = [](const std::string& attributes, const std::string& letters) {
        return "<text " + attributes + " font-family=\"serif\" font-size=\"20\">" + letters +
               "</text>";
    };
    const std::string one = text("x=\"10\" y=\"20\"", "ab");
    const std::string two = text("x=\"10\" y=\"50\"", "cd<tspan fill='red'>ef</tspan>");
    const auto clip = [&](const std::string& parts) {
        return "<clipPath id='a'>" + parts + "</clipPath><g clip-path='url(#a)'>" + square + "</g>";
    };
    const std::string wanted = clipped("<clipPath>" + one + "</clipPath>", drawnSquare);
    EXPECT_EQ(redrawn(clip(one)), wanted);
    EXPECT_EQ(redrawn(clip("<text x='10' y='20' font-family='serif' font-size='20' fill='none' "
                           "stroke='red'>ab</text>")),
              wanted);
    EXPECT_EQ(redrawn(clip("<use href='#t' x='5'/>") + "<defs>" +
                      text("id='t' x='5' y='20'", "ab") + "</defs>"),
              wanted);
    // Several lines clip together; letters that look alike are one run.
    EXPECT_EQ(redrawn(clip(one + two)),
              clipped("<clipPath>" + one + text("x=\"10\" y=\"50\"", "cdef") + "</clipPath>",
                      drawnSquare));
    EXPECT_EQ(ReadArt(foreignSvg(clip(one + two))).reading.ignored.size(), 0U);
    // No letters clip everything away, as no shapes do.
    EXPECT_NE(ReadArt(foreignSvg(clip(text("x='1' y='1'", "")))).svg().find("display=\"none\""),
              std::string::npos);
    const ReadArt mixed(foreignSvg(clip("<path d='M0 0L50 50H0Z'/>" + one)));
    EXPECT_EQ(mixed.ignored("text"), 1);
    EXPECT_EQ(mixed.drawn(),
              clipped("<clipPath><path d=\"M0 0 50 50H0Z\"/></clipPath>", drawnSquare));
    const ReadArt hidden(foreignSvg(clip(one + text("x='1' y='1' visibility='hidden'", "no"))));
    EXPECT_EQ(hidden.drawn(), wanted);
}

TEST(ReadClips, TextKeepsItsSource) {
    const std::string body = "<clipPath id=\"clip1\" data-source=\"50 52 3 0a1b\">\n"
                             "   <text x=\"10\" y=\"20\" font-family=\"serif\" "
                             "font-size=\"20\">ab</text>\n"
                             "  </clipPath>\n"
                             "  <g id=\"g1\" clip-path=\"url(#clip1)\">";
    const ReadArt art(ourSvg(body + drawnSquare + "</g>", "data-digest='0000000000000a1b'"));
    EXPECT_NE(art.svg().find(body), std::string::npos) << art.svg();
}

/// A clip that the writer did not draw comes back only as long as it cuts nothing.
TEST(ReadClips, ClipsThatCutNothing) {
    const auto group = [](const std::string& clip) {
        return ourSvg("<g data-clip='" + clip + "'><path d='M10 10H20V20Z'/></g>");
    };
    EXPECT_NE(ReadArt(group("M0 0H30V30H0Z")).svg().find("data-clip"), std::string::npos);
    EXPECT_EQ(ReadArt(group("M0 0H15V30H0Z")).svg().find("clip"), std::string::npos);
    EXPECT_EQ(ReadArt(group("M0 0L90 0 90 90Z")).svg().find("clip"), std::string::npos);
}

} // namespace
} // namespace corvane::test
