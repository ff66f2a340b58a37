#include "app/svg/read/style/cascade.h"

#include "app/svg/read/style/conditions.h"
#include "app/svg/read/values/length.h"
#include "app/svg/read/values/transform.h"
#include "host/matrix.h"

namespace corvane {

namespace {

/// Properties that mean nothing as attributes.
bool isOfCssAlone(Attribute property) {
    return property == Attribute::background || property == Attribute::backgroundColor ||
           property == Attribute::transformBox;
}

/// A rem is read as 16 pixels, which it is not where the root says another size.
bool isUnread(std::string_view value, const ReadingContext& context) {
    return isUnreadValue(value) || (!context.hasUsualRem && value.ends_with("rem"));
}

} // namespace

Declared cascade(pugi::xml_node element, const Attributes& attributes, ReadingContext& context) {
    Declared declared;
    for (const Attributes::Entry& entry : attributes.entries()) {
        const bool isLength = entry.name >= Attribute::x && entry.name <= Attribute::y2;
        if ((isProperty(entry.name) || isLength) && isUnread(entry.value, context) &&
            element.parent().type() == pugi::node_element) { // the root is as large as it says
            context.tally.add("CSS value");
        }
        if (isProperty(entry.name) && !isOfCssAlone(entry.name)) {
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
            const Attribute property = propertyByName(name);
            met = met || marked;
            if (isProperty(property)) {
                if (marked == important) {
                    declared.offer(property, value);
                }
                if (!important && isUnread(value, context)) {
                    context.tally.add("CSS value");
                }
            } else if (isGeometry(property) && !important && ownSize && value != "none") {
                context.tally.add("geometry in a style");
            } else if (const std::string_view kind = unreadProperty(name);
                       !important && !kind.empty()) {
                context.tally.add(kind);
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
    style.displayed = style.displayed && isForUs(attributes);
    settleLook(style, context);
    return style;
}

RealMatrix transformed(const RealMatrix& outer, const ComputedStyle& style,
                       const LengthContext& lengths, ReadingContext& context) {
    const OwnTransform& own = style.transform;
    if (own.functions.empty()) {
        return outer;
    }
    auto inner =
        own.isCss ? parseCssTransform(own.functions, lengths) : parseTransform(own.functions);
    if (inner && !own.origin.empty()) {
        const auto origin = parseTransformOrigin(own.origin, lengths, own.originIsCss);
        if (origin) {
            inner = multiply(multiply({1, 0, 0, 1, -origin->x, -origin->y}, *inner),
                             {1, 0, 0, 1, origin->x, origin->y});
        }
    }
    const RealMatrix both = inner ? multiply(*inner, outer) : outer;
    if (!inner || !isFinite(both)) {
        context.tally.add("transform");
        return outer;
    }
    return both;
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
