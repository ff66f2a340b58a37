// How elements are laid over what is behind them: opacity, blending, masks.
#include "app/svg/read/tree/tree_reader.h"

#include "app/artwork/geometry/path_walk.h"
#include "app/svg/paint/appearance_attributes.h"
#include "app/svg/read/paint/paint_style.h"
#include "app/svg/read/style/css_colour.h"
#include "app/svg/read/style/property_values.h"
#include "app/svg/tree/survey.h"

#include <utility>

namespace corvane {

/// `attributes_` are the element's.
ElementLook TreeReader::lookOf(const ComputedStyle& style, const RealMatrix& matrix,
                               const Viewport& viewport) const {
    ElementLook look{style.appearance, style.mask, matrix, viewport};
    if (context_.ours && context_.holdsAppearance) {
        look.appearance.isKnockout = attributes_.isTrue(Attribute::dataKnockout);
        look.appearance.overprint = parseOverprint(attributes_[Attribute::dataOverprint]);
        look.appearance.intent = parseIntent(attributes_[Attribute::dataIntent]);
    }
    return look;
}

/// That of an image, a text or a path, which a group may carry for it.
ElementLook TreeReader::lookOfChild(const ComputedStyle& style, const RealMatrix& matrix) const {
    const Frame& frame = frames_.back();
    if (!frame.passesLook) {
        return lookOf(style, matrix, frame.viewport);
    }
    ElementLook look = frame.look;
    look.appearance.opacity *= style.appearance.opacity;
    return look;
}

/// A mask would be transformed with an image, a text or a path that has a pen, so files of ours put
/// a group around it, which is no group of the art and has no name.
bool TreeReader::carriesLook(pugi::xml_node node, const Frame& frame) const {
    const bool mayCarry = context_.ours && frame.style.clipPath.empty() &&
                          frame.late.kind == LateClip::Kind::none &&
                          !attributes_.has(Attribute::id) && !lookOf(frame.style, {}, {}).isPlain();
    if (!mayCarry) {
        return false;
    }
    int held = 0;
    int carried = 0;
    for (const pugi::xml_node child : node.children()) {
        const Element element = context_.index.elementOf(child);
        held += child.type() == pugi::node_element ? 1 : 0;
        const bool isPenned = element == Element::path && !child.attribute("transform").empty();
        carried += isPenned || element == Element::image || element == Element::text ? 1 : 0;
    }
    return held == 1 && carried == 1;
}

/// `box` is around the element, in its user space.
Appearance TreeReader::appearanceOf(const ElementLook& look, const UserBox& box) {
    Appearance appearance = look.appearance;
    mixes_ = mixes_ || appearance.blend != BlendMode::normal;
    if (!look.mask.empty()) {
        appearance.mask = masks_.read(look.mask, {look.matrix, look.viewport, box});
    }
    return appearance;
}

void TreeReader::setLook(Art art, const ElementLook& look, const UserBox& box) {
    const Appearance appearance = appearanceOf(look, box);
    if (appearance != Appearance()) {
        document_.setAppearance(art, appearance);
    }
}

/// The box is known in the art. Where its user space is turned, that is as near as it gets.
void TreeReader::setFrameLook(const Frame& frame) {
    if (frame.outermost == Art::null || frame.look.isPlain()) {
        return;
    }
    ElementLook look = frame.look;
    if (!masks_.fitsBox(look.mask)) {
        setLook(frame.outermost, look, {});
        return;
    }
    const RealMatrix& matrix = look.matrix;
    if (matrix.b != 0 || matrix.c != 0 || matrix.a < 0 || matrix.d > 0) {
        context_.tally.add("mask");
    }
    const auto back = inverse(matrix);
    setLook(frame.outermost, look, back ? boxThrough(*back, frame.box) : UserBox());
}

/// What is clipped is painted by itself first (CSS Masking 1, 5.1). Of a clipped group that holds
/// one thing the group says how that is mixed with what is behind; in the art the thing says it.
/// What else blends in a clipped group blends within it, but in files of ours, which have the
/// page's forms so.
void TreeReader::settleBlending(Frame& frame) {
    const bool mixesWithin = std::exchange(mixes_, frame.mixesBefore);
    const Art group = frame.outermost;
    if (group == Art::null) {
        mixes_ = mixes_ || mixesWithin;
        return;
    }
    Appearance look = document_.appearance(group);
    const bool isClipped = frame.made != Art::null && clipOf(document_, group) != Art::null;
    const bool isApart = isClipped && !frame.style.clipPath.empty() && !context_.ours;
    if (isApart && mixesWithin && !paintsApart(look)) {
        look.isIsolated = true;
        document_.setAppearance(group, look);
    }
    mixes_ = mixes_ || look.blend != BlendMode::normal || (mixesWithin && !paintsApart(look));
    if (isClipped && look != Appearance() && look == Appearance{.blend = look.blend}) {
        passBlending(group, look.blend);
    }
}

void TreeReader::passBlending(Art group, BlendMode blend) {
    const auto isFrame = [&](Art art) {
        return document_.kind(art) == ArtKind::group && clipOf(document_, art) != Art::null &&
               !document_.form(art) && document_.groupLayer(art) == ContentLayer::null;
    };
    Art part = group;
    while (isFrame(part) && (part == group || document_.appearance(part) == Appearance())) {
        const Art held = document_.nextSibling(document_.firstChild(part));
        if (held == Art::null || held != document_.lastChild(part)) {
            return;
        }
        part = held;
    }
    Appearance look = document_.appearance(part);
    if (part != group && look.blend == BlendMode::normal) {
        look.blend = blend;
        document_.setAppearance(part, look);
        document_.setAppearance(group, {});
    }
}

void TreeReader::setShapeLook(Art shape, const ComputedStyle& style, const RealMatrix& matrix) {
    if (!context_.holdsAppearance) {
        return;
    }
    ElementLook look = lookOfChild(style, matrix);
    const Art path =
        document_.kind(shape) == ArtKind::compound ? document_.firstChild(shape) : shape;
    if (path == Art::null) {
        return;
    }
    const PathStyle& painted = document_.style(path);
    look.appearance.fillOpacity = painted.fillPaint != 0 ? fillOpacityOf(style) : 1;
    look.appearance.strokeOpacity = painted.strokePaint != 0 ? strokeOpacityOf(style) : 1;
    setLook(shape, look, shape_.box());
}

/// A rectangle of the page's size behind all art; white is what paper is.
void TreeReader::paintBackground(std::string_view colour) {
    const auto parsed = parseColour(colour);
    if (!parsed) {
        if (!keywordIn(colour, {"none", "inherit"})) {
            context_.tally.add("background");
        }
        return;
    }
    if (parsed->alpha == 0 || parsed->screen == ScreenColour{255, 255, 255}) {
        return;
    }
    const Rect& page = document_.page().bounds();
    const auto side = [](Fixed fixed) { return static_cast<double>(fixed) / fixedOne; };
    shape_.begin({Placement::inside, layers_.loose()}, {}, false, false);
    shape_.moveTo(side(page.left), side(page.bottom));
    shape_.lineTo(side(page.right), side(page.bottom));
    shape_.lineTo(side(page.right), side(page.top));
    shape_.lineTo(side(page.left), side(page.top));
    shape_.close(false);
    const Art ground = shape_.finish(false);
    PathStyle style;
    style.fillPaint = 1;
    style.fill = PaintTwin().resolve(parsed->screen, document_);
    document_.setStyle(ground, style);
    Appearance look;
    look.fillOpacity = context_.holdsAppearance ? parsed->alpha : 1;
    document_.setAppearance(ground, look);
}

} // namespace corvane
