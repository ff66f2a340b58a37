// Markers, paint in another order, and paint that is taken from what bears it.
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane::test {
namespace {

const std::string bar = "<rect width='4' height='2'/>";

struct Place {
    const char* shape;                     ///< with `marker` on all vertices
    const char* orient;                    ///< of the marker
    std::initializer_list<const char*> at; ///< where bars are to be seen
};

/// A bar of 4 by 2, of which the middle is laid onto vertices.
std::string marker(const std::string& attributes) {
    return "<marker id='m' markerWidth='4' markerHeight='2' refX='2' refY='1' overflow='visible' " +
           attributes + ">" + bar + "</marker>";
}

TEST(ReadMarkers, StandOnVerticesAndTurnAsTheLineDoes) {
    const std::string line = " stroke='#f00' stroke-width='2' fill='none'";
    for (const Place& row : {
             Place{"<path d='M10 10H30'", "", {"10 10", "30 10"}},
             Place{
                 "<path d='M10 10V30'", "orient='auto'", {"10 10) rotate(90", "10 30) rotate(90"}},
             Place{"<path d='M10 10h20v20'",
                   "orient='auto'",
                   {"10 10", "30 10) rotate(45", "30 30) rotate(90"}},
             Place{"<path d='M10 10H30'",
                   "orient='auto-start-reverse'",
                   {"10 10) rotate(180", "30 10"}},
             Place{"<path d='M10 10H30'",
                   "orient='.25turn'",
                   {"10 10) rotate(90", "30 10) rotate(90"}},
             // An arc is one segment however many curves it takes.
             Place{"<path d='M10 10a20 20 0 1 1 40 0'",
                   "orient='auto'",
                   {"10 10) rotate(-90", "50 10) rotate(90"}},
             // Where a subpath closes, its ends are as any other vertex.
             Place{"<path d='M10 10H30V30z'",
                   "orient='auto'",
                   {"10 10) rotate(-67.5", "30 10) rotate(45", "30 30) rotate(157.5",
                    "10 10) rotate(-67.5"}},
             Place{"<path d='M10 10h0h20'", "orient='auto'", {"10 10", "10 10", "30 10"}},
             Place{"<polyline points='10 10 30 10'", "", {"10 10", "30 10"}},
             Place{"<circle r='9'", "", {}},
         }) {
        std::string bars;
        for (const char* const at : row.at) {
            bars += "<g><rect width='4' height='2' transform='translate(" + std::string(at) +
                    ") scale(2) translate(-2 -1)'/></g>";
        }
        const std::string shape = row.shape + line;
        const std::string drawn = redrawn(marker(row.orient) + shape + " style='marker:url(#m)'/>");
        const std::string wanted = shape + "/>" + bars;
        EXPECT_EQ(drawn, redrawn(bars.empty() ? wanted : "<g>" + wanted + "</g>")) << row.shape;
    }
}

TEST(ReadMarkers, HaveSizesWindowsAndLooksOfTheirOwn) {
    const std::string line = "<path d='M0 10H30' stroke='#f00' stroke-width='2'";
    const auto bearing = [&](const std::string& attributes, const std::string& content) {
        return redrawn("<marker id='m' " + attributes + ">" + content + "</marker>" + line +
                       " marker-end='url(#m)'/>");
    };
    const auto drawn = [&](const std::string& content) {
        return redrawn("<g>" + line + "/>" + content + "</g>");
    };
    EXPECT_EQ(bearing("markerUnits='userSpaceOnUse' markerWidth='4' markerHeight='2'", bar),
              drawn("<g><rect x='30' y='10' width='4' height='2'/></g>"));
    EXPECT_EQ(bearing("viewBox='0 0 4 2' markerWidth='8' refX='right' refY='100%'", bar),
              drawn("<g><rect x='18' y='4' width='12' height='6'/></g>"));
    EXPECT_EQ(bearing("overflow='visible' markerWidth='1' markerHeight='1'", bar),
              drawn("<g><rect x='30' y='10' width='8' height='4'/></g>"));
    EXPECT_EQ(bearing("opacity='.5' markerWidth='4'", bar),
              drawn("<g opacity='.5'><rect x='30' y='10' width='8' height='4'/></g>"));
    // What does not fit is cut.
    EXPECT_NE(bearing("markerWidth='3'", bar).find("clip-path"), std::string::npos);
    for (const char* const nothing : {"markerWidth='0'", "markerHeight='-1'"}) {
        EXPECT_EQ(bearing(nothing, bar), drawn("")) << nothing;
    }
    const ReadArt bad(foreignSvg("<marker id='m'><path d='M0 0H1' marker-end='url(#m)'/></marker>" +
                                 line + " marker-end='url(#m)'/>" + line +
                                 " marker-start='url(#none)'/>"));
    EXPECT_EQ(bad.ignored("circular reference"), 1);
    EXPECT_EQ(bad.ignored("marker"), 1);
}

TEST(ReadMarkers, CoatsGoIntoOneGroup) {
    const std::string square = "<rect width='20' height='20' ";
    const std::string both = square + "fill='#00f' stroke='#f00' stroke-width='4' ";
    const std::string filled = square + "fill='#00f'/>";
    const std::string stroked = square + "fill='none' stroke='#f00' stroke-width='4'/>";
    EXPECT_EQ(redrawn(both + "opacity='.5' paint-order='stroke'/>"),
              redrawn("<g opacity='.5'>" + stroked + filled + "</g>"));
    for (const char* const usual : {"normal", "fill", "fill markers", "markers"}) {
        EXPECT_EQ(redrawn(both + "paint-order='" + usual + "'/>"), redrawn(both + "/>")) << usual;
    }
    EXPECT_EQ(redrawn(square + "fill='#00f' paint-order='stroke'/>"), redrawn(filled));
    const std::string line = "<path d='M0 10H30' stroke='#f00'";
    EXPECT_EQ(redrawn(marker("markerUnits='userSpaceOnUse'") + line +
                      " paint-order='markers' marker-start='url(#m)'/>"),
              redrawn("<g><g><rect x='-2' y='9' width='4' height='2'/></g>" + line + "/></g>"));
    const ReadArt text(foreignSvg("<text stroke='#f00' paint-order='stroke'>a</text>"));
    EXPECT_EQ(text.ignored("paint-order"), 1);
}

TEST(ReadMarkers, ContextPaintIsThatOfWhatBearsOrUsesIt) {
    const std::string line = "<path d='M0 10H30' fill='#00f' stroke='#f00'";
    const std::string seen =
        "<rect width='4' height='2' stroke='context-fill' fill='context-stroke'/>";
    EXPECT_EQ(
        redrawn("<marker id='m' overflow='visible'>" + seen + "</marker>" + line +
                " marker-start='url(#m)'/>"),
        redrawn("<g>" + line +
                "/><g><rect y='10' width='4' height='2' stroke='#00f' fill='#f00'/></g></g>"));
    EXPECT_EQ(redrawn("<defs><g id='g'>" + seen + "</g></defs><use href='#g' fill='#0f0'/>"),
              redrawn("<g><g><rect width='4' height='2' stroke='#0f0' fill='none'/></g></g>"));
    EXPECT_EQ(redrawn(seen), redrawn("<rect width='4' height='2' fill='none'/>"));
    const std::string gradient = "<linearGradient id='l'><stop/></linearGradient>";
    const ReadArt used(foreignSvg(gradient + "<defs><g id='g'>" + seen +
                                  "</g></defs><use href='#g' stroke='url(#l)'/>"));
    EXPECT_EQ(used.ignored("context paint"), 1);
}

} // namespace
} // namespace corvane::test
