#include "reader/image/image_form.h"

#include "reader/paint/colour_space_cache.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

using Kind = ColourSpace::Kind;

ColourSpacePointer deviceSpace(std::int32_t components) {
    ColourSpacePointer space = deviceColourSpace(components);
    if (space == nullptr) {
        failException(Exception::range);
    }
    return space;
}

/// Components of colour by what a JPX file says of itself.
std::uint32_t statedColours(const JpxHeader& header) {
    const std::uint32_t stated = header.space == JpxColours::gray   ? 1
                                 : header.space == JpxColours::rgb  ? 3
                                 : header.space == JpxColours::cmyk ? 4
                                                                    : 0;
    if (stated != 0 && stated <= header.colours) {
        return stated;
    }
    return header.colours == 2 ? 1 : header.colours;
}

std::int32_t sideOf(const ImageEntries& entries, ImageKey key) {
    const std::int32_t side = entries.integer(key).value_or(0);
    if (side <= 0) {
        failException(Exception::range);
    }
    return side;
}

} // namespace

std::pair<double, double> ImageForm::usualDecode(std::size_t component) const {
    if (space->kind == Kind::indexed) {
        return {0.0, std::ldexp(1.0, bits) - 1};
    }
    if (space->kind == Kind::lab) {
        const double(&range)[4] = space->range;
        return component == 0   ? std::pair(0.0, 100.0)
               : component == 1 ? std::pair(range[0], range[1])
                                : std::pair(range[2], range[3]);
    }
    return {0.0, 1.0};
}

bool ImageForm::isUsualDecode() const {
    for (std::size_t i = 0; i + 1 < decode.size(); i += 2) {
        if (std::pair(decode[i], decode[i + 1]) != usualDecode(i / 2)) {
            return false;
        }
    }
    return true;
}

LookedImage::LookedImage(DocumentCache& cache, const Object& object,
                         std::optional<std::span<const std::byte>> data)
    : entries(cache, object), coded(entries, data) {
    form.isStencil = entries.boolean(imageKey::isMask);
    form.width = sideOf(entries, imageKey::width);
    form.height = sideOf(entries, imageKey::height);
    const bool isFaxed = coded.codec() == ImageCodec::fax || coded.codec() == ImageCodec::jbig2;
    form.bits = form.isStencil || isFaxed ? 1 : entries.integer(imageKey::bits).value_or(8);
    if (coded.codec() == ImageCodec::dct) {
        lookAtJpeg();
    } else if (coded.codec() == ImageCodec::jpx) {
        lookAtJpx();
    } else {
        (void)coded.open(); // raises where a filter is not known
    }
    readSpace();
    form.decode = entries.numbers(imageKey::decode);
    if (form.decode.size() < 2 * static_cast<std::size_t>(form.components())) {
        form.decode.clear();
    }
    form.decode.resize(
        std::min(form.decode.size(), 2 * static_cast<std::size_t>(form.components())));
    const bool isSane =
        form.bits == 1 || form.bits == 2 || form.bits == 4 || form.bits == 8 || form.bits == 16;
    if (!isSane) {
        failException(Exception::range);
    }
}

/// The file's own size counts: it is what browsers show.
void LookedImage::lookAtJpeg() {
    const Chain chain = coded.open();
    jpeg = readJpegLead([&](std::span<std::byte> block) { return readFilter(*chain.top(), block); },
                        static_cast<std::size_t>(budget::jpegLeadBytes));
    const std::optional<JpegFrame>& frame = jpeg->frame;
    if (!frame || frame->width == 0 || frame->height == 0 || frame->components == 0 ||
        frame->components > 4) {
        failException(Exception::codec);
    }
    form.width = frame->width;
    form.height = frame->height;
    form.bits = 8;
    form.isStencil = false;
    dctTransform = frame->components == 3 && jpeg->isYccAlone() ? 1 : 0;
    if (typeObject(coded.codecParameters()) == ObjectType::dictionary) {
        const ObjectOwner stated =
            lookupObject(entries.cache(), coded.codecParameters(), "ColorTransform");
        if (typeObject(stated.get()) == ObjectType::integer) {
            dctTransform = integerObject(stated.get()) != 0 ? 1 : 0;
        }
    }
}

void LookedImage::lookAtJpx() {
    held = coded.read();
    const ColourSpacePointer space = namedSpace();
    keepsPalette = space != nullptr && space->kind == Kind::indexed;
    jpx = readJpxHeader(held.bytes, keepsPalette);
    if (!jpx) {
        failException(Exception::codec);
    }
    form.width = static_cast<std::int32_t>(jpx->width);
    form.height = static_cast<std::int32_t>(jpx->height);
    form.bits = jpx->bits > 8 ? 16 : 8;
    form.isStencil = false;
}

/// What the dictionary says, null for none and for one that is not known.
ColourSpacePointer LookedImage::namedSpace() const {
    const Object space = entries.raw(imageKey::space);
    ColourSpacePointer known;
    attempted([&] {
        const ObjectOwner value = resolveObject(entries.cache(), space);
        if (typeObject(value.get()) == ObjectType::literal) {
            known =
                colourSpacesOf(entries.cache()).find(entries.cache(), literalObject(value.get()));
        } else if (typeObject(value.get()) != ObjectType::null) {
            known = readColourSpace(entries.cache(), space);
        }
    });
    return known != nullptr && known->components > 0 ? known : nullptr;
}

/// The dictionary's space where the data have as many components, else one by their number.
void LookedImage::readSpace() {
    if (form.isStencil) {
        form.space = deviceSpace(1);
        return;
    }
    form.space = namedSpace();
    std::int32_t components = 0;
    if (jpeg) {
        components = jpeg->frame->components;
    } else if (jpx) {
        // One component more than colours, of which nothing is said, is no colour.
        const std::uint32_t wanted = form.space != nullptr
                                         ? static_cast<std::uint32_t>(form.space->components)
                                         : statedColours(*jpx);
        if (jpx->colours == wanted + 1 && !jpx->hasAlpha) {
            jpx->hasAlpha = true;
            jpx->colours = wanted;
        }
        components = static_cast<std::int32_t>(jpx->colours);
        form.hasAlpha = jpx->hasAlpha;
    } else if (coded.codec() == ImageCodec::jbig2) {
        components = 1;
    }
    if (form.space == nullptr && components == 0) {
        const bool isStated = typeObject(entries.raw(imageKey::space)) != ObjectType::null;
        failException(isStated ? Exception::range : Exception::structure);
    }
    if (components != 0 && (form.space == nullptr || form.space->components != components)) {
        form.space = deviceSpace(components);
    }
}

} // namespace corvane
