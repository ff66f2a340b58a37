// Gradients drawn through the table: the fills painted over one another against the formula.
#include "tests/app/artwork/host_table.h"

#include "app/artwork/paint/paint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace corvane {
namespace {

using Levels = std::array<double, 4>;

struct Spot {
    double x = 0;
    double y = 0;
};

double number(Fixed value) {
    return static_cast<double>(value) / fixedOne;
}
Fixed fixed(double value) {
    return static_cast<Fixed>(std::lround(value * fixedOne));
}

/// One fill: its colour as light, whatever it was said in, and its outline in short lines.
struct Fill {
    std::string model;
    Levels levels{};
    std::vector<Spot> outline;
    Spot low{1e9, 1e9};
    Spot high{-1e9, -1e9};
    bool saturated = false;

    void add(Spot at) {
        outline.push_back(at);
        low = {std::min(low.x, at.x), std::min(low.y, at.y)};
        high = {std::max(high.x, at.x), std::max(high.y, at.y)};
    }

    bool contains(Spot at) const {
        if (at.x < low.x || at.x > high.x || at.y < low.y || at.y > high.y) {
            return false;
        }
        bool inside = false;
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const Spot a = outline[i];
            const Spot b = outline[(i + 1) % outline.size()];
            if ((a.y > at.y) != (b.y > at.y) &&
                at.x < a.x + (b.x - a.x) * (at.y - a.y) / (b.y - a.y)) {
                inside = !inside;
            }
        }
        return inside;
    }
};

/// What the procedures, which carry no context, were told.
struct Canvas {
    std::vector<Fill> fills;
    Fill pen;
    int open = 0;
} canvas;

void add(const Point* point) {
    canvas.pen.add({number(point->x), number(point->y)});
    const Fixed most = std::numeric_limits<Fixed>::max();
    canvas.pen.saturated |= point->x == most || point->y == most;
}

DrawingProcedures procedures(bool light) {
    DrawingProcedures draw;
    draw.setGray = [](Fixed level) {
        canvas.pen.model = "gray";
        canvas.pen.levels = {number(level)};
    };
    draw.setCMYK = [](Fixed c, Fixed m, Fixed y, Fixed k) {
        canvas.pen.model = "cmyk";
        canvas.pen.levels = {number(c), number(m), number(y), number(k)};
    };
    draw.beginFill = [] { ++canvas.open; };
    draw.endFill = [] {
        --canvas.open;
        canvas.fills.push_back(canvas.pen);
        canvas.pen = {};
    };
    draw.moveTo = add;
    draw.lineTo = add;
    draw.curveTo = [](const Point* one, const Point* two, const Point* end) {
        constexpr int pieces = 64;
        const Spot from = canvas.pen.outline.back();
        for (int i = 1; i <= pieces; ++i) {
            const double t = static_cast<double>(i) / pieces;
            const double u = 1 - t;
            const auto at = [&](double a, double b, double c, double d) {
                return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
            };
            canvas.pen.add({at(from.x, number(one->x), number(two->x), number(end->x)),
                            at(from.y, number(one->y), number(two->y), number(end->y))});
        }
    };
    if (light) {
        draw.setRGB = [](Fixed red, Fixed green, Fixed blue) {
            canvas.pen.model = "rgb";
            canvas.pen.levels = {number(red), number(green), number(blue)};
        };
    }
    return draw;
}

Colour gray(double black) {
    Colour colour;
    colour.component[0] = fixed(black);
    return colour;
}
Colour ink(double c, double m, double y, double k, ColourOrigin origin = ColourOrigin::given) {
    return {ColourKind::process, {fixed(c), fixed(m), fixed(y), fixed(k)}, origin, {}};
}
Colour light(double red, double green, double blue) {
    return ink(1 - red, 1 - green, 1 - blue, 0, ColourOrigin::fromRgb);
}

/// A path of the page's size, from `low` to `high`, filled with the gradient.
Art pathWith(Document& document, const Gradient& gradient, Spot low = {0, 0},
             Spot high = {200, 100}) {
    const Art path =
        document.make(ArtKind::path, Placement::inside, document.layerArt(document.firstLayer()));
    document.setSegmentCount(path, 2);
    const Point a{fixed(low.x), fixed(low.y)};
    const Point b{fixed(high.x), fixed(high.y)};
    const std::array<Segment, 2> segments{{{a, a, a, 0}, {b, b, b, 0}}};
    document.writeSegments(path, 0, segments);
    PathStyle style;
    style.fillPaint = 1;
    style.fill.kind = ColourKind::gradient;
    style.fill.source = document.addGradient(gradient);
    document.setStyle(path, style);
    return path;
}

