#include "app/svg/read/clip_reader.h"
#include "app/artwork/geometry/path_walk.h"

#include "app/svg/art_source.h"
#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/paint/gradient_reader.h"
#include "app/svg/read/paint/paint_style.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/style/property_values.h"
#include "app/svg/read/text/text_reader.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

double cross(Point left, Point right) {
    return static_cast<double>(left.x) * right.y - static_cast<double>(right.x) * left.y;
}

/// Twenty times the area between a curve and the origin.
double areaBeside(Point start, Point out, Point in, Point end) {
    return 6 * (cross(start, out) + cross(in, end)) + cross(start, end) +
           3 * (cross(start, in) + cross(out, in) + cross(out, end));
}

/// Twenty times the area within a shape; its sign tells the direction.
double signedArea(const Document& document, Art shape) {
    double area = 0;
    forEachPath(document, shape, [&](Art path) {
        const Segments segments = document.segments(path);
        if (segments.empty()) {
            return;
        }
        Segment last = segments[segments.size() - 1];
        for (const Segment& segment : segments) {
            area += areaBeside(last.anchor, last.out, segment.in, segment.anchor);
            last = segment;
        }
    });
    return area;
}

void reverse(Document& document, Art path) {
    std::vector<Segment> segments(static_cast<std::size_t>(document.segments(path).size()));
    document.readSegments(path, 0, segments);
    std::ranges::reverse(segments);
    for (Segment& segment : segments) {
        std::swap(segment.in, segment.out);
    }
    document.writeSegments(path, 0, segments);
}

} // namespace

std::vector<pugi::xml_node> ClipReader::chain(std::string_view id) {
    std::vector<pugi::xml_node> chain;
    while (!id.empty()) {
        const pugi::xml_node clip = context_.index.find(id);
        const bool known = std::ranges::find(chain, clip) != chain.end();
        if (context_.index.elementOf(clip) != Element::clipPath || known ||
            chain.size() == context_.budget.references) {
            context_.tally.add("clip-path");
            break;
        }
        chain.push_back(clip);
        const Attributes attributes(clip);
        context_.expand(attributes.cost());
        const Declared declared = cascade(clip, attributes, context_);
        id = localReference(declared[Attribute::clipPath]).value_or(std::string_view{});
    }
    std::ranges::reverse(chain);
    return chain;
}

bool ClipReader::fitsBox(pugi::xml_node clip) {
    return std::string_view(clip.attribute("clipPathUnits").value()) == "objectBoundingBox";
}

bool ClipReader::readPart(pugi::xml_node node, const ComputedStyle& outer, RealMatrix matrix,
                          const Viewport& viewport, Part& into) {
    ComputedStyle style = outer;
    for (std::size_t depth = 0; depth <= 1; ++depth) {
        into.attributes.load(node);
        style = styleOf(node, into.attributes, style, viewport, context_);
        if (!style.displayed) {
            return false;
        }
        if (!style.clipPath.empty()) {
            context_.tally.add("clip-path");
        }
        into.lengths = {viewport, style.fontSize};
        matrix = transformed(matrix, style, into.lengths, context_);
        into.element = context_.index.elementOf(node);
        if (into.element != Element::use) {
            break;
        }
        matrix =
            multiply({1, 0, 0, 1, lengthOf(into.attributes, Attribute::x, Axis::x, into.lengths),
                      lengthOf(into.attributes, Attribute::y, Axis::y, into.lengths)},
                     matrix);
        const std::string_view reference = into.attributes[Attribute::href];
        node = reference.starts_with('#') ? context_.index.find(reference.substr(1))
                                          : pugi::xml_node();
    }
    into.style = style;
    into.matrix = matrix;
    into.node = node;
    if (isShapeElement(into.element) || into.element == Element::text) {
        return style.visible;
    }
    if (into.element == Element::use) {
        context_.tally.add("use");
    }
    return false;
}

/// `box` is empty where the clip is not fitted to one.
std::vector<ClipReader::Part> ClipReader::parts(pugi::xml_node clip, const RealMatrix& toArt,
                                                Viewport viewport, const UserBox& box) {
    const Attributes attributes(clip);
    const ComputedStyle style = styleOf(
        clip, attributes, context_.inherited.within(clip.parent(), context_), viewport, context_);
    // The clip's own transform is of the box, too.
    RealMatrix matrix = transformed(toArt, style, {viewport, style.fontSize}, context_);
    if (fitsBox(clip)) {
        matrix = multiply(boxMatrix(box).value_or(RealMatrix{0, 0, 0, 0, 0, 0}), matrix);
        viewport = {1, 1};
    }
    std::vector<Part> found;
    const bool again = !known_.insert(clip.hash_value()).second;
    for (const pugi::xml_node node : clip.children()) {
        Part part;
        part.again = again;
        const bool read =
            node.type() == pugi::node_element && readPart(node, style, matrix, viewport, part);
        if (again) {
            context_.expand(1 + part.attributes.cost());
        }
        if (read) {
            found.push_back(std::move(part));
        }
    }
    return found;
}

