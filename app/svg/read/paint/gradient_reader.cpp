#include "app/svg/read/paint/gradient_reader.h"

#include "app/svg/read/style/cascade.h"
#include "app/svg/read/style/css_colour.h"
#include "app/svg/read/style/property_values.h"
#include "app/svg/read/values/transform.h"
#include "host/matrix.h"

#include <algorithm>

namespace corvane {

namespace {

GradientSpread parseSpread(std::string_view text) {
    if (text == "reflect") {
        return GradientSpread::reflect;
    }
    return text == "repeat" ? GradientSpread::repeat : GradientSpread::pad;
}

/// Geometry of a gradient, where percentages are of the box or of the viewport.
class GeometryReader {
public:
    GeometryReader(const std::vector<Attributes>& inherited, const LengthContext& lengths)
        : inherited_(inherited), lengths_(lengths) {}

    void readLinear(Gradient& into) const {
        into.x1 = length(Attribute::x1, Axis::x, "0%");
        into.y1 = length(Attribute::y1, Axis::y, "0%");
        into.x2 = length(Attribute::x2, Axis::x, "100%");
        into.y2 = length(Attribute::y2, Axis::y, "0%");
    }
    void readRadial(Gradient& into) const {
        into.radial = true;
        into.x2 = length(Attribute::cx, Axis::x, "50%");
        into.y2 = length(Attribute::cy, Axis::y, "50%");
        into.r2 = radius(Attribute::r, "50%");
        into.x1 = has(Attribute::fx) ? length(Attribute::fx, Axis::x, "50%") : into.x2;
        into.y1 = has(Attribute::fy) ? length(Attribute::fy, Axis::y, "50%") : into.y2;
        into.r1 = radius(Attribute::fr, "0%");
    }

private:
    bool has(Attribute name) const {
        return std::ranges::any_of(
            inherited_, [&](const Attributes& attributes) { return attributes.has(name); });
    }
    double length(Attribute name, Axis axis, std::string_view otherwise) const {
        const auto own = parseLength(firstOf(inherited_, name), axis, lengths_);
        return own ? *own : parseLength(otherwise, axis, lengths_).value_or(0);
    }
    /// A negative one is as if it were not there.
    double radius(Attribute name, std::string_view otherwise) const {
        const double own = length(name, Axis::other, otherwise);
        return own < 0 ? parseLength(otherwise, Axis::other, lengths_).value_or(0) : own;
    }

    const std::vector<Attributes>& inherited_;
    LengthContext lengths_;
};

GradientStop readStop(pugi::xml_node element, ReadingContext& context) {
    const Attributes attributes(element);
    const Declared declared = cascade(element, attributes, context);
    GradientStop stop;
    stop.offset = parseOpacity(attributes[Attribute::offset]).value_or(0);
    const std::string_view said = trimmed(declared[Attribute::stopColor]);
    auto colour = parseColour(said);
    if (isCurrentColour(said)) {
        Tally counted; // by what these stand in
        const ComputedStyle outer = context.inherited.within(element.parent(), context);
        colour =
            CssColour{computeStyle(outer, declared, attributes, outer.viewport, counted).colour, 1};
    } else if (!colour && !said.empty()) {
        context.tally.add("colour");
    }
    stop.opacity = std::clamp(parseOpacity(declared[Attribute::stopOpacity]).value_or(1) *
                                  (colour ? colour->alpha : 1),
                              0.0, 1.0);
    const PaintTwin twin = stopTwin(attributes).value_or(PaintTwin{});
    stop.colour = twin.resolve(colour ? colour->screen : ScreenColour{}, context.document);
    return stop;
}

} // namespace

std::vector<Attributes> inheritedAttributes(pugi::xml_node server, ReadingContext& context,
                                            std::vector<pugi::xml_node>& elements) {
    std::vector<Attributes> inherited;
    while (server) {
        if (std::ranges::find(elements, server) != elements.end() ||
            elements.size() == context.budget.references) {
            context.tally.add("circular reference");
            break;
        }
        elements.push_back(server);
        const Attributes& attributes = inherited.emplace_back(server);
        context.expand(attributes.cost());
        const std::string_view next = attributes[Attribute::href];
        if (!next.empty() && !next.starts_with('#')) {
            context.tally.add("external reference");
        }
        server = next.starts_with('#') ? context.index.find(next.substr(1)) : pugi::xml_node();
    }
    return inherited;
}

std::string_view firstOf(const std::vector<Attributes>& inherited, Attribute name) {
    for (const Attributes& attributes : inherited) {
        if (attributes.has(name)) {
            return attributes[name];
        }
    }
    return {};
}

std::optional<RealMatrix> boxMatrix(const UserBox& box) {
    if (box.empty() || !(box.width() > 0 && box.height() > 0)) {
        return std::nullopt;
    }
    return RealMatrix{box.width(), 0, 0, box.height(), box.left, box.top};
}

std::vector<GradientStop> readStops(const std::vector<pugi::xml_node>& elements,
                                    ReadingContext& context) {
    std::vector<GradientStop> stops;
    for (const pugi::xml_node element : elements) {
        for (const pugi::xml_node child : element.children()) {
            if (!context.activePatterns.empty()) {
                context.expand(1);
            }
            if (context.index.elementOf(child) == Element::stop) {
                GradientStop stop = readStop(child, context);
                stop.offset = std::max(stop.offset, stops.empty() ? 0 : stops.back().offset);
                stops.push_back(stop);
            }
        }
        if (!stops.empty()) {
            break;
        }
    }
    return stops;
}

std::optional<Gradient> readGradient(pugi::xml_node server,
                                     const std::vector<Attributes>& inherited, const PaintUse& use,
                                     ReadingContext& context) {
    Gradient gradient;
    RealMatrix matrix = use.toArt;
    LengthContext lengths = use.lengths;
    if (firstOf(inherited, Attribute::gradientUnits) != "userSpaceOnUse") {
        const auto box = boxMatrix(use.box);
        if (!box) {
            return std::nullopt;
        }
        matrix = multiply(*box, matrix);
        lengths.viewport = {1, 1};
    }
    for (const Attributes& attributes : inherited) {
        if (attributes.has(Attribute::gradientTransform)) {
            matrix = transformed(matrix, attributes, Attribute::gradientTransform, context);
            break;
        }
    }
    const GeometryReader geometry(inherited, lengths);
    if (context.index.elementOf(server) == Element::radialGradient) {
        geometry.readRadial(gradient);
    } else {
        geometry.readLinear(gradient);
    }
    gradient.matrix = withoutSignedZeros(matrix);
    gradient.spread = parseSpread(firstOf(inherited, Attribute::spreadMethod));
    return gradient;
}

} // namespace corvane