std::vector<Fill> drawn(const Gradient& gradient, bool withLight = true, Spot low = {0, 0},
                        Spot high = {200, 100}) {
    HostTable host;
    canvas = {};
    const DrawingProcedures draw = procedures(withLight);
    const Art path = pathWith(host.document, gradient, low, high);
    EXPECT_EQ(host(slot::drawGradient, path, &draw), HostError::none) << host.scope.failure();
    EXPECT_EQ(canvas.open, 0);
    return canvas.fills;
}

const Fill* seenAt(const std::vector<Fill>& fills, Spot at) {
    const auto found = std::find_if(fills.rbegin(), fills.rend(),
                                    [&](const Fill& fill) { return fill.contains(at); });
    return found == fills.rend() ? nullptr : &*found;
}

Spot inGradientSpace(const RealMatrix& m, Spot at) {
    const double area = m.a * m.d - m.b * m.c;
    const double x = at.x - m.tx;
    const double y = at.y - m.ty;
    return {(m.d * x - m.c * y) / area, (m.a * y - m.b * x) / area};
}

/// How far along the gradient a point of its space lies: for circles by halving, since one lies
/// within the next.
double wayAt(const Gradient& g, Spot at) {
    if (!g.radial) {
        const double dx = g.x2 - g.x1;
        const double dy = g.y2 - g.y1;
        return ((at.x - g.x1) * dx + (at.y - g.y1) * dy) / (dx * dx + dy * dy);
    }
    double low = -g.r1 / (g.r2 - g.r1);
    double high = 10000;
    for (int step = 0; step < 100; ++step) {
        const double t = (low + high) / 2;
        const double distance =
            std::hypot(at.x - g.x1 - t * (g.x2 - g.x1), at.y - g.y1 - t * (g.y2 - g.y1));
        (distance <= g.r1 + t * (g.r2 - g.r1) ? high : low) = t;
    }
    return high;
}

double spreadWay(GradientSpread spread, double way) {
    switch (spread) {
    case GradientSpread::pad:
        return std::clamp(way, 0.0, 1.0);
    case GradientSpread::repeat:
        return way - std::floor(way);
    case GradientSpread::reflect:
        return 1 - std::abs(way - 2 * std::floor(way / 2) - 1);
    }
    return 0;
}

/// Components mixed between the stops around.
Levels expected(const Gradient& gradient, double way, Levels (*levels)(const Colour&)) {
    const auto& stops = gradient.stops;
    if (way <= stops.front().offset) {
        return levels(stops.front().colour);
    }
    for (std::size_t i = 1; i < stops.size(); ++i) {
        if (way > stops[i].offset) {
            continue;
        }
        const double share = (way - stops[i - 1].offset) / (stops[i].offset - stops[i - 1].offset);
        const Levels a = levels(stops[i - 1].colour);
        const Levels b = levels(stops[i].colour);
        Levels mixed{};
        for (std::size_t c = 0; c < mixed.size(); ++c) {
            mixed[c] = a[c] + share * (b[c] - a[c]);
        }
        return mixed;
    }
    return levels(stops.back().colour);
}

Levels lightOf(const Colour& colour) {
    const auto level = [&](int i) {
        const Fixed amount = colour.kind == ColourKind::gray
                                 ? colour.component[0]
                                 : colour.component[i] + colour.component[3];
        return 1 - std::min(1.0, number(amount));
    };
    return {level(0), level(1), level(2), 0};
}

/// Looks at a grid of points: the colour on top must be what the formula says anywhere within
/// `reach` of the point, and nearly exactly so.
void compare(const Gradient& gradient, double reach = 0.12) {
    const std::vector<Fill> fills = drawn(gradient);
    EXPECT_LT(fills.size(), 17000U);
    int wrong = 0;
    for (double y = 0.37; y < 100; y += 6.3) {
        for (double x = 0.41; x < 200; x += 7.7) {
            const Fill* const fill = seenAt(fills, {x, y});
            ASSERT_NE(fill, nullptr) << x << ' ' << y;
            bool near = false;
            for (int i = 0; i < 17 && !near; ++i) {
                const double off = reach * (i / 4 + 1) / 4 * (i == 16 ? 0 : 1);
                const double turn = i % 4 * 1.5707963;
                const Spot beside{x + off * std::cos(turn), y + off * std::sin(turn)};
                const double way = wayAt(gradient, inGradientSpace(gradient.matrix, beside));
                const Levels want = expected(gradient, spreadWay(gradient.spread, way), lightOf);
                double worst = 0;
                for (std::size_t c = 0; c < 3; ++c) {
                    worst = std::max(worst, std::abs(fill->levels[c] - want[c]));
                }
                near = worst < 1.5 / 255;
            }
            wrong += near ? 0 : 1;
        }
    }
    EXPECT_EQ(wrong, 0);
}

