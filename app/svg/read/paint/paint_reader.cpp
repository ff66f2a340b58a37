#include "app/svg/read/paint/paint_reader.h"

#include "app/svg/read/paint/pattern_reader.h"

#include <algorithm>
#include <utility>

namespace corvane {

void PaintReader::paint(PathStyle& path, const ComputedStyle& style, const PaintUse& use,
                        const PaintUse& around) {
    const auto useOf = [&](const PaintValue& value) -> const PaintUse& {
        return value.context == PaintValue::Context::none ? use : around;
    };
    if (path.fillPaint != 0 && style.fill.kind == PaintValue::Kind::server) {
        paint(path.fillPaint, path.fill, style.fill, useOf(style.fill));
        path.rule = path.fillPaint != 0 ? path.rule : FillRule::nonzero;
    }
    if (path.strokePaint != 0 && style.stroke.kind == PaintValue::Kind::server) {
        paint(path.strokePaint, path.stroke, style.stroke, useOf(style.stroke));
    }
}

void PaintReader::paint(std::uint8_t& painted, Colour& colour, const PaintValue& value,
                        const PaintUse& use) {
    const pugi::xml_node server = context_.index.find(value.server);
    const Element element = context_.index.elementOf(server);
    const bool isPattern = element == Element::pattern;
    const bool isGradient =
        element == Element::linearGradient || element == Element::radialGradient;
    if (!isPattern && !isGradient) {
        if (!value.saysFallback) {
            context_.tally.add("paint server");
        }
        painted = value.fallsBack ? 1 : 0;
        return; // the colour that is seen instead is there already
    }
    const std::optional<PaintSource> source = resolve(server, element, use);
    if (source.value_or(PaintSource::null) == PaintSource::null) {
        painted = value.fallsBack && !source ? 1 : 0;
        return;
    }
    colour = {};
    colour.kind = isPattern ? ColourKind::pattern : ColourKind::gradient;
    colour.source = *source;
}

/// Null: there is nothing to paint with. None: it is as if it were not there, as what is to fit a
/// box without area.
std::optional<PaintSource> PaintReader::resolve(pugi::xml_node server, Element element,
                                                const PaintUse& use) {
    const KnownPaint& known = context_.paints[server.hash_value()];
    const bool same = known.source != PaintSource::null && known.toArt == use.toArt &&
                      known.viewport.width == use.lengths.viewport.width &&
                      known.viewport.height == use.lengths.viewport.height;
    if (same) {
        return known.source;
    }
    bool fitsBox = false;
    std::optional<PaintSource> source;
    if (element == Element::pattern) {
        source = readPattern(server, use, context_, fitsBox);
        if (*source == PaintSource::null && !boxMatrix(use.box)) {
            return std::nullopt;
        }
    } else {
        source = gradient(server, use, fitsBox);
    }
    if (!fitsBox && source) {
        context_.paints[server.hash_value()] = {use.toArt, use.lengths.viewport, *source};
    }
    return source;
}

std::optional<PaintSource> PaintReader::gradient(pugi::xml_node server, const PaintUse& use,
                                                 bool& fitsBox) {
    std::vector<pugi::xml_node> elements;
    const std::vector<Attributes> inherited = inheritedAttributes(server, context_, elements);
    fitsBox = firstOf(inherited, Attribute::gradientUnits) != "userSpaceOnUse";
    const auto [stops, isNew] = stops_.try_emplace(server.hash_value());
    if (!isNew) {
        context_.expand(1 + std::ssize(stops->second));
    } else {
        stops->second = readStops(elements, context_);
    }
    auto gradient = readGradient(server, inherited, use, context_);
    if (stops->second.empty()) {
        return PaintSource::null;
    }
    if (!gradient || !inverse(gradient->matrix)) {
        return std::nullopt;
    }
    gradient->stops = stops->second;
    return context_.document.addGradient(std::move(*gradient));
}

} // namespace corvane
