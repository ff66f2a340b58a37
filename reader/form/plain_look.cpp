#include "reader/form/plain_look.h"

#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "reader/font/font_entries.h"
#include "reader/paint/colour_space.h"
#include "reader/syntax/real_numbers.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

/// Numbers that are read of one array.
constexpr std::size_t mostNumbers = 20'000;
/// Lines of one annotation by hand.
constexpr std::size_t mostStrokes = 1'000;
/// Teeth under one line of text.
constexpr int mostTeeth = 1'000;

/// Work of an anchor, as that of two numbers and their operator twice over: curves have more.
constexpr std::int64_t tokensPerKnot = 6;

/// From the middle of a quarter of a circle to its control points, in radii.
constexpr double quarterArc = 0.5523;

/// An anchor with its control points.
struct Knot {
    RealPoint at;
    RealPoint in;
    RealPoint out;
};

/// A line of text, as QuadPoints gives its corners.
struct TextQuad {
    RealPoint topLeft;
    RealPoint topRight;
    RealPoint bottomLeft;
    RealPoint bottomRight;

    double height() const { return std::hypot(topLeft.x - bottomLeft.x, topLeft.y - bottomLeft.y); }
};

/// On the way from one point to the other.
RealPoint between(RealPoint from, RealPoint to, double part) {
    return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

std::vector<Knot> straight(const std::vector<RealPoint>& points) {
    std::vector<Knot> knots;
    std::ranges::transform(points, std::back_inserter(knots), [](RealPoint point) {
        return Knot{point, point, point};
    });
    return knots;
}

std::vector<RealPoint> pointsOf(const std::vector<double>& numbers) {
    std::vector<RealPoint> points;
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) {
        points.push_back({numbers[i], numbers[i + 1]});
    }
    return points;
}

class PlainLook {
public:
    PlainLook(Interpreter& interpreter, const Object& annotation, const FormBox& place, Art group)
        : interpreter_(interpreter), cache_(interpreter.cache), annotation_(annotation),
          place_(place), group_(group) {}

    void draw() {
        const std::string kind = nameEntry(cache_, annotation_, "Subtype");
        const Draw* const drawing = drawingOf(kind);
        if (drawing == nullptr) {
            return;
        }
        setStroke(colourEntry(annotation_, "C"));
        setBorder();
        (this->*drawing->draw)();
        if (!interpreter_.readsTransparency) {
            return;
        }
        const Appearance appearance{
            .opacity = std::clamp(numberEntry(cache_, annotation_, "CA").value_or(1), 0.0, 1.0),
            .blend = drawing->isMarker ? BlendMode::multiply : BlendMode::normal};
        tellAppearanceAsOne(interpreter_, group_, appearance);
    }

    static bool knows(std::string_view kind) { return drawingOf(kind) != nullptr; }

private:
    struct Draw {
        std::string_view kind;
        void (PlainLook::*draw)();
        bool isMarker = false; ///< what lies below is seen through it
    };

    static const Draw* drawingOf(std::string_view kind) {
        static constexpr std::array drawings{
            Draw{"Circle", &PlainLook::drawCircle},
            Draw{"Highlight", &PlainLook::drawHighlight, true},
            Draw{"Ink", &PlainLook::drawInk},
            Draw{"Line", &PlainLook::drawLine},
            Draw{"PolyLine", &PlainLook::drawPolyline},
            Draw{"Polygon", &PlainLook::drawPolygon},
            Draw{"Square", &PlainLook::drawSquare},
            Draw{"Squiggly", &PlainLook::drawSquiggly},
            Draw{"StrikeOut", &PlainLook::drawStrikeOut},
            Draw{"Underline", &PlainLook::drawUnderline},
            Draw{"Widget", &PlainLook::drawField},
        };
        const auto* const found = std::ranges::find(drawings, kind, &Draw::kind);
        return found == drawings.end() ? nullptr : found;
    }

    /// Nothing where there is none, or an empty one, which means no colour.
    std::optional<Colour> colourEntry(const Object& dictionary, std::string_view key) const {
        const std::vector<double> amounts = numbersEntry(cache_, dictionary, key, 4);
        const ColourSpacePointer space =
            deviceColourSpace(static_cast<std::int32_t>(amounts.size()));
        return space == nullptr ? std::nullopt : std::optional(colourIn(*space, amounts));
    }

    void setStroke(const std::optional<Colour>& colour) {
        style_.strokePaint = colour ? 1 : 0;
        style_.stroke = colour.value_or(Colour());
    }

    void setFill(const std::optional<Colour>& colour) {
        style_.fillPaint = colour ? 1 : 0;
        style_.fill = colour.value_or(Colour());
    }