Gradient linear() {
    Gradient gradient;
    gradient.x1 = 60;
    gradient.y1 = 20;
    gradient.x2 = 130;
    gradient.y2 = 50;
    gradient.stops = {{0.1, light(1, 0, 0)}, {0.5, light(0, 1, 0.5)}, {0.9, light(0, 0, 1)}};
    return gradient;
}

Gradient radial() {
    Gradient gradient = linear();
    gradient.radial = true;
    gradient.x1 = gradient.x2 = 90;
    gradient.y1 = gradient.y2 = 50;
    gradient.r2 = 40;
    return gradient;
}

constexpr GradientSpread spreads[] = {GradientSpread::pad, GradientSpread::reflect,
                                      GradientSpread::repeat};

TEST(DrawGradient, linearIsTheFormulaInEverySpreadAndUnderShear) {
    for (const GradientSpread spread : spreads) {
        SCOPED_TRACE(static_cast<int>(spread));
        Gradient gradient = linear();
        gradient.spread = spread;
        compare(gradient);
        gradient.matrix = {0.8, 0.3, -0.7, 1.9, 30, -25};
        compare(gradient);
    }
}

TEST(DrawGradient, radialIsTheFormulaWithFocusFirstCircleAndUnequalScales) {
    for (const GradientSpread spread : spreads) {
        SCOPED_TRACE(static_cast<int>(spread));
        Gradient gradient = radial();
        gradient.spread = spread;
        compare(gradient, 0.2);
        gradient.x1 = 70;
        gradient.y1 = 60;
        compare(gradient, 0.2);
        gradient.r1 = 12;
        gradient.x1 = 80;
        compare(gradient, 0.2);
        gradient.matrix = {1.4, 0.2, 0.9, 0.6, -40, 10};
        compare(gradient, 0.2);
    }
}

TEST(DrawGradient, hardStopsAndPartsBeforeTheFirst) {
    Gradient gradient = linear();
    gradient.stops = {{0, light(1, 0, 0)},   {0, light(0, 1, 0)}, {0.5, light(0, 1, 0)},
                      {0.5, light(0, 0, 1)}, {1, light(0, 0, 1)}, {1, light(1, 1, 0)}};
    const std::vector<Fill> fills = drawn(gradient);
    EXPECT_EQ(fills.size(), 4U);
    EXPECT_EQ(seenAt(fills, {5, 5})->levels, (Levels{1, 0, 0}));
    EXPECT_EQ(seenAt(fills, {70, 30})->levels, (Levels{0, 1, 0}));
    EXPECT_EQ(seenAt(fills, {110, 40})->levels, (Levels{0, 0, 1}));
    EXPECT_EQ(seenAt(fills, {195, 95})->levels, (Levels{1, 1, 0}));
}

TEST(DrawGradient, coloursAreSaidAsTheirStops) {
    const auto halfway = [](std::vector<GradientStop> stops, bool withLight) {
        Gradient gradient = linear();
        gradient.x1 = 0;
        gradient.y1 = gradient.y2 = 0;
        gradient.x2 = 200;
        gradient.stops = std::move(stops);
        const std::vector<Fill> fills = drawn(gradient, withLight);
        return *seenAt(fills, {100.01, 50});
    };
    struct Row {
        const char* name;
        Colour from, to;
        bool withLight;
        const char* model;
        Levels middle;
    };
    const Row rows[] = {
        {"grays", gray(0), gray(1), true, "gray", {0.5}},
        {"inks", ink(1, 0, 0, 0.4), ink(0, 1, 0, 0.8), true, "cmyk", {0.5, 0.5, 0, 0.6}},
        {"light", light(1, 0, 0), light(0, 0, 1), true, "rgb", {0.5, 0, 0.5}},
        {"light as inks", light(1, 0, 0), light(0, 0, 1), false, "cmyk", {0.5, 1, 0.5, 0}},
        {"mixed", ink(0, 0, 0, 1), light(1, 1, 0), true, "rgb", {0.5, 0.5, 0}},
        {"gray and ink", gray(1), ink(1, 0, 0, 0), false, "cmyk", {0.5, 0, 0, 0.5}},
        {"limited", ink(-1, 3, 0, 0), ink(0, 1, 0, 0), true, "cmyk", {0, 1, 0, 0}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const Fill fill = halfway({{0, row.from}, {1, row.to}}, row.withLight);
        EXPECT_EQ(fill.model, row.model);
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_NEAR(fill.levels[i], row.middle[i], 1.0 / 255) << i;
        }
    }
}

