// Shapes that are more than one path of the art: their paint in another order, and their markers.
#include "app/svg/read/tree/tree_reader.h"

#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/marker_form.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/values/transform.h"

#include <algorithm>
#include <map>
#include <numbers>

namespace corvane {

namespace {

/// A marker costs about as much as so many elements.
constexpr std::int64_t markerCost = 10;

bool isPainted(const ComputedStyle& style, Coat coat) {
    return coat == Coat::fill
               ? style.fill.kind != PaintValue::Kind::none
               : style.stroke.kind != PaintValue::Kind::none && style.strokeWidth > 0;
}

bool hasMarkers(const ComputedStyle& style, Element element) {
    const bool isLine = element == Element::path || element == Element::line ||
                        element == Element::polyline || element == Element::polygon;
    return isLine &&
           (!style.markerStart.empty() || !style.markerMid.empty() || !style.markerEnd.empty());
}

/// What one path of the art paints.
struct PathCoat {
    bool fill = false;
    bool stroke = false;
};

/// The paths that a shape needs, from the back to the front, and how many are behind its markers.
struct PathCoats {
    std::vector<PathCoat> paths;
    std::size_t behindMarkers = 0;
};

PathCoats coatsOf(const ComputedStyle& style) {
    PathCoats coats;
    bool follows = false; // a stroke would come next to the fill
    for (const Coat coat : style.coats) {
        if (coat == Coat::markers) {
            coats.behindMarkers = coats.paths.size();
            follows = false;
        } else if (isPainted(style, coat)) {
            if (!follows || coat == Coat::fill) {
                coats.paths.emplace_back();
            }
            (coat == Coat::fill ? coats.paths.back().fill : coats.paths.back().stroke) = true;
            follows = coat == Coat::fill;
        }
    }
    if (coats.paths.empty()) {
        coats.paths.emplace_back(); // markers stand on it
    }
    return coats;
}

} // namespace

bool TreeReader::hasCoats(const ComputedStyle& style, Element element) {
    const bool isTurned =
        std::ranges::find(style.coats, Coat::stroke) < std::ranges::find(style.coats, Coat::fill);
    return hasMarkers(style, element) ||
           (isTurned && isPainted(style, Coat::fill) && isPainted(style, Coat::stroke));
}

/// A group of all paths and markers, which is laid over what is behind it as the shape would be.
Art TreeReader::drawCoats(ArtPlace place, const ShapeUse& use) {
    const Art whole = document_.make(ArtKind::group, place.placement, place.reference);
    const PathCoats coats = coatsOf(use.style);
    std::vector<Art> paths;
    VertexTrace trace;
    for (const PathCoat& coat : coats.paths) {
        const Art shape =
            drawPaths({Placement::inside, whole}, use, paths.empty() ? &trace : nullptr);
        if (shape == Art::null) {
            document_.dispose(whole);
            return Art::null;
        }
        paths.push_back(shape);
        ComputedStyle style = use.style;
        style.appearance = {}; // the group's
        style.mask = {};
        style.fill.kind = coat.fill ? style.fill.kind : PaintValue::Kind::none;
        style.stroke.kind = coat.stroke ? style.stroke.kind : PaintValue::Kind::none;
        stylePaths(shape, {use.element, style, use.matrix, use.lengths, use.note});
        setShapeLook(shape, style, use.matrix);
    }
    setSource(paths.front(), sourceOfShape());
    const UserBox box = shape_.box();
    setLook(whole, lookOf(use.style, use.matrix, frames_.back().viewport), box);
    if (hasMarkers(use.style, use.element)) {
        const ArtPlace inFront = coats.behindMarkers < paths.size()
                                     ? ArtPlace{Placement::behind, paths[coats.behindMarkers]}
                                     : ArtPlace{Placement::inside, whole};
        drawMarkers(inFront, use, trace, box);
    }
    return whole;
}

void TreeReader::drawMarkers(ArtPlace place, const ShapeUse& use, const VertexTrace& trace,
                             const UserBox& box) {
    const ContextPaint paint{use.style.fill, use.style.fillTwin, use.style.stroke,
                             use.style.strokeTwin, PaintUse{use.matrix, box, use.lengths}};
    std::map<std::string_view, std::optional<MarkerForm>> forms;
    const auto draw = [&](std::string_view id, std::size_t vertex, bool isStart) {
        if (id.empty()) {
            return;
        }
        const auto [known, isNew] = forms.try_emplace(id);
        if (isNew) {
            known->second = readMarkerForm(id, context_);
        }
        if (known->second) {
            drawMarker(place, *known->second, use, trace, vertex, isStart, paint);
        }
    };
    for (std::size_t vertex = 0; vertex < trace.size(); ++vertex) {
        const bool isEnd = vertex + 1 == trace.size();
        if (vertex == 0) {
            draw(use.style.markerStart, vertex, true);
        }
        if (isEnd) {
            draw(use.style.markerEnd, vertex, false);
        } else if (vertex != 0) {
            draw(use.style.markerMid, vertex, false);
        }
    }
}

void TreeReader::drawMarker(ArtPlace place, const MarkerForm& form, const ShapeUse& use,
                            const VertexTrace& trace, std::size_t vertex, bool isStart,
                            const ContextPaint& paint) {
    const double size = form.growsWithLine ? use.style.strokeWidth : 1;
    if (!(size > 0)) {
        return;
    }
    if (!context_.mayEnter(form.element)) {
        context_.tally.add("circular reference");
        return;
    }
    context_.expand(markerCost);
    const ActiveElement active(context_, form.element);
    double angle = form.angle;
    if (form.turn != MarkerForm::Turn::fixed) {
        angle = trace.angle(vertex) * 180 / std::numbers::pi;
        angle += isStart && form.turn == MarkerForm::Turn::alongButBackAtTheStart ? 180 : 0;
    }
    const RealPoint at = trace.place(vertex);
    const RealMatrix toArt = multiply(
        multiply(multiply({size, 0, 0, size, 0, 0}, rotation(angle)), {1, 0, 0, 1, at.x, at.y}),
        use.matrix);
    const Art group = document_.make(ArtKind::group, place.placement, place.reference);
    TreeReader reader(context_);
    reader.contexts_.push_back(paint);
    reader.readMarker(form, group, toArt);
    if (document_.firstChild(group) == Art::null) {
        document_.dispose(group);
    }
}

/// Reads a marker's children into its group; `toArt` leads from units around the vertex.
void TreeReader::readMarker(const MarkerForm& form, Art group, const RealMatrix& toArt) {
    Frame frame = frameOfHolder(form.element, form.viewport);
    frame.matrix = multiply(form.toPoint, toArt);
    frame.group = frame.outermost = group;
    frame.look = lookOf(frame.style, frame.matrix, form.viewport);
    if (!form.overflows) {
        const ViewBox& window = form.window;
        frame.late.kind = LateClip::Kind::viewport;
        frame.late.box.add(window.x, window.y);
        frame.late.box.add(window.x + window.width, window.y + window.height);
        frame.late.matrix = toArt;
        frame.measured = true;
    }
    inTile_ = true;
    push(std::move(frame));
    readFrames();
}

/// Puts what bears or uses the element in the place of `context-fill` and `context-stroke`.
void TreeReader::resolveContext(ComputedStyle& style) {
    const auto resolve = [&](PaintValue& value, PaintTwin& twin) {
        const PaintValue::Context asked = value.context;
        if (asked == PaintValue::Context::none) {
            return;
        }
        value = {};
        if (!contexts_.empty()) {
            const ContextPaint& around = contexts_.back();
            const bool isStroke = asked == PaintValue::Context::stroke;
            value = isStroke ? around.stroke : around.fill;
            twin = isStroke ? around.strokeTwin : around.fillTwin;
            if (value.kind == PaintValue::Kind::server && !around.use) {
                context_.tally.add("context paint"); // how far what uses it reaches is not known
            }
        }
        value.context = asked;
    };
    resolve(style.fill, style.fillTwin);
    resolve(style.stroke, style.strokeTwin);
}

} // namespace corvane