    /// From the border style, or else the border that annotations had before there was one.
    void setBorder() {
        const ObjectOwner border = entryOf(cache_, annotation_, "BS");
        const std::vector<double> former = numbersEntry(cache_, annotation_, "Border", 3);
        width_ = former.size() == 3 ? former[2] : 1;
        if (!isDictionary(border.get())) {
            return;
        }
        width_ = numberEntry(cache_, border.get(), "W").value_or(1);
        if (nameEntry(cache_, border.get(), "S") == "D") {
            std::vector<double> dash =
                numbersEntry(cache_, border.get(), "D", std::size(style_.dash));
            if (dash.empty()) {
                dash = {3};
            }
            style_.dashCount = static_cast<std::int16_t>(dash.size());
            std::ranges::transform(dash, style_.dash,
                                   [&](double length) { return scaled(length); });
        }
    }

    Fixed scaled(double length) const {
        return fixedFromReal(std::max(length, 0.0) * scaleState(interpreter_.state));
    }

    void add(const std::vector<Knot>& knots, bool isClosed, double width) {
        interpreter_.progress.charge(tokensPerKnot * static_cast<std::int64_t>(knots.size()));
        if (knots.size() < 2 || (style_.fillPaint == 0 && style_.strokePaint == 0)) {
            return;
        }
        const auto placed = [&](RealPoint point) {
            const RealPoint to = transform(interpreter_.state.exactCtm, point);
            return Point{fixedFromReal(to.x), fixedFromReal(to.y)};
        };
        std::vector<Segment> segments;
        std::ranges::transform(knots, std::back_inserter(segments), [&](const Knot& knot) {
            return Segment{
                .anchor = placed(knot.at), .in = placed(knot.in), .out = placed(knot.out)};
        });
        style_.lineWidth = scaled(width);
        const Art path = newArt(ArtKind::path, Placement::inside, group_);
        const auto count = static_cast<std::int32_t>(segments.size());
        callHost(slot::setPathSegmentCount, path, count);
        callHost(slot::setPathSegments, path, std::int32_t{0}, count, segments.data());
        callHost(slot::setPathClosed, path, static_cast<std::uint8_t>(isClosed ? 1 : 0));
        callHost(slot::setPathStyle, path, &style_);
    }

    /// Of a width of 0 there is no border.
    void addShape(const std::vector<Knot>& knots, bool isClosed) {
        if (width_ <= 0) {
            style_.strokePaint = 0;
        }
        add(knots, isClosed, width_);
    }

    std::vector<RealPoint> pointsEntry(std::string_view key) const {
        return pointsOf(numbersEntry(cache_, annotation_, key, mostNumbers));
    }

    std::vector<TextQuad> quads() const {
        constexpr std::size_t corners = 4;
        const std::vector<RealPoint> points = pointsEntry("QuadPoints");
        std::vector<TextQuad> quads;
        for (std::size_t i = 0; i + corners <= points.size(); i += corners) {
            quads.push_back({points[i], points[i + 1], points[i + 2], points[i + 3]});
        }
        return quads;
    }

    /// Its ends are round.
    void drawHighlight() {
        setFill(colourEntry(annotation_, "C"));
        style_.strokePaint = 0;
        for (const TextQuad& quad : quads()) {
            const RealPoint way{quad.topRight.x - quad.topLeft.x, quad.topRight.y - quad.topLeft.y};
            const double length = std::max(std::hypot(way.x, way.y), 1e-3);
            const double bulge = quad.height() / 4 / length;
            // Beside the corner, a quarter of the way to the other one on its side.
            const auto outside = [&](RealPoint corner, RealPoint other, double side) {
                const RealPoint toward = between(corner, other, 0.25);
                return RealPoint{toward.x + side * bulge * way.x, toward.y + side * bulge * way.y};
            };
            const auto left = [&](RealPoint corner, RealPoint other) {
                return outside(corner, other, -1);
            };
            const auto right = [&](RealPoint corner, RealPoint other) {
                return outside(corner, other, 1);
            };
            add({{quad.topLeft, left(quad.topLeft, quad.bottomLeft), quad.topLeft},
                 {quad.topRight, quad.topRight, right(quad.topRight, quad.bottomRight)},
                 {quad.bottomRight, right(quad.bottomRight, quad.topRight), quad.bottomRight},
                 {quad.bottomLeft, quad.bottomLeft, left(quad.bottomLeft, quad.topLeft)}},
                true, 0);
        }
    }

    /// A line through each quad, that part of its height above its bottom.
    void drawThrough(double part) {
        for (const TextQuad& quad : quads()) {
            add(straight({between(quad.bottomLeft, quad.topLeft, part),
                          between(quad.bottomRight, quad.topRight, part)}),
                false, quad.height() / lineParts);
        }
    }