/// Lone colours: all of the bounds by one fill.
TEST(DrawGradient, withoutExtentItIsTheLastColour) {
    std::vector<Gradient> flat(5, linear());
    flat[0].x2 = flat[0].x1;
    flat[0].y2 = flat[0].y1;
    flat[1] = radial();
    flat[1].r2 = 0;
    flat[2] = radial();
    flat[2].r1 = 60; // the first circle is the larger one
    flat[3].stops = {{0.3, light(0, 0, 1)}};
    flat[4].x2 = 1e300;
    flat[4].stops.back().colour = flat[4].stops[0].colour = light(0, 0, 1);
    for (const Gradient& gradient : flat) {
        for (const GradientSpread spread : spreads) {
            Gradient one = gradient;
            one.spread = spread;
            const std::vector<Fill> fills = drawn(one);
            ASSERT_FALSE(fills.empty());
            EXPECT_EQ(seenAt(fills, {0, 0.01})->levels, (Levels{0, 0, 1}));
            EXPECT_EQ(seenAt(fills, {200, 99.99})->levels, (Levels{0, 0, 1}));
        }
    }
    Gradient flatMatrix = linear();
    flatMatrix.matrix = {1, 2, 2, 4, 0, 0};
    EXPECT_TRUE(drawn(flatMatrix).empty());
}

TEST(DrawGradient, bandsAreNoNarrowerThanSeen) {
    Gradient gradient = linear();
    gradient.x2 = 62;
    gradient.y2 = 20; // 2 points: 20 bands of a tenth
    EXPECT_LE(drawn(gradient).size(), 22U);

    gradient = linear();
    gradient.stops.clear();
    for (int i = 0; i <= 100'000; ++i) {
        gradient.stops.push_back({i / 100'000.0, light(i % 2, 0, 0)});
    }
    EXPECT_LE(drawn(gradient).size(), 800U);
}

TEST(DrawGradient, endlessRepeatsEndInTheMeanColour) {
    for (Gradient gradient : {linear(), radial()}) {
        gradient.spread = GradientSpread::repeat;
        gradient.stops = {{0, light(1, 0, 0)}, {1, light(0, 0, 1)}};
        gradient.matrix = {1e-4, 0, 0, 1e-4, 0, 0};
        const std::vector<Fill> fills = drawn(gradient);
        EXPECT_LT(fills.size(), 17000U);
        EXPECT_NEAR(seenAt(fills, {150, 50})->levels[0], 0.5, 0.01);
        EXPECT_NEAR(seenAt(fills, {150, 50})->levels[2], 0.5, 0.01);
    }
    Gradient far = linear();
    far.spread = GradientSpread::reflect;
    far.matrix.tx = 1e18;
    EXPECT_EQ(drawn(far).size(), 1U);
}

/// A circle beyond what 16.16 can say is cut, not bent.
TEST(DrawGradient, largeCirclesKeepTheirShape) {
    Gradient gradient = radial();
    gradient.x1 = gradient.x2 = -60000;
    gradient.r2 = 60300;
    gradient.r1 = 59900;
    gradient.stops = {{0, light(1, 0, 0)}, {1, light(0, 0, 1)}};
    compare(gradient, 0.3);
    for (const Fill& fill : drawn(gradient)) {
        EXPECT_FALSE(fill.saturated);
    }
}

TEST(DrawGradient, refusesWhatItCannotDraw) {
    HostTable host;
    DrawingProcedures draw = procedures(true);
    const Art path = pathWith(host.document, linear());
    EXPECT_EQ(host(slot::drawGradient, path, nullptr), HostError::failed);
    EXPECT_EQ(host(slot::drawGradient, Art::null, &draw), HostError::failed);
    draw.curveTo = nullptr;
    EXPECT_EQ(host(slot::drawGradient, path, &draw), HostError::failed);
    host.document.setStyle(path, {});
    draw = procedures(true);
    EXPECT_EQ(host(slot::drawGradient, path, &draw), HostError::failed);
    EXPECT_EQ(host.scope.failure(), "there is no such gradient");
}

/// A compound path is painted as its first path says.
TEST(DrawGradient, pathsOfACompoundPathHaveItsGradient) {
    HostTable host;
    const Art compound = host.make(ArtKind::compound, Placement::inside,
                                   host.document.layerArt(host.document.firstLayer()));
    const Art second = pathWith(host.document, linear());
    host.document.reorder(second, Placement::inside, compound);
    host.document.setStyle(second, {});
    const Art first = pathWith(host.document, linear());
    host.document.reorder(first, Placement::inside, compound);
    const DrawingProcedures draw = procedures(true);
    canvas = {};
    EXPECT_EQ(host(slot::drawGradient, second, &draw), HostError::none);
    EXPECT_FALSE(canvas.fills.empty());
}

} // namespace
} // namespace corvane
