// Shapes and text of the art.
#include "app/artwork/geometry/path_walk.h"
#include "app/svg/read/tree/tree_reader.h"

#include "app/artwork/geometry/arithmetic.h"
#include "app/svg/art_source.h"
#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/paint/paint_style.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/text/text_reader.h"
#include "app/svg/read/values/fixed_number.h"
#include "app/svg/read/values/path_length.h"
#include "app/svg/read/values/user_box.h"
#include "app/svg/shape_extent.h"

#include <algorithm>
#include <string>
#include <utility>

namespace corvane {

/// The note that a shape's description is. Animations and their like are counted.
Note TreeReader::readWithin(pugi::xml_node shape) {
    Note note = Note::null;
    for (const pugi::xml_node child : shape.children()) {
        countAgain(1);
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

/// What a file of ours says of where art came from; in other files it means nothing.
std::optional<ArtSource> TreeReader::sourceFrom(Attribute name) const {
    return context_.ours ? parseArtSource(attributes_[name], context_.sourceBase) : std::nullopt;
}

/// Editors may drop `data-` attributes and keep ids.
std::optional<ArtSource> TreeReader::sourceOfShape() const {
    const std::optional<ArtSource> source = sourceFrom(Attribute::dataSource);
    const bool hasId = context_.ours && !inTile_ && !attributes_.has(Attribute::dataSource);
    return source || !hasId ? source : sourceOfId(attributes_[Attribute::id]);
}

void TreeReader::setSource(Art art, const std::optional<ArtSource>& source) {
    if (source) {
        document_.setSource(art, *source);
    }
}

void TreeReader::readShape(pugi::xml_node node, Element element) {
    Frame& frame = frames_.back();
    load(node);
    ComputedStyle style = styleOf(node, attributes_, frame.style, frame.viewport, context_);
    if (context_.ours && attributes_.isTrue(Attribute::dataGround)) {
        return; // the light behind a mask, which its number says
    }
    const Note note = node.first_child() ? readWithin(node) : Note::null;
    if (!style.displayed || !style.visible) {
        context_.tally.add("hidden element");
        return;
    }
    resolveContext(style);
    const LengthContext lengths{frame.viewport, style.fontSize};
    const RealMatrix matrix = transformed(frame.matrix, style, lengths, context_);
    const std::vector<pugi::xml_node> chain = clips_.chain(style.clipPath);
    const bool fitsBox = std::ranges::any_of(chain, ClipReader::fitsBox);
    std::vector<BoxClip> boxClips;
    const ArtPlace place =
        fitsBox ? openBoxed(chain, matrix, boxClips) : placeClipped(chain, matrix);
    const bool isCoated = hasCoats(style, element);
    const bool measures = isCoated || fitsBox || frame.boxed || masks_.fitsBox(style.mask) ||
                          style.fill.kind == PaintValue::Kind::server ||
                          style.stroke.kind == PaintValue::Kind::server;
    const ShapeUse use{element, style, matrix, lengths, note, measures};
    const Art shape = isCoated ? drawCoats(place, use) : drawPaths(place, use, nullptr);
    if (shape == Art::null) {
        return;
    }
    for (const BoxClip& clip : boxClips) {
        clips_.clip(clip.group, clip.clip, matrix, frame.viewport, shape_.box());
    }
    if (frame.boxed) {
        frame.box.add(boxThrough(matrix, shape_.box()));
    }
    if (isCoated) {
        measure(Extent::everything()); // markers reach anywhere
        return;
    }
    if (context_.ours && attributes_.has(Attribute::dataKept) && keepFrame(shape, style, matrix)) {
        return;
    }
    stylePaths(shape, use);
    setSource(shape, sourceOfShape());
    setShapeLook(shape, style, matrix);
    if (frame.measured) {
        measure(paintedExtent(document_, shape));
    }
}

/// Null where nothing is drawn because a size is 0 or missing.
Art TreeReader::drawPaths(ArtPlace place, const ShapeUse& use, VertexTrace* trace) {
    shape_.begin(place, use.matrix, context_.ours, use.measures);
    if (trace != nullptr) {
        shape_.follow(*trace);
    }
    if (!context_.ours && use.style.cap != 0 && use.style.stroke.kind != PaintValue::Kind::none) {
        shape_.stretchPoints();
    }
    if (!drawShape(use.element, attributes_, use.lengths, shape_, context_.tally)) {
        return Art::null;
    }
    return shape_.finish(attributes_.isTrue(Attribute::dataCompound));
}

/// Adds what is painted to what the clips around it are held against.
void TreeReader::measure(Extent painted) {
    Frame& frame = frames_.back();
    for (const SharedClip& clip : frame.shared) {
        painted = painted.within(clip.bounds);
    }
    frame.content.add(painted);
}

void TreeReader::readText(pugi::xml_node node) {
    Frame& frame = frames_.back();
    load(node);
    ComputedStyle style = styleOf(node, attributes_, frame.style, frame.viewport, context_);
    if (!style.displayed || !style.visible) {
        context_.tally.add("hidden element");
        return;
    }
    resolveContext(style);
    if (hasCoats(style, Element::text)) {
        context_.tally.add("paint-order"); // letters are one object, filled and then stroked
    }
    const RealMatrix matrix =
        transformed(frame.matrix, style, {frame.viewport, style.fontSize}, context_);
    std::vector<pugi::xml_node> chain = clips_.chain(style.clipPath);
    if (std::erase_if(chain, ClipReader::fitsBox) != 0 || frame.boxed) {
        context_.tally.add("clip-path"); // how far letters reach is not known
    }
    const bool isColumn = context_.ours && attributes_.isTrue(Attribute::dataColumn);
    const ElementLook look = lookOfChild(style, matrix);
    if (masks_.fitsBox(look.mask)) {
        context_.tally.add("mask"); // in the same way
    }
    const ArtPlace place = placeClipped(chain, matrix);
    const LineFrame line{place, matrix, style.vertical || isColumn, isColumn,
                         appearanceOf(look, {})};
    TextReader reader(context_, paints_, line, frame.viewport, inTile_ || !targets_.empty(),
                      !inTile_);
    if (reader.read(node, attributes_, style)) {
        frame.content.add(Extent::everything());
    }
}

namespace {

/// Stretches dashes to the length that the shape is said to have.
void fitDashes(PathStyle& style, double stretch) {
    for (Fixed& dash : style.dash) {
        dash = saturate(wideFixed(static_cast<double>(dash) / fixedOne * stretch));
    }
    style.dashPhase =
        saturate(wideFixed(static_cast<double>(style.dashPhase) / fixedOne * stretch));
}

} // namespace

void TreeReader::stylePaths(Art shape, const ShapeUse& use) {
    PathStyle painted = paintedStyle(use.style, attributes_, use.matrix, context_);
    const PaintUse own{use.matrix, shape_.box(), use.lengths};
    paints_.paint(painted, use.style, own,
                  contexts_.empty() ? own : contexts_.back().use.value_or(own));
    if (painted.dashCount > 0 && attributes_.has(Attribute::pathLength)) {
        const double said = lengthOf(attributes_, Attribute::pathLength, Axis::other, use.lengths);
        const double unit = use.style.keepsWidth ? context_.pixel : meanStretch(use.matrix);
        if (said > 0) {
            fitDashes(painted, lengthOf(document_, shape) / (said * unit));
        }
    }
    painted.note = use.note;
    const bool guide = attributes_.isTrue(Attribute::dataGuide) && painted.fillPaint == 0 &&
                       painted.strokePaint == 0;
    forEachPath(document_, shape, [&](Art path) {
        document_.setStyle(path, painted);
        document_.setGuide(path, guide);
    });
}

} // namespace corvane
