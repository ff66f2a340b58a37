#include "app/svg/read/style/computed_style.h"

#include "app/svg/paint/appearance_attributes.h"
#include "app/svg/read/style/css_colour.h"
#include "app/svg/read/style/decoration.h"
#include "app/svg/read/style/font_style.h"
#include "app/svg/read/style/property_values.h"
#include "app/svg/read/style/text_style.h"
#include "app/svg/read/values/number.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace corvane {

namespace {

/// Reads what declarations say into one element's style.
class StyleReader {
public:
    StyleReader(ComputedStyle& style, const Declared& declared, const LengthContext& lengths,
                Tally& tally, const Attributes& attributes)
        : style_(style), declared_(declared), lengths_(lengths), tally_(tally),
          attributes_(attributes) {}

    void read();

private:
    void readPaints();
    PaintValue parsePaint(std::string_view text, const PaintValue& outer);
    void readStroke();
    void readOpacities();
    void readDashes();
    void readClip();
    void readAppearance();
    void readTransform();
    void readCoats();
    void readMarkers();
    std::string_view parseReference(std::string_view text, std::string_view kind);
    void readImages();
    void countIgnored();

    /// Calls `use(text)` if the element has the property with a value of its own.
    template <class Use>
    void with(Attribute property, Use use) {
        if (!declared_.has(property)) {
            return;
        }
        const std::string_view text = withoutKeywords(property, trimmed(declared_[property]));
        if (text != "inherit") {
            use(text);
        }
    }
    void readLength(Attribute property, double& into) {
        with(property, [&](std::string_view text) {
            into = parseLength(text, Axis::other, lengths_).value_or(into);
        });
    }
    /// Calls `use(place)` with the place of a property's word in a list, if it is there.
    template <class Use>
    void withKeyword(Attribute property, std::initializer_list<std::string_view> list, Use use) {
        with(property, [&](std::string_view text) {
            if (const auto place = keywordIn(text, list)) {
                use(*place);
            }
        });
    }
    void readRule(Attribute property, FillRule& into) {
        withKeyword(property, {"nonzero", "evenodd"}, [&](std::size_t place) {
            into = place == 1 ? FillRule::evenOdd : FillRule::nonzero;
        });
    }

