#include "app/svg/read/mask_reader.h"

#include "app/artwork/geometry/path_walk.h"
#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/clip_reader.h"
#include "app/svg/read/paint/gradient_reader.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/tree/tree_reader.h"
#include "app/svg/read/values/number.h"
#include "app/svg/shape_extent.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace corvane {

namespace {

/// A mask costs about as much as so many elements.
constexpr std::int64_t maskCost = 10;

std::string_view valueOf(pugi::xml_node node, const char* name, std::string_view fallback) {
    const std::string_view value = node.attribute(name).value();
    return value.empty() ? fallback : value;
}

bool hasBoxUnits(pugi::xml_node node) {
    return valueOf(node, "maskUnits", "objectBoundingBox") != "userSpaceOnUse" ||
           valueOf(node, "maskContentUnits", "userSpaceOnUse") == "objectBoundingBox";
}

/// The light of a colour as masks count it, without regard to how PDF weighs colours.
double lightOf(const Colour& colour) {
    const ScreenColour seen = screenColour(colour);
    return (.2125 * seen.red + .7154 * seen.green + .0721 * seen.blue) / 255;
}

/// What is seen of inks with names; other colours are themselves.
Colour withoutInks(const Document& document, const Colour& colour) {
    switch (colour.kind) {
    case ColourKind::custom:
        return standIn(document.spotColour(colour.source), colour.component[0]);
    case ColourKind::inks:
        return document.inkMixture(colour.source).seen;
    default:
        return colour;
    }
}

void grayColour(const Document& document, Colour& colour) {
    colour = withoutInks(document, colour);
    if (colour.kind == ColourKind::process) {
        const double light = lightOf(colour);
        colour = Colour();
        colour.component[0] = static_cast<Fixed>(std::lround((1 - light) * fixedOne));
    }
}

PathStyle grayed(const Document& document, PathStyle style) {
    grayColour(document, style.fill);
    grayColour(document, style.stroke);
    return style;
}

std::vector<double> numbersIn(std::string_view text) {
    std::vector<double> numbers;
    TextCursor cursor(text);
    double number = 0;
    for (cursor.skipBlanks(); cursor.number(number); cursor.skipSeparator()) {
        numbers.push_back(std::clamp(number, 0.0, 1.0));
    }
    return numbers;
}

/// The child of a mask of ours that changes the light of all in it.
pugi::xml_node transferIn(pugi::xml_node mask) {
    return mask.find_child(
        [](pugi::xml_node child) { return static_cast<bool>(child.attribute("data-transfer")); });
}

} // namespace

bool MaskReader::fitsBox(std::string_view id) const {
    return !id.empty() && hasBoxUnits(context_.index.find(id));
}

SoftMask MaskReader::read(std::string_view id, const MaskUse& use) {
    const pugi::xml_node node = context_.index.find(id);
    if (context_.index.elementOf(node) != Element::mask) {
        context_.tally.add("mask");
        return SoftMask::null;
    }
    if (!context_.mayEnter(node)) {
        context_.tally.add("circular reference");
        return SoftMask::null;
    }
    const auto known = context_.masks.find(node.hash_value());
    if (known != context_.masks.end() && known->second.toArt == use.toArt &&
        known->second.viewport.width == use.viewport.width &&
        known->second.viewport.height == use.viewport.height) {
        return known->second.mask;
    }
    const SoftMask mask = make(node, use);
    if (!hasBoxUnits(node)) {
        context_.masks[node.hash_value()] = {use.toArt, use.viewport, mask};
    }
    return mask;
}

