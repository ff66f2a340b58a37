// Images, and the frames that stand for images.
#include "app/svg/read/tree/tree_reader.h"

#include "app/artwork/geometry/geometry.h"
#include "app/artwork/geometry/path_walk.h"
#include "app/svg/image_writer.h"
#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/style/conditions.h"
#include "app/svg/read/values/fixed_number.h"
#include "app/svg/read/values/view_box.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {

namespace {

/// From the unit square of what is seen to that of the file (Exif 2.3, 4.6.4): both have their
/// first row at y = 1.
RealMatrix turned(Orientation orientation) {
    switch (orientation) {
    case 2:
        return {-1, 0, 0, 1, 1, 0};
    case 3:
        return {-1, 0, 0, -1, 1, 1};
    case 4:
        return {1, 0, 0, -1, 0, 1};
    case 5:
        return {0, -1, -1, 0, 1, 1};
    case 6:
        return {0, -1, 1, 0, 0, 1};
    case 7:
        return {0, 1, 1, 0, 0, 0};
    case 8:
        return {0, 1, -1, 0, 1, 0};
    default:
        return {};
    }
}

/// Numbers of ours, written in decimal, as the 16.16 numbers that they were.
RealMatrix rounded(const RealMatrix& matrix) {
    const auto round = [](double number) { return std::nearbyint(number * fixedOne) / fixedOne; };
    return {round(matrix.a), round(matrix.b),  round(matrix.c),
            round(matrix.d), round(matrix.tx), round(matrix.ty)};
}

bool isInRange(const RealMatrix& matrix) {
    const std::array numbers{matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty};
    return std::ranges::all_of(numbers, [](double number) { return fitsFixed(wideFixed(number)); });
}

/// Where an image lies in its user space.
struct ImageArea {
    ViewBox area;
    RealMatrix matrix; ///< from the unit square there
    bool overhangs = false;
    bool isUnit = false; ///< as we write it
};

/// A size that is missing, or negative, follows from the other one, or is that of the image.
ViewBox areaOf(const Attributes& attributes, const LengthContext& lengths, double width,
               double height) {
    const auto side = [&](Attribute name, Axis axis) {
        const auto length = parseLength(attributes[name], axis, lengths);
        return length && *length < 0 ? std::nullopt : length;
    };
    const auto wide = side(Attribute::width, Axis::x);
    const auto high = side(Attribute::height, Axis::y);
    ViewBox area;
    area.x = lengthOf(attributes, Attribute::x, Axis::x, lengths);
    area.y = lengthOf(attributes, Attribute::y, Axis::y, lengths);
    area.width = wide ? *wide : high ? *high * width / height : width;
    area.height = high ? *high : wide ? *wide * height / width : height;
    return area;
}

ImageArea placeInArea(const ViewBox& area, double width, double height, std::string_view aspect) {
    ImageArea placed{.area = area,
                     .matrix = {area.width, 0, 0, -area.height, area.x, area.y + area.height}};
    if (stretches(aspect)) {
        placed.isUnit = area.x == 0 && area.y == 0 && area.width == 1 && area.height == 1;
        return placed;
    }
    const RealMatrix pixels = viewBoxMatrix({0, 0, width, height}, area, aspect);
    placed.matrix = multiply({width, 0, 0, -height, 0, height}, pixels);
    constexpr double nothing = 1e-6; // of a rounding error, in sizes of the area
    placed.overhangs = slices(aspect) && (placed.matrix.a > area.width * (1 + nothing) ||
                                          -placed.matrix.d > area.height * (1 + nothing));
    return placed;
}

} // namespace

void TreeReader::readImage(pugi::xml_node node) {
    load(node);
    const Frame& frame = frames_.back();
    Tally counted; // below, where the image is read
    const ComputedStyle style = computeStyle(frame.style, cascade(node, attributes_, context_),
                                             attributes_, frame.viewport, counted);
    const bool isUnseen = style.transparent && !context_.holdsAppearance;
    if (!style.displayed || !style.visible || isUnseen || !isForUs(attributes_)) {
        context_.tally.add("hidden element");
        return;
    }
    const std::string_view mark =
        context_.ours ? attributes_[Attribute::dataImage] : std::string_view();
    const auto image = context_.loader.load(trimmed(attributes_[Attribute::href]), mark);
    if (image) {
        placeImage(*image, styleOf(node, attributes_, frame.style, frame.viewport, context_));
    } else {
        listImage(style);
    }
}

