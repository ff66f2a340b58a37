#include "app/svg/read/basic_shapes.h"

#include "app/svg/read/path_reader.h"
#include "app/svg/read/values/arc.h"

#include <algorithm>
#include <numbers>

namespace corvane {

namespace {

constexpr double quarter = std::numbers::pi / 2;

class ShapeReader {
public:
    ShapeReader(const Attributes& attributes, const LengthContext& lengths, ShapeBuilder& shape)
        : attributes_(attributes), lengths_(lengths), shape_(shape) {}

    bool drawRectangle();
    bool drawEllipse(double radiusX, double radiusY);
    bool drawCircle() {
        const double radius = length(Attribute::r, Axis::other);
        return drawEllipse(radius, radius);
    }
    bool drawEllipse() {
        const double radiusX = length(Attribute::rx, Axis::x, -1);
        const double radiusY = length(Attribute::ry, Axis::y, -1);
        return drawEllipse(radiusX < 0 ? radiusY : radiusX, radiusY < 0 ? radiusX : radiusY);
    }
    bool drawLine();

private:
    double length(Attribute name, Axis axis, double otherwise = 0) const {
        return lengthOf(attributes_, name, axis, lengths_, otherwise);
    }
    void drawRoundRectangle(double x, double y, double width, double height, double radiusX,
                            double radiusY);

    const Attributes& attributes_;
    const LengthContext& lengths_;
    ShapeBuilder& shape_;
};

bool ShapeReader::drawRectangle() {
    const double x = length(Attribute::x, Axis::x);
    const double y = length(Attribute::y, Axis::y);
    const double width = length(Attribute::width, Axis::x);
    const double height = length(Attribute::height, Axis::y);
    if (!(width > 0 && height > 0)) {
        return false;
    }
    double radiusX = length(Attribute::rx, Axis::x, -1);
    double radiusY = length(Attribute::ry, Axis::y, -1);
    radiusX = radiusX < 0 ? radiusY : radiusX;
    radiusY = radiusY < 0 ? radiusX : radiusY;
    radiusX = std::min(radiusX, width / 2);
    radiusY = std::min(radiusY, height / 2);
    if (radiusX > 0 && radiusY > 0) {
        drawRoundRectangle(x, y, width, height, radiusX, radiusY);
        return true;
    }
    shape_.moveTo(x, y);
    shape_.lineTo(x + width, y);
    shape_.lineTo(x + width, y + height);
    shape_.lineTo(x, y + height);
    shape_.close(false);
    return true;
}

void ShapeReader::drawRoundRectangle(double x, double y, double width, double height,
                                     double radiusX, double radiusY) {
    const double left = x + radiusX;
    const double right = x + width - radiusX;
    const double top = y + radiusY;
    const double bottom = y + height - radiusY;
    const auto lineTo = [&](double toX, double toY) {
        if (shape_.current().x != toX || shape_.current().y != toY) {
            shape_.lineTo(toX, toY);
        }
    };
    shape_.moveTo(left, y);
    lineTo(right, y);
    drawEllipsePart(shape_, {right, top}, radiusX, radiusY, -quarter, quarter, {x + width, top});
    lineTo(x + width, bottom);
    drawEllipsePart(shape_, {right, bottom}, radiusX, radiusY, 0, quarter, {right, y + height});
    lineTo(left, y + height);
    drawEllipsePart(shape_, {left, bottom}, radiusX, radiusY, quarter, quarter, {x, bottom});
    lineTo(x, top);
    drawEllipsePart(shape_, {left, top}, radiusX, radiusY, 2 * quarter, quarter, {left, y});
    shape_.close(true);
}

bool ShapeReader::drawEllipse(double radiusX, double radiusY) {
    if (!(radiusX > 0 && radiusY > 0)) {
        return false;
    }
    const RealPoint centre{length(Attribute::cx, Axis::x), length(Attribute::cy, Axis::y)};
    shape_.moveTo(centre.x + radiusX, centre.y);
    drawEllipsePart(shape_, centre, radiusX, radiusY, 0, 4 * quarter, shape_.start());
    shape_.close(true);
    return true;
}

bool ShapeReader::drawLine() {
    shape_.moveTo(length(Attribute::x1, Axis::x), length(Attribute::y1, Axis::y));
    shape_.lineTo(length(Attribute::x2, Axis::x), length(Attribute::y2, Axis::y));
    return true;
}

} // namespace

bool isShapeElement(Element element) {
    return element >= Element::path && element <= Element::polygon;
}

double lengthOf(const Attributes& attributes, Attribute name, Axis axis,
                const LengthContext& lengths, double otherwise) {
    return parseLength(attributes[name], axis, lengths).value_or(otherwise);
}

bool drawShape(Element element, const Attributes& attributes, const LengthContext& lengths,
               ShapeBuilder& shape, Tally& tally) {
    ShapeReader reader(attributes, lengths, shape);
    switch (element) {
    case Element::path:
        if (!readPathData(attributes[Attribute::d], shape)) {
            tally.add("path data");
        }
        return true;
    case Element::polyline:
    case Element::polygon:
        if (!readPoints(attributes[Attribute::points], element == Element::polygon, shape)) {
            tally.add("path data");
        }
        return attributes.has(Attribute::points);
    case Element::rect:
        return reader.drawRectangle();
    case Element::circle:
        return reader.drawCircle();
    case Element::ellipse:
        return reader.drawEllipse();
    case Element::line:
        return reader.drawLine();
    default:
        return false;
    }
}

} // namespace corvane