SoftMask MaskReader::make(pugi::xml_node node, const MaskUse& use) {
    context_.expand(maskCost);
    const ActiveElement active(context_, node);
    Document& document = context_.document;
    const Attributes attributes(node);
    const ComputedStyle style =
        styleOf(node, attributes, context_.inherited.within(node.parent(), context_), use.viewport,
                context_);
    if (style.linearLight && !style.masksByAlpha) {
        context_.tally.add("color-interpolation");
    }
    MaskFacts facts;
    facts.content = document.makeArtwork();
    facts.isLuminosity = !style.masksByAlpha;
    RealMatrix toContent = use.toArt;
    Viewport viewport = use.viewport;
    std::optional<RealMatrix> box = RealMatrix();
    if (attributes[Attribute::maskContentUnits] == "objectBoundingBox") {
        box = boxMatrix(use.box);
        toContent = multiply(box.value_or(RealMatrix()), use.toArt);
        viewport = {1, 1};
    }
    std::vector<double> transfer;
    pugi::xml_node holder = node;
    if (context_.ours) {
        TextCursor(attributes[Attribute::dataBackdrop]).number(facts.backdrop);
        facts.backdrop = std::clamp(facts.backdrop, 0.0, 1.0);
        if (const pugi::xml_node changed = transferIn(node)) {
            holder = changed;
            transfer = numbersIn(changed.attribute("data-transfer").value());
        }
    }
    if (transfer.size() > 1) {
        facts.transfer = transfer;
    }
    if (box) {
        TreeReader(context_).readTile(holder, openContent(facts.content, style, use), toContent,
                                      viewport);
    }
    clip(facts.content, attributes, use);
    if (!context_.ours && facts.isLuminosity) {
        grayOut(facts.content);
    }
    return document.addMask(facts);
}

/// The group that a mask's elements go into: the content itself, or one that is cut and masked as
/// the mask is.
Art MaskReader::openContent(Art content, const ComputedStyle& style, const MaskUse& use) {
    Document& document = context_.document;
    ClipReader clips(context_, paints_);
    Art group = content;
    for (const pugi::xml_node clip : clips.chain(style.clipPath)) {
        const Art cut = document.make(ArtKind::group, Placement::inside, group);
        const Art path = clips.clip(cut, clip, use.toArt, use.viewport, use.box);
        group = document.make(ArtKind::group, Placement::behind, path);
    }
    if (!style.mask.empty()) {
        group = document.make(ArtKind::group, Placement::inside, group);
        Appearance masked;
        masked.mask = read(style.mask, use);
        document.setAppearance(group, masked);
    }
    return group;
}

/// To the region of the mask, beyond which nothing is seen; that lies beyond the page in files of
/// ours.
void MaskReader::clip(Art content, const Attributes& attributes, const MaskUse& use) {
    Document& document = context_.document;
    LengthContext lengths{use.viewport, 0};
    RealMatrix units;
    if (attributes[Attribute::maskUnits] != "userSpaceOnUse") {
        lengths.viewport = {1, 1};
        units = boxMatrix(use.box).value_or(RealMatrix{0, 0, 0, 0, 0, 0});
    }
    const auto length = [&](Attribute name, Axis axis, std::string_view fallback) {
        const std::string_view text = attributes.has(name) ? attributes[name] : fallback;
        return parseLength(text, axis, lengths)
            .value_or(parseLength(fallback, axis, lengths).value_or(0));
    };
    const double left = length(Attribute::x, Axis::x, "-10%");
    const double top = length(Attribute::y, Axis::y, "-10%");
    const double right = left + std::max(0.0, length(Attribute::width, Axis::x, "120%"));
    const double bottom = top + std::max(0.0, length(Attribute::height, Axis::y, "120%"));
    ShapeBuilder shape(document, context_.tally);
    shape.begin({Placement::inside, content}, multiply(units, use.toArt), context_.ours, false);
    shape.moveTo(left, top);
    shape.lineTo(right, top);
    shape.lineTo(right, bottom);
    shape.lineTo(left, bottom);
    shape.close(false);
    const Art path = shape.finish(false);
    const ClipShape region = clipShape(document, path);
    const Rect& page = document.page().bounds();
    if (region.rectangle &&
        region.bounds.contains({page.left, page.bottom, page.right, page.top})) {
        document.dispose(path);
        return;
    }
    PathStyle style;
    style.clip = 1;
    document.setStyle(path, style);
    document.setClipped(content, true);
}

/// Colours become grays of the same light. Where they are laid over each other that stays so.
void MaskReader::grayOut(Art content) {
    Document& document = context_.document;
    for (Art art = content; art != Art::null; art = following(document, art, content)) {
        if (document.kind(art) == ArtKind::path) {
            document.setStyle(art, grayed(document, document.style(art)));
        } else if (document.kind(art) == ArtKind::text) {
            for (std::int32_t run = 0; run < document.textRunCount(art); ++run) {
                document.setTextRunStyle(art, run,
                                         grayed(document, document.textRun(art, run).style));
            }
        }
    }
}

} // namespace corvane