    ComputedStyle& style_;
    const Declared& declared_;
    LengthContext lengths_;
    Tally& tally_;
    const Attributes& attributes_;
};

PaintValue StyleReader::parsePaint(std::string_view text, const PaintValue& outer) {
    PaintValue paint;
    if (isWord(text, "none")) {
        return paint;
    }
    if (isCurrentColour(text)) {
        paint.kind = PaintValue::Kind::colour;
        paint.isCurrent = true;
        return paint;
    }
    if (text.starts_with("url(")) {
        std::string_view fallback;
        const auto reference = localReference(text, &fallback);
        if (!fallback.empty() && !fallback.starts_with("url(")) {
            paint = parsePaint(fallback, paint);
            paint.saysFallback = true;
        }
        if (reference) {
            paint.fallsBack = paint.kind == PaintValue::Kind::colour;
            paint.kind = PaintValue::Kind::server;
            paint.server = *reference;
        } else {
            tally_.add("external reference");
        }
        return paint;
    }
    if (text.starts_with("context-")) {
        paint.context =
            text == "context-stroke" ? PaintValue::Context::stroke : PaintValue::Context::fill;
        return paint;
    }
    const std::optional<CssColour> colour = parseColour(text);
    if (!colour) {
        tally_.add("colour");
        return outer;
    }
    paint.kind = PaintValue::Kind::colour;
    paint.colour = colour->screen;
    paint.alpha = colour->alpha;
    return paint;
}

void StyleReader::readPaints() {
    with(Attribute::color, [&](std::string_view text) {
        if (const auto colour = parseColour(text)) {
            style_.colour = colour->screen;
            style_.colourAlpha = colour->alpha;
        }
    });
    style_.saysFill = declared_.has(Attribute::fill);
    style_.saysStroke = declared_.has(Attribute::stroke);
    with(Attribute::fill,
         [&](std::string_view text) { style_.fill = parsePaint(text, style_.fill); });
    with(Attribute::stroke,
         [&](std::string_view text) { style_.stroke = parsePaint(text, style_.stroke); });
    for (PaintValue* const paint : {&style_.fill, &style_.stroke}) {
        if (paint->isCurrent) {
            paint->colour = style_.colour;
            paint->alpha = style_.colourAlpha;
        }
    }
}

void StyleReader::readDashes() {
    with(Attribute::strokeDasharray, [&](std::string_view text) {
        style_.dashes = isWord(text, "none") ? std::string_view{} : text;
        style_.viewport = lengths_.viewport;
    });
    readLength(Attribute::strokeDashoffset, style_.dashOffset);
}

void StyleReader::readStroke() {
    with(Attribute::strokeWidth, [&](std::string_view text) {
        const auto width = parseLength(text, Axis::other, lengths_);
        if (width && *width >= 0) {
            style_.strokeWidth = *width;
        }
    });
    withKeyword(Attribute::strokeLinecap, {"butt", "round", "square"},
                [&](std::size_t place) { style_.cap = static_cast<std::int32_t>(place); });
    withKeyword(Attribute::strokeLinejoin, {"miter", "round", "bevel"},
                [&](std::size_t place) { style_.join = static_cast<std::int32_t>(place); });
    with(Attribute::strokeMiterlimit, [&](std::string_view text) {
        double limit = 0;
        if (TextCursor(text).number(limit) && limit >= 1) {
            style_.miterLimit = limit;
        }
    });
    readDashes();
}

void StyleReader::readOpacities() {
    with(Attribute::fillOpacity, [&](std::string_view text) {
        style_.fillOpacity = parseOpacity(text).value_or(style_.fillOpacity);
    });
    with(Attribute::strokeOpacity, [&](std::string_view text) {
        style_.strokeOpacity = parseOpacity(text).value_or(style_.strokeOpacity);
    });
    with(Attribute::opacity, [&](std::string_view text) {
        const double opacity = parseOpacity(text).value_or(1);
        style_.transparent = style_.transparent || opacity == 0;
        style_.appearance.opacity = opacity;
    });
}

/// The id that a property of that name refers to; counts what leads nowhere.
std::string_view StyleReader::parseReference(std::string_view text, std::string_view kind) {
    if (isWord(text, "none")) {
        return {};
    }
    const auto reference = localReference(text);
    if (!reference) {
        tally_.add(text.starts_with("url(") ? "external reference" : kind);
    }
    return reference.value_or(std::string_view{});
}

void StyleReader::readAppearance() {
    with(Attribute::mixBlendMode, [&](std::string_view text) {
        const auto mode = blendModeByName(text);
        if (!mode) {
            tally_.add("mix-blend-mode");
        }
        style_.appearance.blend = mode.value_or(BlendMode::normal);
    });
    with(Attribute::isolation,
         [&](std::string_view text) { style_.appearance.isIsolated = text == "isolate"; });
    with(Attribute::mask,
         [&](std::string_view text) { style_.mask = parseReference(text, "mask"); });
    with(Attribute::maskType,
         [&](std::string_view text) { style_.masksByAlpha = text == "alpha"; });
}

void StyleReader::readClip() {
    with(Attribute::clipPath,
         [&](std::string_view text) { style_.clipPath = parseReference(text, "clip-path"); });
}

void StyleReader::readImages() {
    with(Attribute::imageRendering, [&](std::string_view text) {
        style_.smoothImages = text != "optimizeSpeed" && text != "pixelated" &&
                              text.find("crisp-edges") == std::string_view::npos;
    });
    with(Attribute::imageOrientation,
         [&](std::string_view text) { style_.turnsImages = text != "none"; });
}

void StyleReader::readTransform() {
    const auto isCss = [&](Attribute property) {
        return declared_[property].data() != attributes_[property].data();
    };
    with(Attribute::transform, [&](std::string_view text) {
        style_.transform.functions = isWord(text, "none") ? std::string_view{} : text;
        style_.transform.isCss = isCss(Attribute::transform);
    });
    with(Attribute::transformOrigin, [&](std::string_view text) {
        style_.transform.origin = text;
        style_.transform.originIsCss = isCss(Attribute::transformOrigin);
    });
    with(Attribute::transformBox, [&](std::string_view text) {
        if (!isWord(text, "view-box")) {
            tally_.add("transform-box");
        }
    });
}

/// What is not said follows what is, in the usual order.
void StyleReader::readCoats() {
    with(Attribute::paintOrder, [&](std::string_view text) {
        std::array<Coat, 3> coats = usualCoats;
        std::size_t count = 0;
        TextCursor cursor(text);
        for (cursor.skipBlanks(); !cursor.atEnd() && count < coats.size(); cursor.skipBlanks()) {
            const auto coat = keywordIn(cursor.takeLetters(), {"fill", "stroke", "markers"});
            if (!coat) {
                break;
            }
            const auto said = std::find(coats.begin() + count, coats.end(), usualCoats[*coat]);
            if (said != coats.end()) {
                std::rotate(coats.begin() + count++, said, said + 1);
            }
        }
        style_.coats = coats;
    });
}

void StyleReader::readMarkers() {
    const auto read = [&](Attribute property, std::initializer_list<std::string_view*> into) {
        with(property, [&](std::string_view text) {
            const std::string_view id = parseReference(text, "marker");
            for (std::string_view* const marker : into) {
                *marker = id;
            }
        });
    };
    read(Attribute::marker, {&style_.markerStart, &style_.markerMid, &style_.markerEnd});
    read(Attribute::markerStart, {&style_.markerStart});
    read(Attribute::markerMid, {&style_.markerMid});
    read(Attribute::markerEnd, {&style_.markerEnd});
}

void StyleReader::countIgnored() {
    const bool isTransfer = attributes_.has(Attribute::dataTransfer); // a part of a mask of ours
    with(Attribute::filter, [&](std::string_view text) {
        if (!isTransfer && !isWord(text, "none")) {
            tally_.add("filter");
        }
    });
    with(Attribute::vectorEffect, [&](std::string_view text) {
        style_.keepsWidth = text == "non-scaling-stroke";
        if (!style_.keepsWidth && !isWord(text, "none")) {
            tally_.add("vector-effect");
        }
    });
}

void StyleReader::read() {
    readFont(style_, declared_, lengths_, tally_);
    lengths_.fontSize = style_.fontSize;
    readTextStyle(style_, declared_, lengths_, tally_);
    readPaints();
    readStroke();
    readOpacities();
    readAppearance();
    readTransform();
    readCoats();
    readMarkers();
    readRule(Attribute::fillRule, style_.fillRule);
    readRule(Attribute::clipRule, style_.clipRule);
    readImages();
    withKeyword(Attribute::visibility, {"visible", "hidden", "collapse"},
                [&](std::size_t place) { style_.visible = place == 0; });
    with(Attribute::display,
         [&](std::string_view text) { style_.displayed = !isWord(text, "none"); });
    with(Attribute::overflow, [&](std::string_view text) {
        style_.overflows = keywordIn(text, {"visible", "auto"}).has_value();
    });
    with(Attribute::colorInterpolation,
         [&](std::string_view text) { style_.linearLight = isWord(text, "linearrgb"); });
    const auto readBackground = [&](std::string_view text) { style_.background = text; };
    with(Attribute::background, readBackground);
    with(Attribute::backgroundColor, readBackground);
    readClip();
    countIgnored();
    readDecoration(style_, declared_, lengths_, tally_);
}

/// Takes what an element does not inherit from `outer` out of its style, but for what it says it
/// inherits all the same.
void dropOwn(ComputedStyle& style, const ComputedStyle& outer, const Declared& declared) {
    const auto inherits = [&](Attribute property) {
        return declared.has(property) && isWord(trimmed(declared[property]), "inherit");
    };
    style.displayed = true;
    style.saysFill = style.saysStroke = false;
    style.bidi = Bidi::none;
    style.flow = {};
    style.background = {};
    style.overflows = inherits(Attribute::overflow) && outer.overflows;
    style.baselineShift = inherits(Attribute::baselineShift) ? outer.baselineShift : 0;
    style.keepsWidth = inherits(Attribute::vectorEffect) && outer.keepsWidth;
    style.masksByAlpha = inherits(Attribute::maskType) && outer.masksByAlpha;
    style.transform = {};
    if (inherits(Attribute::transform)) {
        style.transform.functions = outer.transform.functions;
        style.transform.isCss = outer.transform.isCss;
    }
    if (inherits(Attribute::transformOrigin)) {
        style.transform.origin = outer.transform.origin;
        style.transform.originIsCss = outer.transform.originIsCss;
    }
    style.clipPath = inherits(Attribute::clipPath) ? outer.clipPath : std::string_view{};
    style.mask = inherits(Attribute::mask) ? outer.mask : std::string_view{};
    style.appearance = {};
    if (inherits(Attribute::opacity)) {
        style.appearance.opacity = outer.appearance.opacity;
    }
    if (inherits(Attribute::mixBlendMode)) {
        style.appearance.blend = outer.appearance.blend;
    }
    style.appearance.isIsolated = inherits(Attribute::isolation) && outer.appearance.isIsolated;
}

} // namespace

ComputedStyle computeStyle(const ComputedStyle& outer, const Declared& declared,
                           const Attributes& attributes, const Viewport& viewport, Tally& tally) {
    ComputedStyle style = outer;
    dropOwn(style, outer, declared);
    if (attributes.has(Attribute::xmlSpace)) {
        style.keepsBlanks = attributes[Attribute::xmlSpace] == "preserve";
        style.keepsLines = false;
    }
    if (declared.any()) {
        StyleReader(style, declared, {viewport, outer.fontSize}, tally, attributes).read();
    }
    if (const auto twin = fillTwin(attributes)) {
        style.fillTwin = *twin;
    }
    if (const auto twin = strokeTwin(attributes)) {
        style.strokeTwin = *twin;
    }
    return style;
}

} // namespace corvane
