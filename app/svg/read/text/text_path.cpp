#include "app/svg/read/text/text_path.h"

#include "app/artwork/geometry/geometry.h"
#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/path_reader.h"
#include "app/svg/read/shape_builder.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/values/path_length.h"
#include "app/svg/subpaths.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace corvane {

namespace {

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
            path =
                drawnPath(transformed(toArt, styleOf(target, drawn, {}, lengths.viewport, context),
                                      lengths, context),
                          context, [&](ShapeBuilder& shape) {
                              drawShape(element, drawn, lengths, shape, context.tally);
                          });
            declaredLength =
                parseLength(drawn[Attribute::pathLength], Axis::other, lengths).value_or(0);
        }
    } else if (!reference.empty()) {
        context.tally.add("external reference");
        return std::nullopt;
    }
    const double length = lengthOf(path.segments, path.isClosed);
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