Art ClipReader::draw(const Part& part, Art group) {
    shape_.begin({Placement::inside, group}, part.matrix, context_.ours, false);
    drawShape(part.element, part.attributes, part.lengths, shape_, context_.tally);
    return shape_.finish(part.attributes.isTrue(Attribute::dataCompound));
}

/// Parts that overlap are one area together if all of them run in one direction.
void ClipReader::orient(Art shape) {
    if (signedArea(context_.document, shape) < 0) {
        forEachPath(context_.document, shape, [&](Art path) { reverse(context_.document, path); });
    }
}

Art ClipReader::unite(Art shape, Art more) {
    Document& document = context_.document;
    orient(more);
    if (document.kind(shape) == ArtKind::path) {
        const Art compound = document.make(ArtKind::compound, Placement::behind, shape);
        document.reorder(shape, Placement::inside, compound);
        shape = compound;
    }
    if (document.kind(more) == ArtKind::path) {
        document.reorder(more, Placement::inside, shape);
        return shape;
    }
    while (document.lastChild(more) != Art::null) {
        document.reorder(document.lastChild(more), Placement::inside, shape);
    }
    document.dispose(more);
    return shape;
}

/// Shapes that clip together are one area.
Art ClipReader::clipWithShapes(const std::vector<Part>& all, Art group) {
    Document& document = context_.document;
    PathStyle style;
    style.clip = 1;
    Art shape = Art::null;
    for (const Part& part : all) {
        const Art drawn = draw(part, group);
        const FillRule rule = part.style.clipRule;
        if (all.size() > 1 && rule == FillRule::evenOdd) {
            context_.tally.add("clip-rule");
        }
        style.rule = all.size() > 1 ? FillRule::nonzero : rule;
        if (shape == Art::null && all.size() > 1) {
            orient(drawn);
        }
        shape = shape == Art::null ? drawn : unite(shape, drawn);
    }
    if (shape == Art::null) {
        shape = document.make(ArtKind::path, Placement::inside, group);
    }
    if (context_.ours && all.size() == 1) {
        const Part& part = all.front();
        style = clippingStyle(part.style, part.attributes, part.matrix, context_);
        if (const auto source =
                parseArtSource(part.attributes[Attribute::dataSource], context_.sourceBase)) {
            document.setSource(shape, *source);
        }
    }
    forEachPath(document, shape, [&](Art path) { document.setStyle(path, style); });
    return shape;
}

/// Texts that clip together; null where they have no letters.
Art ClipReader::clipWithText(const std::vector<Part>& parts, Art group) {
    Document& document = context_.document;
    const Art holder = document.make(ArtKind::group, Placement::inside, group);
    for (const Part& part : parts) {
        const bool isColumn = context_.ours && part.attributes.isTrue(Attribute::dataColumn);
        const LineFrame line{.place = {Placement::inside, holder},
                             .toArt = part.matrix,
                             .isVertical = part.style.vertical || isColumn,
                             .isColumn = isColumn,
                             .isClip = true};
        TextReader(context_, paints_, line, part.lengths.viewport, part.again, false)
            .read(part.node, part.attributes, part.style);
    }
    const Art first = document.firstChild(holder);
    if (first == Art::null || document.nextSibling(first) == Art::null) {
        if (first != Art::null) {
            document.reorder(first, Placement::inside, group);
        }
        document.dispose(holder);
        return first;
    }
    return holder;
}

Art ClipReader::clip(Art group, pugi::xml_node clip, const RealMatrix& toArt,
                     const Viewport& viewport, const UserBox& box) {
    Document& document = context_.document;
    std::vector<Part> all = parts(clip, toArt, viewport, box);
    const auto isText = [](const Part& part) { return part.element == Element::text; };
    Art art = Art::null;
    if (!all.empty() && std::ranges::all_of(all, isText)) {
        art = clipWithText(all, group);
        all.clear();
    }
    if (std::erase_if(all, isText) != 0) {
        context_.tally.add("text"); // letters and shapes cannot clip together
    }
    if (art == Art::null) {
        art = clipWithShapes(all, group);
    } else if (context_.ours) {
        const std::string_view source = clip.attribute("data-source").value();
        if (const auto found = parseArtSource(source, context_.sourceBase)) {
            document.setSource(art, *found);
        }
    }
    document.setClipped(group, true);
    return art;
}

} // namespace corvane
