#include "app/svg/read/tree_reader.h"

#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/cascade.h"
#include "app/svg/read/paint_style.h"
#include "app/svg/read/path_reader.h"
#include "app/svg/read/view_box.h"
#include "app/svg/reader.h"
#include "app/svg/shape_extent.h"

#include <algorithm>
#include <string>
#include <utility>

namespace corvane {

namespace {

/// A box of one space in another, around all of it.
UserBox boxThrough(const Affine& matrix, const UserBox& box) {
    UserBox through;
    if (box.empty()) {
        return through;
    }
    for (const double x : {box.left, box.right}) {
        for (const double y : {box.top, box.bottom}) {
            const Position corner = apply(matrix, {x, y});
            through.add(corner.x, corner.y);
        }
    }
    return through;
}

void addBox(UserBox& box, const UserBox& more) {
    if (!more.empty()) {
        box.add(more.left, more.top);
        box.add(more.right, more.bottom);
    }
}

ArtPlace placeBehind(Art group, Art clip) {
    return clip == Art::null ? ArtPlace{Placement::inside, group}
                             : ArtPlace{Placement::behind, clip};
}

} // namespace

void TreeReader::read(pugi::xml_node root, const Affine& toArt, const Viewport& viewport) {
    Frame frame;
    attributes_.load(root);
    frame.next = root.first_child();
    frame.holdsLayers = true;
    frame.style = styleOf(root, attributes_, {}, viewport, context_);
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

void TreeReader::readTile(pugi::xml_node pattern, Art tile, const Affine& toTile,
                          const Viewport& viewport) {
    Frame frame;
    attributes_.load(pattern);
    frame.next = pattern.first_child();
    frame.style = styleOf(pattern, attributes_, {}, viewport, context_);
    frame.matrix = toTile;
    frame.viewport = viewport;
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
        if (node.type() == pugi::node_element) {
            visit(node);
        }
    }
}

void TreeReader::visit(pugi::xml_node node) {
    current_ = node;
    if ((inTile_ || !targets_.empty()) && ++context_.expanded > context_.budget.expandedElements) {
        throw SvgError("elements that are used again and again make too many");
    }
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
        enterViewport(node, element);
        return;
    case Element::symbol:
        if (frames_.back().isUse) {
            enterViewport(node, element);
        }
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
    attributes_.load(node);
    Frame& outer = frames_.back();
    closeShared(outer, 0);
    Frame frame;
    frame.next = node.first_child();
    frame.style = styleOf(node, attributes_, outer.style, outer.viewport, context_);
    frame.matrix = transformed(outer.matrix, attributes_, Attribute::transform, context_);
    frame.viewport = outer.viewport;
    frame.group = outer.group;
    frame.clip = outer.clip;
    frame.visible = outer.visible;
    frame.measured = outer.measured;
    frame.boxed = outer.boxed;
    return frame;
}

void TreeReader::push(Frame frame) {
    if (frames_.size() >= context_.budget.nesting) {
        throw SvgError("elements are nested too deeply");
    }
    frames_.push_back(std::move(frame));
}

void TreeReader::leave() {
    Frame& frame = frames_.back();
    closeShared(frame, 0);
    if (holdsNothing(frame)) {
        document_.dispose(frame.made);
    } else {
        makeBoxClips(frame);
        makeLateClip(frame);
    }
    if (frame.isUse) {
        targets_.pop_back();
    }
    const Extent content = frame.content.within(frame.clipBounds);
    const UserBox box = frame.box;
    frames_.pop_back();
    if (!frames_.empty()) {
        frames_.back().content.add(content);
        addBox(frames_.back().box, box);
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

void TreeReader::enterLayer(Frame& frame) {
    frame.group = layers_.add(layerProperties(attributes_, frame.style.displayed));
    frame.clip = Art::null;
    openGroups(frame, frame.group);
}

void TreeReader::enterGroup(pugi::xml_node node) {
    Frame frame = frameOf(node);
    if (attributes_.has(Attribute::dataClip)) {
        frame.late.kind = LateClip::Kind::unseen;
        frame.late.data = attributes_[Attribute::dataClip];
        frame.late.rule = attributes_[Attribute::dataClipRule] == "evenodd" ? FillRule::evenOdd
                                                                            : FillRule::nonzero;
        frame.late.matrix = frame.matrix;
        frame.measured = true;
    }
    if (LayerReader::isLayer(attributes_)) {
        if (frames_.back().holdsLayers) {
            enterLayer(frame);
            push(std::move(frame));
            return;
        }
        context_.tally.add("layer within a layer");
    }
    if (frame.style.clipPath.empty() && wrapsLayers(node)) {
        frame.holdsLayers = true;
        push(std::move(frame));
        return;
    }
    // Of ours, a group that nothing is seen of is not displayed.
    const bool mayBeBlank = context_.ours && !frame.style.clipPath.empty();
    if (!mayBeBlank && isHidden(frame)) {
        return;
    }
    openGroups(frame, Art::null);
    if (mayBeBlank && frame.clip != Art::null && !clipShape(document_, frame.clip).blank &&
        isHidden(frame)) {
        document_.dispose(frame.made);
        return;
    }
    push(std::move(frame));
}

/// The first child that this program satisfies.
void TreeReader::enterSwitch(pugi::xml_node node) {
    Frame frame = frameOf(node);
    if (isHidden(frame)) {
        return;
    }
    pugi::xml_node chosen = node.first_child();
    for (; chosen; chosen = chosen.next_sibling()) {
        if (chosen.type() != pugi::node_element) {
            continue;
        }
        bool foreign = false;
        const Element element = context_.index.elementOf(chosen, foreign);
        const Attributes attributes(chosen);
        const std::string_view language = attributes[Attribute::systemLanguage];
        if (!foreign && ignoredKind(element).empty() &&
            !attributes.has(Attribute::requiredExtensions) &&
            (language.empty() || language.find("en") != std::string_view::npos)) {
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
    frame.matrix = then({1, 0, 0, 1, lengthOf(attributes_, Attribute::x, Axis::x, lengths),
                         lengthOf(attributes_, Attribute::y, Axis::y, lengths)},
                        frame.matrix);
    frame.width = attributes_[Attribute::width];
    frame.height = attributes_[Attribute::height];
    frame.next = target;
    frame.onlyNext = true;
    frame.isUse = true;
    openGroups(frame, Art::null);
    push(std::move(frame));
    targets_.push_back(target);
}

/// A symbol, or an `svg` within the file: a viewport of its own, which clips.
void TreeReader::enterViewport(pugi::xml_node node, Element element) {
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
        const std::string_view own =
            element == Element::svg ? attributes_[name] : std::string_view{};
        const std::string_view text = used && !usedText.empty() ? usedText : own;
        return parseLength(text, axis, lengths).value_or(whole);
    };
    ViewBox area;
    if (element == Element::svg) {
        area.x = lengthOf(attributes_, Attribute::x, Axis::x, lengths);
        area.y = lengthOf(attributes_, Attribute::y, Axis::y, lengths);
    }
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
    const Affine inner =
        box ? viewBoxMatrix(*box, area, attributes_[Attribute::preserveAspectRatio])
            : Affine{1, 0, 0, 1, area.x, area.y};
    openGroups(frame, Art::null);
    frame.matrix = then(inner, frame.matrix);
    frame.viewport = box ? Viewport{box->width, box->height} : Viewport{area.width, area.height};
    push(std::move(frame));
}

// Groups and their clips

/// Makes a group for the frame, and one more for each further clip of its clip. `outermost` is the
/// first, or null to make one.
void TreeReader::openGroups(Frame& frame, Art outermost) {
    const std::vector<pugi::xml_node> chain = clips_.chain(frame.style.clipPath);
    const std::size_t count = std::max<std::size_t>(1, chain.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (i == 0 && outermost != Art::null) {
            frame.group = outermost;
        } else {
            const ArtPlace place =
                i == 0 ? placeIn(frames_.back()) : placeBehind(frame.group, frame.clip);
            frame.group = document_.make(ArtKind::group, place.placement, place.reference);
            frame.made = i == 0 ? frame.group : frame.made;
        }
        frame.clip = Art::null;
        if (i == chain.size()) {
            break;
        }
        if (ClipReader::fitsBox(chain[i])) {
            frame.boxClips.push_back({frame.group, chain[i]});
            frame.boxed = true;
            continue;
        }
        frame.clip = clips_.clip(frame.group, chain[i], frame.matrix);
        const Extent bounds = clipShape(document_, frame.clip).bounds;
        frame.visible = frame.visible.within(bounds);
        frame.clipBounds = frame.clipBounds.within(bounds);
    }
    if (frame.late.kind != LateClip::Kind::none && !chain.empty()) {
        const ArtPlace place = placeBehind(frame.group, frame.clip);
        frame.group = document_.make(ArtKind::group, place.placement, place.reference);
        frame.clip = Art::null;
    }
}

bool TreeReader::holdsNothing(const Frame& frame) const {
    return frame.made != Art::null && document_.lastChild(frame.group) == frame.clip;
}

/// The box is known in the art. Where its user space is turned, that is as near as it gets.
void TreeReader::makeBoxClips(Frame& frame) {
    if (frame.boxClips.empty()) {
        return;
    }
    const Affine& matrix = frame.matrix;
    if (matrix.b != 0 || matrix.c != 0 || matrix.a < 0 || matrix.d > 0) {
        context_.tally.add("clip-path");
    }
    const Affine turned{1, 0, 0, -1, 0, 0};
    for (const BoxClip& clip : frame.boxClips) {
        clips_.clip(clip.group, clip.clip, turned, boxThrough(turned, frame.box));
    }
}

Art TreeReader::drawLateClip(const Frame& frame) {
    const LateClip& late = frame.late;
    PathStyle style;
    style.clip = 1;
    style.rule = late.rule;
    shape_.begin({Placement::inside, frame.group}, late.matrix, context_.ours, false);
    if (late.kind == LateClip::Kind::unseen) {
        if (!readPathData(late.data, shape_)) {
            context_.tally.add("path data");
        }
    } else {
        shape_.moveTo(late.box.left, late.box.top);
        shape_.lineTo(late.box.right, late.box.top);
        shape_.lineTo(late.box.right, late.box.bottom);
        shape_.lineTo(late.box.left, late.box.bottom);
        shape_.close(false);
    }
    const Art clip = shape_.finish(false);
    forEachPath(document_, clip, [&](Art path) { document_.setStyle(path, style); });
    return clip;
}

/// A clip that the writer left undrawn because it cuts nothing is dropped where it would cut now; a
/// viewport is a clip only where it cuts.
void TreeReader::makeLateClip(Frame& frame) {
    if (frame.late.kind == LateClip::Kind::none) {
        return;
    }
    const Art clip = drawLateClip(frame);
    const ClipShape shape = clipShape(document_, clip);
    const bool cuts =
        !shape.rectangle || !shape.bounds.contains(frame.content.within(frame.visible));
    if (cuts != (frame.late.kind == LateClip::Kind::viewport)) {
        document_.dispose(clip);
        return;
    }
    document_.setClipped(frame.group, true);
    frame.clipBounds = frame.clipBounds.within(shape.bounds);
}

// Where art goes

ArtPlace TreeReader::placeIn(const Frame& frame) {
    return frame.group == Art::null ? ArtPlace{Placement::inside, layers_.loose()}
                                    : placeBehind(frame.group, frame.clip);
}

/// Takes leave of the groups of shared clips but the first `kept`.
void TreeReader::closeShared(Frame& frame, std::size_t kept) {
    while (frame.shared.size() > kept) {
        const SharedClip& last = frame.shared.back();
        if (document_.lastChild(last.group) == last.art) {
            document_.dispose(last.group);
        }
        frame.shared.pop_back();
    }
}

SharedClip TreeReader::makeShared(ArtPlace place, pugi::xml_node clip, const Affine& matrix) {
    SharedClip shared;
    shared.clip = clip;
    shared.matrix = matrix;
    shared.group = document_.make(ArtKind::group, place.placement, place.reference);
    shared.art = clips_.clip(shared.group, clip, matrix);
    const ClipShape shape = clipShape(document_, shared.art);
    shared.bounds = shape.bounds;
    shared.rectangle = shape.rectangle;
    return shared;
}

/// Where a shape goes that names clips itself: into the groups of the shape before it as far as
/// their clips are the same. A rectangle goes into another around it, since files of ours cut
/// rectangles within one another down to one.
ArtPlace TreeReader::placeClipped(const std::vector<pugi::xml_node>& chain, const Affine& matrix) {
    Frame& frame = frames_.back();
    std::vector<SharedClip>& open = frame.shared;
    std::size_t kept = 0;
    while (kept < open.size() && kept < chain.size() && open[kept].clip == chain[kept] &&
           open[kept].matrix == matrix) {
        ++kept;
    }
    const auto placeInShared = [&] {
        return open.empty() ? placeIn(frame) : placeBehind(open.back().group, open.back().art);
    };
    std::size_t next = kept;
    if (next < chain.size()) {
        const SharedClip made = makeShared(placeIn(frame), chain[next], matrix);
        if (++next == chain.size() && made.rectangle) {
            while (kept < open.size() && open[kept].rectangle &&
                   open[kept].bounds.contains(made.bounds)) {
                ++kept;
            }
        }
        closeShared(frame, kept);
        if (!open.empty()) {
            const ArtPlace place = placeInShared();
            document_.reorder(made.group, place.placement, place.reference);
        }
        open.push_back(made);
    } else {
        closeShared(frame, kept);
    }
    for (; next < chain.size(); ++next) {
        open.push_back(makeShared(placeInShared(), chain[next], matrix));
    }
    return placeInShared();
}

/// Groups for a shape alone, of which one clip at least fits its box.
ArtPlace TreeReader::openBoxed(const std::vector<pugi::xml_node>& chain, const Affine& matrix,
                               std::vector<BoxClip>& clips) {
    closeShared(frames_.back(), 0);
    ArtPlace place = placeIn(frames_.back());
    for (const pugi::xml_node clip : chain) {
        const Art group = document_.make(ArtKind::group, place.placement, place.reference);
        place = {Placement::inside, group};
        if (ClipReader::fitsBox(clip)) {
            clips.push_back({group, clip});
        } else {
            place = placeBehind(group, clips_.clip(group, clip, matrix));
        }
    }
    return place;
}

// Shapes

/// The note that a shape's description is. Animations and their like are counted.
Note TreeReader::readWithin(pugi::xml_node shape) {
    Note note = Note::null;
    for (const pugi::xml_node child : shape.children()) {
        if (child.type() != pugi::node_element) {
            continue;
        }
        bool foreign = false;
        const Element element = context_.index.elementOf(child, foreign);
        if (element == Element::desc) {
            std::string text;
            for (const pugi::xml_node part : child.children()) {
                text += part.value();
            }
            note = text.empty() ? note : document_.addNote(std::move(text));
        } else if (!foreign && !ignoredKind(element).empty()) {
            context_.tally.add(ignoredKind(element));
        }
    }
    return note;
}

void TreeReader::readShape(pugi::xml_node node, Element element) {
    Frame& frame = frames_.back();
    attributes_.load(node);
    const ComputedStyle style = styleOf(node, attributes_, frame.style, frame.viewport, context_);
    const Note note = node.first_child() ? readWithin(node) : Note::null;
    if (!style.displayed || !style.visible) {
        context_.tally.add("hidden element");
        return;
    }
    const Affine matrix = transformed(frame.matrix, attributes_, Attribute::transform, context_);
    const std::vector<pugi::xml_node> chain = clips_.chain(style.clipPath);
    const bool fitsBox = std::ranges::any_of(chain, ClipReader::fitsBox);
    std::vector<BoxClip> boxClips;
    const ArtPlace place =
        fitsBox ? openBoxed(chain, matrix, boxClips) : placeClipped(chain, matrix);
    const bool measures = fitsBox || frame.boxed || style.fill.kind == PaintValue::Kind::server ||
                          style.stroke.kind == PaintValue::Kind::server;
    shape_.begin(place, matrix, context_.ours, measures);
    const LengthContext lengths{frame.viewport, style.fontSize};
    if (!drawShape(element, attributes_, lengths, shape_, context_.tally)) {
        return;
    }
    const Art shape = shape_.finish(attributes_.isTrue(Attribute::dataCompound));
    for (const BoxClip& clip : boxClips) {
        clips_.clip(clip.group, clip.clip, matrix, shape_.box());
    }
    stylePaths(shape, style, matrix, lengths, note);
    if (frame.boxed) {
        addBox(frame.box, boxThrough(matrix, shape_.box()));
    }
    if (frame.measured) {
        Extent painted = paintedExtent(document_, shape);
        for (const SharedClip& clip : frame.shared) {
            painted = painted.within(clip.bounds);
        }
        frame.content.add(painted);
    }
}

void TreeReader::stylePaths(Art shape, const ComputedStyle& style, const Affine& matrix,
                            const LengthContext& lengths, Note note) {
    PathStyle painted = paintedStyle(style, attributes_, matrix, context_.tally);
    paints_.paint(painted, style, {matrix, shape_.box(), lengths});
    painted.note = note;
    const bool guide = attributes_.isTrue(Attribute::dataGuide) && painted.fillPaint == 0 &&
                       painted.strokePaint == 0;
    forEachPath(document_, shape, [&](Art path) {
        document_.setStyle(path, painted);
        document_.setGuide(path, guide);
    });
}

} // namespace corvane