void TreeReader::placeImage(const LoadedImage& image, const ComputedStyle& style) {
    Frame& frame = frames_.back();
    const LengthContext lengths{frame.viewport, style.fontSize};
    const Orientation orientation = style.turnsImages ? image.orientation : upright;
    constexpr Orientation firstAcross = 5; // width and height change places
    const double width = orientation < firstAcross ? image.width : image.height;
    const double height = orientation < firstAcross ? image.height : image.width;
    const ViewBox area = areaOf(attributes_, lengths, width, height);
    if (!(area.width > 0 && area.height > 0)) {
        return; // nothing is drawn in no area
    }
    const ImageArea placed =
        placeInArea(area, width, height, attributes_[Attribute::preserveAspectRatio]);
    RealMatrix own = transformed({}, style, lengths, context_);
    if (context_.ours && placed.isUnit) {
        own = rounded(own);
    }
    const RealMatrix matrix = multiply(own, frame.matrix);
    UserBox box;
    box.add(area.x, area.y);
    box.add(area.x + area.width, area.y + area.height);

    const std::vector<pugi::xml_node> chain = clips_.chain(style.clipPath);
    std::vector<BoxClip> boxClips;
    const bool fitsBox = std::ranges::any_of(chain, ClipReader::fitsBox);
    ArtPlace place = fitsBox ? openBoxed(chain, matrix, boxClips) : placeClipped(chain, matrix);
    if (placed.overhangs && !style.overflows) {
        place = clipOverhang(place, box, matrix);
    }
    const RealMatrix toArt = multiply(multiply(turned(orientation), placed.matrix), matrix);
    if (!isInRange(toArt)) {
        context_.tally.add("coordinate out of range");
    }
    const Art art = document_.make(ArtKind::placed, place.placement, place.reference);
    const bool isSmooth = style.smoothImages && !hidesSquares();
    document_.setPlacedImage(art, {image.image, fixedMatrix(toArt), isSmooth});
    linkFile(art);
    setSource(art, sourceOfShape());
    setLook(art, lookOfChild(style, matrix), box);
    for (const BoxClip& clip : boxClips) {
        clips_.clip(clip.group, clip.clip, matrix, frame.viewport, box);
    }
    if (frame.boxed) {
        frame.box.add(boxThrough(matrix, box));
    }
    measure(placedExtent(document_, art));
}

/// Whether the image is one of squares that are too small to be shown.
bool TreeReader::hidesSquares() const {
    return context_.ours && attributes_.has(Attribute::dataImageRendering) &&
           !attributes_.has(Attribute::imageRendering);
}

/// To the file that the element names, if it does.
void TreeReader::linkFile(Art placed) {
    if (context_.ours && attributes_.has(Attribute::dataEpsf)) {
        context_.loader.link(placed, trimmed(attributes_[Attribute::dataEpsf]));
    }
}

/// A group that shows what lies within the box.
ArtPlace TreeReader::clipOverhang(ArtPlace place, const UserBox& box, const RealMatrix& matrix) {
    const Art group = document_.make(ArtKind::group, place.placement, place.reference);
    shape_.begin({Placement::inside, group}, matrix, context_.ours, false);
    shape_.moveTo(box.left, box.top);
    shape_.lineTo(box.right, box.top);
    shape_.lineTo(box.right, box.bottom);
    shape_.lineTo(box.left, box.bottom);
    shape_.close(false);
    const Art clip = shape_.finish(false);
    PathStyle style;
    style.clip = 1;
    document_.setStyle(clip, style);
    document_.setClipped(group, true);
    return {Placement::behind, clip};
}

void TreeReader::listImage(const ComputedStyle& style) {
    const Frame& frame = frames_.back();
    context_.tally.add("image");
    const LengthContext lengths{frame.viewport, style.fontSize};
    const std::string_view href = trimmed(attributes_[Attribute::href]);
    SvgImage& image = context_.images.emplace_back();
    image.id = attributes_[Attribute::id];
    image.embedded = href.starts_with("data:");
    image.href = image.embedded ? href.substr(0, href.find(',')) : href;
    image.x = lengthOf(attributes_, Attribute::x, Axis::x, lengths);
    image.y = lengthOf(attributes_, Attribute::y, Axis::y, lengths);
    image.width = lengthOf(attributes_, Attribute::width, Axis::x, lengths);
    image.height = lengthOf(attributes_, Attribute::height, Axis::y, lengths);
    image.matrix = transformed(frame.matrix, style, lengths, context_);
}

/// Makes a placed object of the frame that stands for it; false, and nothing done, where the path
/// is no such frame any more.
bool TreeReader::keepFrame(Art shape, const ComputedStyle& style, const RealMatrix& userSpace) {
    const Art square =
        document_.kind(shape) == ArtKind::compound ? document_.lastChild(shape) : Art::null;
    constexpr std::int32_t corners = 4;
    if (square == Art::null || document_.segments(square).size() != corners) {
        return false;
    }
    const Image image = context_.loader.loadKept(attributes_[Attribute::dataKept]);
    if (image == Image::null) {
        return false;
    }
    const auto corner = [&](std::int32_t number) {
        return realPoint(document_.segments(square)[number].anchor);
    };
    const RealPoint origin = corner(0);
    const RealPoint right = corner(1);
    const RealPoint up = corner(3);
    const RealMatrix matrix{right.x - origin.x, right.y - origin.y, up.x - origin.x,
                            up.y - origin.y,    origin.x,           origin.y};
    const Art art = document_.make(ArtKind::placed, Placement::inFront, shape);
    document_.dispose(shape);
    document_.setPlacedImage(art, {image, fixedMatrix(matrix), style.smoothImages});
    linkFile(art);
    setSource(art, sourceOfShape());
    setLook(art, lookOf(style, userSpace, frames_.back().viewport), {});
    measure(placedExtent(document_, art));
    return true;
}

} // namespace corvane
