#include "app/svg/read/style/cascade.h"

#include "app/svg/read/values/skew.h"
#include "app/svg/read/values/transform.h"
#include "host/matrix.h"

namespace corvane {

Declared cascade(pugi::xml_node element, const Attributes& attributes, ReadingContext& context) {
    Declared declared;
    for (const Attributes::Entry& entry : attributes.entries()) {
        if (isProperty(entry.name)) {
            declared.set(entry.name, entry.value);
        }
    }
    const std::string_view style = attributes[Attribute::style];
    if (style.find('&') != std::string_view::npos) {
        context.tally.add("entity");
    }
    // Pages of the web are full of roots with a size in the style, which means nothing on paper.
    const bool ownSize = context.index.elementOf(element) != Element::svg;
    const auto declareStyle = [&](bool important) {
        bool met = false;
        forEachDeclaration(style, [&](std::string_view name, std::string_view value, bool marked) {
            const Attribute property = attributeByName(name);
            met = met || marked;
            if (isProperty(property) && marked == important) {
                declared.set(property, value);
            } else if (isGeometry(property) && !important && ownSize && value != "none") {
                context.tally.add("geometry in a style");
            }
        });
        return met;
    };
    const std::string_view type = context.index.localName(element);
    if (!context.sheet.empty()) {
        context.sheet.declare(type, attributes, false, declared);
    }
    const bool marked = !style.empty() && declareStyle(false);
    if (!context.sheet.empty()) {
        context.sheet.declare(type, attributes, true, declared);
    }
    if (marked) {
        declareStyle(true);
    }
    return declared;
}

void settleLook(ComputedStyle& style, ReadingContext& context) {
    if (context.holdsAppearance) {
        style.transparent = false; // its opacity says so
        return;
    }
    const Appearance& appearance = style.appearance;
    const auto count = [&](bool isLost, std::string_view kind) {
        if (isLost) {
            context.tally.add(kind);
        }
    };
    count(appearance.opacity > 0 && appearance.opacity < 1, "opacity");
    count(appearance.blend != BlendMode::normal, "mix-blend-mode");
    count(!style.mask.empty(), "mask");
    style.appearance = {};
    style.mask = {};
}

ComputedStyle styleOf(pugi::xml_node element, const Attributes& attributes,
                      const ComputedStyle& outer, const Viewport& viewport,
                      ReadingContext& context) {
    ComputedStyle style = computeStyle(outer, cascade(element, attributes, context), attributes,
                                       viewport, context.tally);
    settleLook(style, context);
    return style;
}

RealMatrix transformed(const RealMatrix& outer, const Attributes& attributes, Attribute name,
                       ReadingContext& context) {
    if (!attributes.has(name)) {
        return outer;
    }
    const auto inner = parseTransform(attributes[name]);
    const RealMatrix both = inner ? multiply(*inner, outer) : outer;
    if (!inner || !isFinite(both)) {
        context.tally.add("transform");
        return outer;
    }
    return both;
}

} // namespace corvane
