#include "app/svg/path_data.h"

#include "tests/app/svg/art_builder.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvane::test {
namespace {

std::string dataOf(const Document& document, Art shape) {
    StringSink sink;
    TextOutput out(sink);
    writePathData(out, document, shape, {0, fixed(200)});
    out.flush();
    return sink.text();
}

std::string dataOf(const std::vector<Segment>& segments, bool closed) {
    Document document;
    const Art path =
        document.make(ArtKind::path, Placement::inside, document.layerArt(document.firstLayer()));
    document.setSegmentCount(path, static_cast<std::int32_t>(segments.size()));
    document.writeSegments(path, 0, segments);
    document.setClosed(path, closed);
    return dataOf(document, path);
}

Segment corner(double x, double y) {
    return {at(x, y), at(x, y), at(x, y), 0};
}

TEST(PathData, SaysEverySegmentInFewCharacters) {
    const Segment start = corner(0, 200);
    const Segment leaving{at(0, 200), at(0, 200), at(5, 200), 0};
    const Segment arriving{at(10, 190), at(10, 195), at(10, 190), 0};
    const Segment arrivingAtStart{at(0, 200), at(-5.5, 190), at(0, 200), 0};
    const struct {
        std::vector<Segment> segments;
        bool closed;
        const char* wanted;
    } rows[] = {
        {{}, true, ""},
        {{corner(7, 190)}, false, "M7 10"},
        {{corner(7, 190)}, true, "M7 10Z"},
        {{start, corner(10, 190), corner(20, 195)}, false, "M0 0 10 10 20 5"},
        {{start, corner(9, 200), corner(9, 180), corner(0, 180)}, true, "M0 0H9V20H0Z"},
        {{start, corner(9, 200), corner(12, 200), start}, false, "M0 0H9 12 0"},
        {{start, start}, false, "M0 0H0"},
        // Blanks only where two numbers would run together.
        {{corner(.5, 199.75), corner(-.5, 200.25), corner(3.5, 199.5)},
         false,
         "M.5.25-.5-.25 3.5.5"},
        {{corner(3, 199.5), corner(5, 199)}, false, "M3 .5 5 1"},
        {{leaving, arriving, corner(20, 180)}, false, "M0 0C5 0 10 5 10 10L20 20"},
        // A curve back to the start, and an end on the start, are written out.
        {{arrivingAtStart, corner(10, 190)}, true, "M0 0 10 10C10 10-5.5 10 0 0Z"},
        {{start, corner(10, 190), start}, true, "M0 0 10 10 0 0H0Z"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(dataOf(row.segments, row.closed), row.wanted);
    }
}

TEST(PathData, SubpathsKeepTheOrderInWhichTheyWereDrawn) {
    ArtBuilder art;
    const Art compound = art.compound(art.layerArt());
    art.path(compound, box(0, 0, 10, 10), filled());
    art.path(compound, {}, filled());
    art.path(compound, {at(5, 5), at(6, 7)}, filled(), false);
    EXPECT_EQ(dataOf(art.document, compound), "M0 200H10V190H0ZM5 195 6 193");
}

TEST(PathData, TheWholeRangeOfCoordinatesIsExact) {
    Document document;
    const Art path =
        document.make(ArtKind::path, Placement::inside, document.layerArt(document.firstLayer()));
    document.setSegmentCount(path, 1);
    const Point far{std::numeric_limits<Fixed>::max(), std::numeric_limits<Fixed>::min()};
    document.writeSegments(path, 0, std::vector<Segment>{{far, far, far, 0}});
    StringSink sink;
    TextOutput out(sink);
    writePathData(out, document, path, {std::numeric_limits<Fixed>::min(), fixed(32000)});
    out.flush();
    EXPECT_EQ(sink.text(), "M65535.99998 64768");
}

} // namespace
} // namespace corvane::test
