#include "app/svg/read/tree/tree_reader.h"

#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/style/conditions.h"
#include "app/svg/read/values/view_box.h"
#include "app/svg/reader.h"
#include "app/svg/shape_extent.h"

#include <algorithm>
#include <string>
#include <utility>

namespace corvane {

void TreeReader::read(pugi::xml_node root, const RealMatrix& toArt, const Viewport& viewport) {
    Frame frame;
    attributes_.load(root);
    frame.next = root.first_child();
    frame.holdsLayers = true;
    frame.style = styleOf(root, attributes_, {}, viewport, context_);
    if (isHidden(frame)) {
        return;
    }
    context_.hasUsualRem = frame.style.fontSize == LengthContext{}.fontSize;
    const Appearance& look = frame.style.appearance;
    if (look.opacity != 1 || look.blend != BlendMode::normal || !frame.style.mask.empty()) {
        context_.tally.add("opacity"); // of the page as a whole, as the next two
    }
    if (!frame.style.clipPath.empty()) {
        context_.tally.add("clip-path");
    }
    if (!frame.style.transform.functions.empty()) {
        context_.tally.add("transform");
    }
    if (!context_.ours && !frame.style.background.empty()) {
        paintBackground(frame.style.background);
    }
    frame.matrix = toArt;
    frame.viewport = viewport;
    const Rect& page = document_.page().bounds();
    const Extent seen{page.left, page.bottom, page.right, page.top};
    if (!seen.empty()) {
        frame.visible = seen;
    }
    push(std::move(frame));
    readFrames();
}

void TreeReader::readTile(pugi::xml_node pattern, Art tile, const RealMatrix& toTile,
                          const Viewport& viewport) {
    Frame frame = frameOfHolder(pattern, viewport);
    frame.matrix = toTile;
    frame.group = tile;
    inTile_ = true;
    push(std::move(frame));
    readFrames();
}

void TreeReader::readFrames() {
    while (!frames_.empty()) {
        Frame& top = frames_.back();
        const pugi::xml_node node = top.next;
        if (!node) {
            leave();
            continue;
        }
        top.next = top.onlyNext ? pugi::xml_node() : node.next_sibling();
        countAgain(1);
        if (node.type() == pugi::node_element) {
            if (context_.pause) {
                context_.pause();
            }
            visit(node);
        } else if (std::string_view(node.value()).find('&') != std::string_view::npos) {
            context_.tally.add("entity"); // perhaps art
        }
    }
}

/// Counts what is read for a `use` or a pattern, which may be read any number of times.
void TreeReader::countAgain(std::int64_t elements) {
    if (inTile_ || !targets_.empty()) {
        context_.expand(elements);
    }
}

void TreeReader::load(pugi::xml_node node) {
    attributes_.load(node);
    countAgain(attributes_.cost());
}

void TreeReader::visit(pugi::xml_node node) {
    current_ = node;
    bool foreign = false;
    const Element element = context_.index.elementOf(node, foreign);
    if (foreign) {
        return;
    }
    switch (element) {
    case Element::g:
    case Element::a:
        enterGroup(node);
        return;
    case Element::switchElement:
        enterSwitch(node);
        return;
    case Element::use:
        enterUse(node);
        return;
    case Element::svg:
        enterViewport(node);
        return;
    case Element::symbol:
        if (frames_.back().isUse) {
            enterViewport(node);
        }
        return;
    case Element::text:
        readText(node);
        return;
    case Element::image:
        readImage(node);
        return;
    default:
        break;
    }
    if (isShapeElement(element)) {
        readShape(node, element);
    } else if (const std::string_view kind = ignoredKind(element); !kind.empty()) {
        context_.tally.add(kind);
    }
}

// Frames

/// A frame for the children of `node`, without a group of its own; `attributes_` are the node's.
Frame TreeReader::frameOf(pugi::xml_node node) {
    load(node);
    Frame& outer = frames_.back();
    closeShared(outer, 0);
    Frame frame;
    frame.next = node.first_child();
    frame.style = styleOf(node, attributes_, outer.style, outer.viewport, context_);
    frame.matrix =
        transformed(outer.matrix, frame.style, {outer.viewport, frame.style.fontSize}, context_);
    frame.viewport = outer.viewport;
    frame.group = outer.group;
    frame.clip = outer.clip;
    frame.visible = outer.visible;
    frame.measured = outer.measured;
    frame.boxed = outer.boxed;
    return frame;
}

/// A frame for the children of an element that draws nothing where it stands.
Frame TreeReader::frameOfHolder(pugi::xml_node holder, const Viewport& viewport) {
    attributes_.load(holder);
    Frame frame;
    frame.next = holder.first_child();
    frame.style = styleOf(holder, attributes_, context_.inherited.within(holder.parent(), context_),
                          viewport, context_);
    frame.viewport = viewport;
    return frame;
}

void TreeReader::push(Frame frame) {
    if (frames_.size() >= context_.budget.nesting) {
        throw SvgError("elements are nested too deeply");
    }
    frame.mixesBefore = std::exchange(mixes_, false);
    frames_.push_back(std::move(frame));
}

void TreeReader::leave() {
    Frame& frame = frames_.back();
    closeShared(frame, 0);
    if (holdsNothing(frame)) {
        document_.dispose(frame.made);
        mixes_ = frame.mixesBefore;
    } else {
        makeBoxClips(frame);
        makeLateClip(frame);
        setFrameLook(frame);
        settleBlending(frame);
    }
    if (!frame.annotations.empty()) {
        markMissingAnnotations(frame);
    }
    if (frame.isUse) {
        targets_.pop_back();
        contexts_.pop_back();
    }
    const Extent content = frame.content.within(frame.clipBounds);
    const UserBox box = frame.box;
    frames_.pop_back();
    if (!frames_.empty()) {
        frames_.back().content.add(content);
        frames_.back().box.add(box);
    }
}

/// Counts what is left out because it is not displayed.
bool TreeReader::isHidden(const Frame& frame) {
    if (!frame.style.displayed) {
        context_.tally.add("hidden element");
    }
    return !frame.style.displayed;
}

// Elements that hold others

/// An editor may put a group around all layers.
bool TreeReader::wrapsLayers(pugi::xml_node node) const {
    if (!frames_.back().holdsLayers) {
        return false;
    }
    for (const pugi::xml_node child : node.children()) {
        if (context_.index.elementOf(child) == Element::g) {
            return LayerReader::isLayer(Attributes(child));
        }
    }
    return false;
}

void TreeReader::enterLayer(pugi::xml_node node, Frame& frame) {
    const LayerProperties properties =
        layerProperties(attributes_, frame.style.displayed, context_.ours);
    const bool isNew = context_.holdsAppearance && properties.role == LayerRole::page &&
                       (!properties.visible || !isOfPage(node));
    frame.group = layers_.add(properties);
    if (isNew) {
        document_.setGroupLayer(frame.group, document_.contentLayers().add(newLayer(frame)));
    }
    frame.clip = Art::null;
    setSource(frame.group, sourceFrom(Attribute::dataSource));
    if (context_.ours) {
        frame.annotations = attributes_[Attribute::dataAnnotations];
    }
    openGroups(frame, frame.group);
}

/// Whether a layer can be one within others; a drawing of a tile, or by `use`, is none.
bool TreeReader::isLayerWithin() const {
    return context_.holdsAppearance && !frames_.back().holdsLayers && !inTile_ && targets_.empty();
}

void TreeReader::enterGroup(pugi::xml_node node) {
    Frame frame = frameOf(node);
    if (attributes_.has(Attribute::dataClip)) {
        frame.late.kind = LateClip::Kind::unseen;
        frame.late.data = attributes_[Attribute::dataClip];
        frame.late.rule = attributes_[Attribute::dataClipRule] == "evenodd" ? FillRule::evenOdd
                                                                            : FillRule::nonzero;
        frame.late.source = sourceFrom(Attribute::dataClipSource);
        frame.late.matrix = frame.matrix;
        frame.measured = true;
    }
    const bool isContentLayer = context_.ours && attributes_.has(Attribute::dataLayer);
    const bool isOutermost = frames_.back().holdsLayers;
    const bool isLayer = (LayerReader::isLayer(attributes_) && !isContentLayer) ||
                         (context_.ours && isOutermost && isOfAnnotations(attributes_));
    const bool isWithin = isLayer && isLayerWithin();
    if (isLayer && isOutermost) {
        enterLayer(node, frame);
        push(std::move(frame));
        return;
    }
    if (isLayer && !isWithin) {
        context_.tally.add("layer within a layer");
    }
    const bool isPlain = frame.style.clipPath.empty() && lookOf(frame.style, {}, {}).isPlain();
    if (isPlain && wrapsLayers(node)) {
        frame.holdsLayers = true;
        push(std::move(frame));
        return;
    }
    if (!isWithin && carriesLook(node, frame)) {
        frame.look = lookOf(frame.style, frame.matrix, frame.viewport);
        frame.passesLook = true;
        push(std::move(frame));
        return;
    }
    // Of ours, a group that nothing is seen of is not displayed.
    const bool mayBeHidden = isContentLayer || isWithin;
    const bool mayBeBlank = context_.ours && !frame.style.clipPath.empty();
    if (!mayBeHidden && !mayBeBlank && isHidden(frame)) {
        return;
    }
    openGroups(frame, Art::null);
    setSource(frame.made, sourceOfShape());
    readStructure(frame);
    if (isWithin) {
        document_.setGroupLayer(frame.made, document_.contentLayers().add(newLayer(frame)));
    }
    if (!mayBeHidden && mayBeBlank && frame.clip != Art::null &&
        !clipShape(document_, frame.clip).blank && isHidden(frame)) {
        document_.dispose(frame.made);
        return;
    }
    push(std::move(frame));
}

/// The first child that this program satisfies, and knows: behind a text that others break into
/// lines there may be one that is broken already.
void TreeReader::enterSwitch(pugi::xml_node node) {
    Frame frame = frameOf(node);
    if (isHidden(frame)) {
        return;
    }
    pugi::xml_node chosen;
    for (const pugi::xml_node child : node.children()) {
        if (child.type() != pugi::node_element) {
            continue;
        }
        const Attributes attributes(child);
        countAgain(1 + attributes.cost());
        if (!isForUs(attributes)) {
            continue;
        }
        const bool isKnown = ignoredKind(context_.index.elementOf(child)).empty();
        chosen = !chosen || isKnown ? child : chosen;
        if (isKnown) {
            break;
        }
    }
    if (!chosen && node.first_child()) {
        context_.tally.add("switch");
    }
    frame.next = chosen;
    frame.onlyNext = true;
    openGroups(frame, Art::null);
    push(std::move(frame));
}

void TreeReader::enterUse(pugi::xml_node node) {
    Frame frame = frameOf(node);
    if (isHidden(frame)) {
        return;
    }
    const std::string_view reference = attributes_[Attribute::href];
    if (!reference.starts_with('#')) {
        context_.tally.add(reference.empty() ? "use" : "external reference");
        return;
    }
    const pugi::xml_node target = context_.index.find(reference.substr(1));
    if (!target) {
        context_.tally.add("use");
        return;
    }
    if (std::ranges::find(targets_, target) != targets_.end() ||
        targets_.size() == context_.budget.references) {
        context_.tally.add("circular reference");
        return;
    }
    const LengthContext lengths{frame.viewport, frame.style.fontSize};
    frame.matrix = multiply({1, 0, 0, 1, lengthOf(attributes_, Attribute::x, Axis::x, lengths),
                             lengthOf(attributes_, Attribute::y, Axis::y, lengths)},
                            frame.matrix);
    frame.width = attributes_[Attribute::width];
    frame.height = attributes_[Attribute::height];
    frame.next = target;
    frame.onlyNext = true;
    frame.isUse = true;
    openGroups(frame, Art::null);
    ComputedStyle painted = frame.style;
    resolveContext(painted);
    push(std::move(frame));
    targets_.push_back(target);
    contexts_.push_back(
        {painted.fill, painted.fillTwin, painted.stroke, painted.strokeTwin, std::nullopt});
}

/// A symbol, or an `svg` within the file: a viewport of its own, which clips.
void TreeReader::enterViewport(pugi::xml_node node) {
    const Frame& outer = frames_.back();
    const bool used = outer.isUse;
    const std::string_view usedWidth = outer.width;
    const std::string_view usedHeight = outer.height;
    Frame frame = frameOf(node);
    if (isHidden(frame)) {
        return;
    }
    const LengthContext lengths{frame.viewport, frame.style.fontSize};
    const auto side = [&](Attribute name, std::string_view usedText, Axis axis, double whole) {
        const std::string_view text = used && !usedText.empty() ? usedText : attributes_[name];
        return parseLength(text, axis, lengths).value_or(whole);
    };
    ViewBox area;
    area.x = lengthOf(attributes_, Attribute::x, Axis::x, lengths);
    area.y = lengthOf(attributes_, Attribute::y, Axis::y, lengths);
    area.width = side(Attribute::width, usedWidth, Axis::x, frame.viewport.width);
    area.height = side(Attribute::height, usedHeight, Axis::y, frame.viewport.height);
    const auto box = parseViewBox(attributes_[Attribute::viewBox]);
    if (!(area.width > 0 && area.height > 0) || (box && !(box->width > 0 && box->height > 0))) {
        return; // nothing is drawn in no area
    }
    if (!frame.style.overflows) {
        frame.late.kind = LateClip::Kind::viewport;
        frame.late.box.add(area.x, area.y);
        frame.late.box.add(area.x + area.width, area.y + area.height);
        frame.late.matrix = frame.matrix;
        frame.measured = true;
    }
    const RealMatrix inner =
        box ? viewBoxMatrix(*box, area, attributes_[Attribute::preserveAspectRatio])
            : RealMatrix{1, 0, 0, 1, area.x, area.y};
    openGroups(frame, Art::null);
    frame.matrix = multiply(inner, frame.matrix);
    frame.viewport = box ? Viewport{box->width, box->height} : Viewport{area.width, area.height};
    push(std::move(frame));
}

} // namespace corvane
