#include "app/svg/read/paint/pattern_reader.h"

#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/tree/tree_reader.h"
#include "app/svg/read/values/view_box.h"
#include "host/matrix.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace corvane {

namespace {

/// A pattern costs about as much as so many elements.
constexpr std::int64_t patternCost = 10;

/// What a page does to a point of the art; undone by itself with the signs of both shifts.
struct PageTurn {
    explicit PageTurn(const Rect& bounds)
        : left(static_cast<double>(bounds.left) / fixedOne),
          top(static_cast<double>(bounds.top) / fixedOne) {}
    RealMatrix done() const { return {1, 0, 0, -1, -left, top}; }
    RealMatrix undone() const { return {1, 0, 0, -1, left, top}; }
    double left;
    double top;
};

/// The matrix of which `written` is what the writer makes. Rounding may keep the first try from
/// that by a last digit.
RealMatrix patternMatrix(const RealMatrix& written, const PageTurn& page) {
    RealMatrix matrix = multiply(multiply(page.done(), written), page.undone());
    for (int i = 0; i < 4; ++i) {
        const RealMatrix again = multiply(multiply(page.undone(), matrix), page.done());
        if (again == written) {
            break;
        }
        matrix.tx += written.tx - again.tx;
        matrix.ty -= written.ty - again.ty;
    }
    return matrix;
}

class PatternReader {
public:
    PatternReader(const std::vector<Attributes>& inherited, const PaintUse& use,
                  ReadingContext& context)
        : inherited_(inherited), use_(use), context_(context) {}

    bool fitsBox() const {
        return value(Attribute::patternUnits) != "userSpaceOnUse" ||
               (!has(Attribute::viewBox) &&
                value(Attribute::patternContentUnits) == "objectBoundingBox");
    }

    PaintSource read(const std::vector<pugi::xml_node>& elements);

private:
    std::string_view value(Attribute name) const { return firstOf(inherited_, name); }
    bool has(Attribute name) const {
        return std::ranges::any_of(
            inherited_, [&](const Attributes& attributes) { return attributes.has(name); });
    }
    std::optional<ViewBox> cell() const;
    std::optional<RealMatrix> contentMatrix(const ViewBox& cell) const;
    RealMatrix patternTransform() const;
    double cellSide(Attribute name, double step) const;

    const std::vector<Attributes>& inherited_;
    const PaintUse& use_;
    ReadingContext& context_;
};

/// In the user space of what is painted.
std::optional<ViewBox> PatternReader::cell() const {
    LengthContext lengths = use_.lengths;
    RealMatrix fromUnits;
    if (value(Attribute::patternUnits) != "userSpaceOnUse") {
        const auto box = boxMatrix(use_.box);
        if (!box) {
            return std::nullopt;
        }
        fromUnits = *box;
        lengths.viewport = {1, 1};
    }
    const auto length = [&](Attribute name, Axis axis) {
        return parseLength(value(name), axis, lengths).value_or(0);
    };
    const RealPoint corner =
        transform(fromUnits, {length(Attribute::x, Axis::x), length(Attribute::y, Axis::y)});
    const ViewBox cell{corner.x, corner.y, length(Attribute::width, Axis::x) * fromUnits.a,
                       length(Attribute::height, Axis::y) * fromUnits.d};
    return cell.width > 0 && cell.height > 0 ? std::optional(cell) : std::nullopt;
}

/// From the space of the tile's elements to that of the cell.
std::optional<RealMatrix> PatternReader::contentMatrix(const ViewBox& cell) const {
    if (has(Attribute::viewBox)) {
        const auto box = parseViewBox(value(Attribute::viewBox));
        if (!box || !(box->width > 0 && box->height > 0)) {
            return std::nullopt;
        }
        return viewBoxMatrix(*box, cell, value(Attribute::preserveAspectRatio));
    }
    RealMatrix atCorner{1, 0, 0, 1, cell.x, cell.y};
    if (value(Attribute::patternContentUnits) == "objectBoundingBox") {
        const auto box = boxMatrix(use_.box);
        if (!box) {
            return std::nullopt;
        }
        atCorner.a = box->a;
        atCorner.d = box->d;
    }
    return atCorner;
}

RealMatrix PatternReader::patternTransform() const {
    for (const Attributes& attributes : inherited_) {
        if (attributes.has(Attribute::patternTransform)) {
            return transformed({}, attributes, Attribute::patternTransform, context_);
        }
    }
    return {};
}

double PatternReader::cellSide(Attribute name, double step) const {
    double side = 0;
    const bool said = context_.ours && TextCursor(value(name)).number(side) && side > 0;
    return said ? side : step;
}

PaintSource PatternReader::read(const std::vector<pugi::xml_node>& elements) {
    const auto cell = this->cell();
    if (!cell) {
        return PaintSource::null;
    }
    const auto content = contentMatrix(*cell);
    if (!content) {
        return PaintSource::null;
    }
    const auto found = std::ranges::find_if(elements, [](pugi::xml_node element) {
        return static_cast<bool>(element.find_child(
            [](pugi::xml_node child) { return child.type() == pugi::node_element; }));
    });
    const pugi::xml_node holder = found == elements.end() ? elements.front() : *found;
    const PageTurn page(context_.document.page().bounds());
    Pattern pattern;
    pattern.stepX = cell->width;
    pattern.stepY = cell->height;
    pattern.left = cell->x + page.left;
    pattern.bottom = page.top - (cell->y + cell->height);
    pattern.right = pattern.left + cellSide(Attribute::dataCellWidth, cell->width);
    pattern.top = pattern.bottom + cellSide(Attribute::dataCellHeight, cell->height);
    const RealMatrix written = patternTransform();
    pattern.matrix = use_.toArt == page.undone()
                         ? patternMatrix(written, page)
                         : multiply(multiply(page.done(), written), use_.toArt);
    pattern.tile = context_.document.makeArtwork();
    TreeReader(context_).readTile(holder, pattern.tile, multiply(*content, page.undone()),
                                  use_.lengths.viewport);
    return context_.document.addPattern(pattern);
}

} // namespace

PaintSource readPattern(pugi::xml_node server, const PaintUse& use, ReadingContext& context,
                        bool& fitsBox) {
    if (!context.mayEnter(server)) {
        context.tally.add("circular reference");
        return PaintSource::null;
    }
    context.expand(patternCost);
    const ActiveElement active(context, server);
    std::vector<pugi::xml_node> elements;
    const std::vector<Attributes> inherited = inheritedAttributes(server, context, elements);
    PatternReader reader(inherited, use, context);
    fitsBox = reader.fitsBox();
    return reader.read(elements);
}

} // namespace corvane
