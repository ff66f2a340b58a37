#include "app/svg/read/style/computed_style.h"

#include "app/svg/appearance_attributes.h"
#include "app/svg/read/style/css_colour.h"
#include "app/svg/read/style/font_style.h"
#include "app/svg/read/style/text_style.h"
#include "app/svg/read/values/number.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

std::string_view withoutQuotes(std::string_view text) {
    text = trimmed(text);
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
        text.front() == text.back()) {
        text = trimmed(text.substr(1, text.size() - 2));
    }
    return text;
}

/// Reads what declarations say into one element's style.
class StyleReader {
public:
    StyleReader(ComputedStyle& style, const Declared& declared, const LengthContext& lengths,
                Tally& tally, bool isTransfer)
        : style_(style), declared_(declared), lengths_(lengths), tally_(tally),
          isTransfer_(isTransfer) {}

    void read();

private:
    void readPaints();
    PaintValue parsePaint(std::string_view text, const PaintValue& outer);
    void readStroke();
    void readOpacities();
    void readDashes();
    void readClip();
    void readAppearance();
    std::string_view parseReference(std::string_view text, std::string_view kind);
    void readImages();
    void countIgnored();

    /// Calls `use(text)` if the element has the property with a value of its own.
    template <class Use>
    void with(Attribute property, Use use) {
        if (!declared_.has(property)) {
            return;
        }
        const std::string_view text = trimmed(declared_[property]);
        if (text != "inherit") {
            use(text);
        }
    }
    void readLength(Attribute property, double& into) {
        with(property, [&](std::string_view text) {
            into = parseLength(text, Axis::other, lengths_).value_or(into);
        });
    }
    void readRule(Attribute property, FillRule& into) {
        with(property, [&](std::string_view text) {
            into = text == "evenodd" ? FillRule::evenOdd : FillRule::nonzero;
        });
    }

    ComputedStyle& style_;
    const Declared& declared_;
    LengthContext lengths_;
    Tally& tally_;
    bool isTransfer_;
};

PaintValue StyleReader::parsePaint(std::string_view text, const PaintValue& outer) {
    PaintValue paint;
    if (text == "none") {
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
        }
    });
    style_.saysFill = declared_.has(Attribute::fill);
    style_.saysStroke = declared_.has(Attribute::stroke);
    with(Attribute::fill,
         [&](std::string_view text) { style_.fill = parsePaint(text, style_.fill); });
    with(Attribute::stroke,
         [&](std::string_view text) { style_.stroke = parsePaint(text, style_.stroke); });
    for (PaintValue* const paint : {&style_.fill, &style_.stroke}) {
        paint->colour = paint->isCurrent ? style_.colour : paint->colour;
    }
}

void StyleReader::readDashes() {
    with(Attribute::strokeDasharray, [&](std::string_view text) {
        style_.dashes = text == "none" ? std::string_view{} : text;
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
    with(Attribute::strokeLinecap, [&](std::string_view text) {
        style_.cap = text == "round" ? 1 : text == "square" ? 2 : 0;
    });
    with(Attribute::strokeLinejoin, [&](std::string_view text) {
        style_.join = text == "round" ? 1 : text == "bevel" ? 2 : 0;
    });
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
    if (text == "none") {
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

void StyleReader::countIgnored() {
    struct Ignored {
        Attribute property;
        std::string_view kind;
        std::string_view harmless;
    };
    constexpr auto ignored = std::to_array<Ignored>({
        {Attribute::filter, "filter", "none"},
        {Attribute::marker, "marker", "none"},
        {Attribute::markerStart, "marker", "none"},
        {Attribute::markerMid, "marker", "none"},
        {Attribute::markerEnd, "marker", "none"},
        {Attribute::paintOrder, "paint-order", "normal"},
        {Attribute::vectorEffect, "vector-effect", "none"},
    });
    for (const Ignored& entry : ignored) {
        with(entry.property, [&](std::string_view text) {
            if (entry.property == Attribute::filter && isTransfer_) {
                return; // a part of a mask of ours
            }
            if (text != entry.harmless && !text.starts_with("fill stroke markers")) {
                tally_.add(entry.kind);
            }
        });
    }
}

void StyleReader::read() {
    readFont(style_, declared_, lengths_, tally_);
    lengths_.fontSize = style_.fontSize;
    readTextStyle(style_, declared_, lengths_, tally_);
    readPaints();
    readStroke();
    readOpacities();
    readAppearance();
    readRule(Attribute::fillRule, style_.fillRule);
    readRule(Attribute::clipRule, style_.clipRule);
    readImages();
    with(Attribute::visibility, [&](std::string_view text) { style_.visible = text == "visible"; });
    with(Attribute::display, [&](std::string_view text) { style_.displayed = text != "none"; });
    with(Attribute::overflow,
         [&](std::string_view text) { style_.overflows = text == "visible" || text == "auto"; });
    readClip();
    countIgnored();
}

} // namespace

std::optional<std::string_view> localReference(std::string_view text, std::string_view* rest) {
    TextCursor cursor(text);
    cursor.skipBlanks();
    if (!cursor.rest().starts_with("url(")) {
        return std::nullopt;
    }
    cursor.takeUntil('(');
    const std::string_view reference = withoutQuotes(takeOutsideBrackets(cursor, ')'));
    if (rest != nullptr) {
        *rest = trimmed(cursor.rest());
    }
    if (!reference.starts_with('#')) {
        return std::nullopt;
    }
    return reference.substr(1);
}

std::optional<double> parseOpacity(std::string_view text) {
    TextCursor cursor(text);
    cursor.skipBlanks();
    double value = 0;
    if (!cursor.number(value)) {
        return std::nullopt;
    }
    return std::clamp(cursor.take('%') ? value / 100 : value, 0.0, 1.0);
}

ComputedStyle computeStyle(const ComputedStyle& outer, const Declared& declared,
                           const Attributes& attributes, const Viewport& viewport, Tally& tally) {
    ComputedStyle style = outer;
    style.displayed = true;
    style.overflows = false;
    style.saysFill = style.saysStroke = false;
    style.baselineShift = 0;
    style.bidi = Bidi::none;
    style.flow = {};
    if (attributes.has(Attribute::xmlSpace)) {
        style.keepsBlanks = attributes[Attribute::xmlSpace] == "preserve";
        style.keepsLines = false;
    }
    style.clipPath = style.mask = {};
    style.appearance = {};
    style.masksByAlpha = false;
    if (declared.any()) {
        const bool isTransfer = attributes.has(Attribute::dataTransfer);
        StyleReader(style, declared, {viewport, outer.fontSize}, tally, isTransfer).read();
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
