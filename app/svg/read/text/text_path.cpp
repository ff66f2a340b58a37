#include "app/svg/read/text/text_path.h"

#include "app/artwork/geometry.h"
#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/path_reader.h"
#include "app/svg/read/shape_builder.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/subpaths.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace corvane {

namespace {

/// The length of a curve of Bezier: five points of Gauss in each of four parts, which is right to
/// about a millionth where the curve has no cusp.
double lengthOfCurve(const Segment& from, const Segment& to) {
    constexpr std::array<std::pair<double, double>, 5> places{
        {{0, 128.0 / 225},
         {-0.5384693101056831, 0.4786286704993665},
         {0.5384693101056831, 0.4786286704993665},
         {-0.9061798459386640, 0.2369268850561891},
         {0.9061798459386640, 0.2369268850561891}}};
    constexpr int parts = 4;
    const std::array<RealPoint, 4> points{realPoint(from.anchor), realPoint(from.out),
                                          realPoint(to.in), realPoint(to.anchor)};
    const auto speed = [&](double t) {
        const double u = 1 - t;
        const std::array<double, 3> weights{3 * u * u, 6 * u * t, 3 * t * t};
        RealPoint sum;
        for (std::size_t i = 0; i < weights.size(); ++i) {
            sum.x += weights[i] * (points[i + 1].x - points[i].x);
            sum.y += weights[i] * (points[i + 1].y - points[i].y);
        }
        return std::hypot(sum.x, sum.y);
    };
    double length = 0;
    for (int part = 0; part < parts; ++part) {
        for (const auto& [place, weight] : places) {
            length += weight / (2 * parts) * speed((part + (place + 1) / 2) / parts);
        }
    }
    return length;
}

double lengthOf(const TextPath& path) {
    double length = 0;
    for (std::size_t i = 1; i < path.segments.size(); ++i) {
        length += lengthOfCurve(path.segments[i - 1], path.segments[i]);
    }
    return length +
           (path.isClosed ? lengthOfCurve(path.segments.back(), path.segments.front()) : 0);
}

void reverse(std::vector<Segment>& segments, bool isClosed) {
    for (Segment& segment : segments) {
        std::swap(segment.in, segment.out);
    }
    std::reverse(segments.begin() + (isClosed ? 1 : 0), segments.end()); // the start stays
}

/// What `draw(shape)` draws: the first subpath that leads anywhere.
template <class Draw>
TextPath drawnPath(const RealMatrix& matrix, ReadingContext& context, Draw draw) {
    Document& document = context.document;
    const Art drawing = document.makeArtwork();
    ShapeBuilder shape(document, context.tally);
    shape.begin({Placement::inside, drawing}, matrix, false, false);
    draw(shape);
    const Art drawn = shape.finish(false);
    TextPath path;
    forEachSubpath(document, drawn, [&](Art subpath) {
        const Segments segments = document.segments(subpath);
        if (segments.size() < 2) {
            return;
        }
        if (!path.segments.empty()) {
            context.tally.add("textPath"); // letters would go on there
            return;
        }
        path.segments.assign(segments.begin(), segments.end());
        path.isClosed = document.closed(subpath);
    });
    document.disposeArtwork(drawing);
    return path;
}

} // namespace

std::optional<TextPath> readTextPath(const Attributes& attributes, const RealMatrix& toArt,
                                     const LengthContext& lengths, ReadingContext& context) {
    TextPath path;
    double declaredLength = 0;
    const std::string_view reference = trimmed(attributes[Attribute::href]);
    if (attributes.has(Attribute::path)) {
        path = drawnPath(toArt, context, [&](ShapeBuilder& shape) {
            if (!readPathData(attributes[Attribute::path], shape)) {
                context.tally.add("path data");
            }
        });
    } else if (reference.starts_with('#')) {
        const pugi::xml_node target = context.index.find(reference.substr(1));
        const Element element = target ? context.index.elementOf(target) : Element::unknown;
        if (isShapeElement(element)) {
            const Attributes drawn(target);
            // Any number of texts may name one long path, which each of them measures and keeps.
            constexpr std::int64_t costOfMeasure = 16;
            context.expand(1 + costOfMeasure * drawn.cost());
            path = drawnPath(transformed(toArt, drawn, Attribute::transform, context), context,
                             [&](ShapeBuilder& shape) {
                                 drawShape(element, drawn, lengths, shape, context.tally);
                             });
            declaredLength =
                parseLength(drawn[Attribute::pathLength], Axis::other, lengths).value_or(0);
        }
    } else if (!reference.empty()) {
        context.tally.add("external reference");
        return std::nullopt;
    }
    const double length = lengthOf(path);
    if (!(length > 0)) {
        context.tally.add("textPath");
        return std::nullopt;
    }
    if (attributes[Attribute::side] == "right") {
        reverse(path.segments, path.isClosed);
    }
    const std::string_view offset = trimmed(attributes[Attribute::startOffset]);
    const LengthContext alongPath{{1, 1}, lengths.fontSize};
    const double start = parseLength(offset, Axis::x, alongPath).value_or(0);
    const double unit = declaredLength > 0 ? length / declaredLength : meanStretch(toArt);
    path.start = start * (offset.ends_with('%') ? length : unit);
    return path;
}

} // namespace corvane
