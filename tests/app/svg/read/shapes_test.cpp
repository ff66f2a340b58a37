#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace corvane::test {
namespace {

Art onlyShape(const Document& document) {
    return document.firstChild(document.layerArt(document.firstLayer()));
}

double pointsOf(Fixed value) {
    return static_cast<double>(value) / fixedOne;
}

/// Calls `use(x, y)` along a path, y up.
template <class Use>
void walk(const Document& document, Art path, Use use) {
    const Segments segments = document.segments(path);
    const std::int32_t steps = segments.size() - (document.closed(path) ? 0 : 1);
    for (std::int32_t i = 0; i < steps; ++i) {
        const Segment from = segments[i];
        const Segment to = segments[(i + 1) % segments.size()];
        for (double t = 0; t <= 1; t += .125) {
            const double s = 1 - t;
            const auto at = [&](Fixed a, Fixed b, Fixed c, Fixed d) {
                return s * s * s * pointsOf(a) + 3 * s * s * t * pointsOf(b) +
                       3 * s * t * t * pointsOf(c) + t * t * t * pointsOf(d);
            };
            use(at(from.anchor.x, from.out.x, to.in.x, to.anchor.x),
                at(from.anchor.y, from.out.y, to.in.y, to.anchor.y));
        }
    }
}

TEST(ReadShapes, PathDataInEveryForm) {
    struct Row {
        const char* data;
        const char* wanted; ///< as the writer says it
    };
    const Row rows[] = {
        {"M10 20 30 40", "M10 20 30 40"},
        {"m10,20 5-5.5.5,1e1", "M10 20 15 14.5 15.5 24.5"},
        {"M0 0H10V20h-5v-5Z", "M0 0H10V20H5V15Z"},
        {"M0 0l10 0 0 10zl5 5", "M0 0H10V10ZM0 0 5 5"},
        {"M0 0L10 0 10 10 0 0Z", "M0 0H10V10Z"},
        {"m0 0l.1 0 0 .1-.1-.1z", "M0 0H.1V.1Z"},
        {"M0 0c0 5 5 10 10 10s10-5 10-10", "M0 0C0 5 5 10 10 10 15 10 20 5 20 0"},
        {"M0 0S5 5 10 0", "M0 0C0 0 5 5 10 0"},
        {"M0 0Q3 6 6 0T12 0", "M0 0C2 4 4 4 6 0 8-4 10-4 12 0"},
        {"M0 0L5 5M9 9M1 1L2 1", "M0 0 5 5M1 1H2"},
        {"M0 0 A5 5 0 0 0 0 0L1 1", "M0 0 1 1"},
        {"M0 0A0 5 0 0 0 9 9", "M0 0 9 9"},
        {"M0 0 L5 5 L6", "M0 0 5 5"},
        {"M0 0 5 5 X 9 9", "M0 0 5 5"},
        {"L5 5", ""},
        {"", ""},
        {"none", ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(redrawn(std::string("<path d='") + row.data + "'/>"),
                  std::string("<path d=\"") + row.wanted + "\"/>")
            << row.data;
    }
    EXPECT_EQ(ReadArt(foreignSvg("<path d='M0 0L5'/><path d='0 0'/>")).ignored("path data"), 2);
}

TEST(ReadShapes, ArcsLieOnTheirEllipse) {
    struct Row {
        const char* data;
        double x, y, radiusX, radiusY, turn; ///< the ellipse, degrees
        double length;                       ///< of the chord polygon, at least
    };
    const Row rows[] = {
        {"M60 50A50 50 0 0 1 10 100", 10, 50, 50, 50, 0, 78},
        {"M60 50A50 50 0 1 0 10 100", 10, 50, 50, 50, 0, 235},
        {"m60 50a50,50 0 10-50 50", 10, 50, 50, 50, 0, 235},
        {"M20 100A10 10 0 0 1 120 100", 70, 100, 50, 50, 0, 156},
        {"M100 100 A 80 30 0 1 1 100 40", 100, 70, 80, 30, 0, 180},
    };
    for (const Row& row : rows) {
        const ReadArt art(foreignSvg(std::string("<path d='") + row.data + "'/>"));
        double length = 0;
        double lastX = 0;
        double lastY = 0;
        bool started = false;
        walk(art.document, onlyShape(art.document), [&](double x, double y) {
            const double fromX = x - row.x;
            const double fromY = 200 - y - row.y;
            EXPECT_NEAR(std::hypot(fromX / row.radiusX, fromY / row.radiusY), 1, 5e-4) << row.data;
            length += started ? std::hypot(x - lastX, y - lastY) : 0;
            started = true;
            lastX = x;
            lastY = y;
        });
        EXPECT_GT(length, row.length) << row.data;
    }
}

TEST(ReadShapes, BasicShapes) {
    EXPECT_EQ(redrawn("<rect x='10' y='20' width='30' height='40'/>"
                      "<line x1='1' y1='2' x2='3' y2='5' stroke='red'/>"
                      "<polyline points='1,2 3 4-5,6' fill='none'/>"
                      "<polygon points='0 0 10 0 10 10'/>"),
              "<path d=\"M10 20H40V60H10Z\"/>"
              "<path stroke=\"#ff0000\" stroke-miterlimit=\"4\" d=\"M1 2 3 5\"/>"
              "<path fill=\"none\" d=\"M1 2 3 4-5 6\"/>"
              "<path d=\"M0 0H10V10Z\"/>");
    EXPECT_EQ(redrawn("<rect width='0' height='9'/><circle r='0'/><ellipse rx='4' ry='0'/>"
                      "<rect width='-4' height='9'/><polygon/>"),
              "");
    const ReadArt circle(foreignSvg("<ellipse cx='100' cy='100' rx='80' ry='40'/>"));
    walk(circle.document, onlyShape(circle.document), [](double x, double y) {
        EXPECT_NEAR(std::hypot((x - 100) / 80, (y - 100) / 40), 1, 5e-4);
    });
    EXPECT_EQ(circle.document.segments(onlyShape(circle.document)).size(), 4);
    const ReadArt round(foreignSvg("<rect width='20' height='10' rx='4' ry='30'/>"));
    EXPECT_EQ(round.document.segments(onlyShape(round.document)).size(), 6);
}

TEST(ReadShapes, TransformsAndUnits) {
    const char* const rectangle = "<rect width='10' height='20'";
    const auto moved = [&](const std::string& transform) {
        return redrawn(rectangle + (" transform='" + transform + "'/>"));
    };
    EXPECT_EQ(moved("translate(5)"), "<path d=\"M5 0H15V20H5Z\"/>");
    EXPECT_EQ(moved("translate(5 6),scale(2)"), "<path d=\"M5 6H25V46H5Z\"/>");
    EXPECT_EQ(moved("matrix(0 1 -1 0 30 40)"), "<path d=\"M30 40V50H10V40Z\"/>");
    EXPECT_EQ(moved("rotate(90 10 10)"), "<path d=\"M20 0V10H0V0Z\"/>");
    EXPECT_EQ(moved("rotate(-450) skewX(45)"), moved("rotate(-90) matrix(1 0 1 1 0 0)"));
    EXPECT_EQ(moved("skewY(45)"), "<path d=\"M0 0 10 10V30L0 20Z\"/>");
    EXPECT_EQ(moved("spin(4)"), moved("none"));
    EXPECT_EQ(redrawn("<g transform='scale(2)'><rect transform='translate(1 2)' width='10%' "
                      "height='1em' x='3px' y='.75pt' font-size='10'/></g>"),
              "<g><path d=\"M8 6H68V26H8Z\"/></g>");
}

TEST(ReadShapes, LinesUnderUnevenTransformsHaveAPen) {
    const std::string scaled =
        "<path transform='scale(4 1)' stroke='#ff0000' stroke-miterlimit='10' "
        "stroke-dasharray='2 1' d='M1 2H9'/>";
    EXPECT_EQ(redrawn(scaled), "<path stroke=\"#ff0000\" stroke-width=\"4\" "
                               "stroke-dasharray=\"8 4\" transform=\"matrix(1 0 0 .25 0 0)\" "
                               "d=\"M4 8 36 8\"/>");
    EXPECT_EQ(redrawn("<path transform='rotate(30) scale(2 -2)' stroke='#ff0000' d='M0 0H9'/>")
                  .find("transform"),
              std::string::npos);
    EXPECT_EQ(redrawn("<path transform='scale(4 1)' d='M1 2H9V9'/>"), "<path d=\"M4 2H36V9\"/>")
        << "what is not stroked needs none";
    EXPECT_EQ(redrawn("<path transform='scale(4 1)' vector-effect='non-scaling-stroke' "
                      "stroke='#ff0000' stroke-miterlimit='10' d='M1 2H9'/>"),
              "<path stroke=\"#ff0000\" stroke-width=\".75\" d=\"M4 2H36\"/>");
    // Where no pen says it, a line has its mean width.
    const ReadArt flat(foreignSvg("<path transform='scale(1 1e-6)' stroke='red' d='M0 0H9'/>"));
    EXPECT_EQ(flat.ignored("stroke under a skew"), 1);
    const ReadArt original(foreignSvg(scaled, "data-producer='corvane' data-profile='original'"));
    EXPECT_EQ(original.ignored("stroke under a skew"), 1);
    EXPECT_NE(original.drawn().find("stroke-width=\"2\""), std::string::npos);
}

TEST(ReadShapes, CoordinatesBeyondTheArt) {
    const ReadArt art(foreignSvg("<path d='M0 0H1e9V1e400H-99999V0'/>"));
    EXPECT_EQ(art.ignored("coordinate out of range"), 1);
    const Segments segments = art.document.segments(onlyShape(art.document));
    EXPECT_EQ(segments[1].anchor.x, INT32_MAX);
    EXPECT_EQ(segments[2].anchor.y, INT32_MIN);
}

} // namespace
} // namespace corvane::test