    void drawUnderline() { drawThrough(1.0 / 7); }
    void drawStrikeOut() { drawThrough(3.0 / 7); }

    void drawSquiggly() {
        constexpr double toothParts = 7;
        for (const TextQuad& quad : quads()) {
            const double length = std::hypot(quad.bottomRight.x - quad.bottomLeft.x,
                                             quad.bottomRight.y - quad.bottomLeft.y);
            const double teeth = length * toothParts / std::max(quad.height(), 1e-3);
            if (!(teeth >= 1 && teeth <= mostTeeth)) {
                continue;
            }
            std::vector<RealPoint> points;
            for (int i = 0; i <= static_cast<int>(teeth); ++i) {
                const double along = i / teeth;
                points.push_back(between(between(quad.bottomLeft, quad.bottomRight, along),
                                         between(quad.topLeft, quad.topRight, along),
                                         i % 2 == 0 ? 0 : 1 / toothParts));
            }
            add(straight(points), false, quad.height() / lineParts);
        }
    }

    void drawInk() {
        const ObjectOwner strokes = entryOf(cache_, annotation_, "InkList");
        if (typeObject(strokes.get()) != ObjectType::array) {
            return;
        }
        style_.cap = 1;
        style_.join = 1;
        const std::span<const Object> elements = elementsObject(strokes.get());
        for (const Object& element : elements.first(std::min(elements.size(), mostStrokes))) {
            const ObjectOwner stroke = resolved(cache_, element);
            addShape(straight(pointsOf(realNumbers(cache_, stroke.get(), mostNumbers))), false);
        }
    }

    void drawLine() { addShape(straight(pointsEntry("L")), false); }

    std::vector<Knot> vertices() const { return straight(pointsEntry("Vertices")); }

    void drawPolyline() { addShape(vertices(), false); }

    void drawPolygon() {
        setFill(colourEntry(annotation_, "IC"));
        addShape(vertices(), true);
    }

    /// The rectangle, less what RD says, less half the border.
    FormBox innerBox() const {
        FormBox box = place_;
        if (const auto by = numbersEntry(cache_, annotation_, "RD", 4); by.size() == 4) {
            box = {{box.low.x + by[0], box.low.y + by[1]},
                   {box.high.x - by[2], box.high.y - by[3]}};
        }
        const double half = std::max(width_, 0.0) / 2;
        return {{box.low.x + half, box.low.y + half}, {box.high.x - half, box.high.y - half}};
    }

    void addBox() {
        const FormBox box = innerBox();
        const std::array<RealPoint, 4> corners = box.corners();
        addShape(straight({corners.begin(), corners.end()}), true);
    }

    void drawSquare() {
        setFill(colourEntry(annotation_, "IC"));
        addBox();
    }

    void drawCircle() {
        setFill(colourEntry(annotation_, "IC"));
        const FormBox box = innerBox();
        const RealPoint centre = between(box.low, box.high, 0.5);
        std::vector<Knot> knots;
        for (const RealPoint side : {RealPoint{1, 0}, {0, 1}, {-1, 0}, {0, -1}}) {
            const auto at = [&](double along) {
                return RealPoint{centre.x + (side.x - side.y * along) * (box.high.x - centre.x),
                                 centre.y + (side.y + side.x * along) * (box.high.y - centre.y)};
            };
            knots.push_back({at(0), at(-quarterArc), at(quarterArc)});
        }
        addShape(knots, true);
    }

    /// A form field: its ground and its border.
    void drawField() {
        const ObjectOwner look = entryOf(cache_, annotation_, "MK");
        setFill(colourEntry(look.get(), "BG"));
        setStroke(colourEntry(look.get(), "BC"));
        addBox();
    }

    /// Lines at words are so much thinner than the words are high.
    static constexpr double lineParts = 16;

    Interpreter& interpreter_;
    DocumentCache& cache_;
    const Object& annotation_;
    FormBox place_;
    Art group_;
    PathStyle style_;
    double width_ = 1;
};

} // namespace

bool hasPlainLook(DocumentCache& cache, const Object& annotation) {
    const std::string kind = nameEntry(cache, annotation, "Subtype");
    const ObjectOwner look = entryOf(cache, annotation, "MK");
    const bool isBare = kind == "Widget" && numbersEntry(cache, look.get(), "BG", 1).empty() &&
                        numbersEntry(cache, look.get(), "BC", 1).empty();
    return PlainLook::knows(kind) && !isBare;
}

void drawPlainLook(Interpreter& interpreter, const Object& annotation, const FormBox& place,
                   Art group) {
    PlainLook(interpreter, annotation, place, group).draw();
}

} // namespace corvane
