#include "reader/epsf/classic_image.h"

#include "filters/coding/dct.h"
#include "filters/pixels/component.h"
#include "filters/pixels/mapping.h"
#include "reader/paint/colour_space.h"
#include "reader/syntax/stream/meter.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/warning.h"

#include <algorithm>

namespace corvane::classic {

namespace {

constexpr ImageKey secondSpace{"ColorSpace2", "CS2"};
/// It has the short name of "ImageMask" too.
constexpr ImageKey interpolate{"Interpolate", "IM"};

bool isMissing(const ObjectOwner& value) {
    return typeObject(value.get()) == ObjectType::null;
}

/// Matrices hold sides as 16.16 numbers.
std::int32_t sideOf(const ImageEntries& entries, ImageKey key) {
    const std::int32_t side = integerObject(entries.find(key).get());
    if (side <= 0 || side > INT16_MAX) {
        failException(Exception::type);
    }
    return side;
}

bool booleanOf(const ImageEntries& entries, ImageKey key) {
    const ObjectOwner value = entries.find(key);
    return !isMissing(value) && booleanObject(value.get());
}

} // namespace

ClassicImage::ClassicImage(DocumentCache& cache, const Object& object,
                           std::optional<std::span<const std::byte>> data)
    : entries_(cache, object), coded_(entries_, data) {
    readSizes();
    if (!isMissing(entries_.find(secondSpace))) {
        raiseWarning(Warning::imageEntry);
    }
    booleanOf(entries_, interpolate); // nothing is made of it
    isMask_ = booleanOf(entries_, imageKey::isMask);
    if (!isMask_) {
        readSpace();
    }
    readDecode();
    if (std::int64_t{4} * width_ * height_ > budget::imageBytes - cache.work.imageBytes) {
        failException(Exception::range);
    }
}

void ClassicImage::readSizes() {
    width_ = sideOf(entries_, imageKey::width);
    height_ = sideOf(entries_, imageKey::height);
    const ObjectOwner bits = entries_.find(imageKey::bits);
    bits_ = isMissing(bits) ? 8 : integerObject(bits.get());
}

void ClassicImage::readSpace() {
    DocumentCache& cache = entries_.cache();
    const ObjectOwner space = entries_.find(imageKey::space);
    if (typeObject(space.get()) == ObjectType::literal) {
        return readNamedSpace(literalObject(space.get()));
    }
    if (typeObject(space.get()) != ObjectType::array || sizeObject(space.get()) == 0) {
        failException(Exception::range);
    }
    const std::span<const Object> elements = elementsObject(space.get());
    const ObjectOwner family = resolveObject(cache, elements[0]);
    space_ = name2space(literalObject(family.get()));
    if (space_.space == ImageSpace::indexed) {
        readIndexedSpace(elements);
    }
}

void ClassicImage::readNamedSpace(std::string_view name) {
    space_ = name2space(name);
    if (!space_.direct) {
        failException(Exception::range); // it has no table
    }
}

/// [name base hival lookup]
void ClassicImage::readIndexedSpace(std::span<const Object> elements) {
    constexpr std::int32_t highestIndex = 255;
    DocumentCache& cache = entries_.cache();
    if (elements.size() < 4) {
        failException(Exception::range);
    }
    const ObjectOwner name = resolveObject(cache, elements[1]);
    const NamedSpace base = name2space(literalObject(name.get()));
    const std::int32_t highest = integerObject(resolveObject(cache, elements[2]).get());
    if (!base.direct || highest < 0 || highest > highestIndex) {
        failException(Exception::range);
    }
    const std::size_t entries = static_cast<std::size_t>(highest) + 1;
    std::vector<std::uint8_t> table = tableBytes(cache, elements[3]);
    table.resize(entries * static_cast<std::size_t>(base.components));
    std::vector<std::byte> colours(4 * entries);
    SpaceFilter converter(base.space, {});
    blockSpace(colours, std::as_bytes(std::span(table)), converter);
    for (std::size_t i = 0; i < colours.size(); i += 4) {
        palette_.push_back(std::to_integer<std::uint32_t>(colours[i + 1]) << 16 |
                           std::to_integer<std::uint32_t>(colours[i + 2]) << 8 |
                           std::to_integer<std::uint32_t>(colours[i + 3]));
    }
}

/// A pair for each component, in shares of the highest value.
void ClassicImage::readDecode() {
    const ObjectOwner array = entries_.find(imageKey::decode);
    if (isMissing(array)) {
        return;
    }
    const std::span<const Object> values = elementsObject(array.get());
    if (values.size() != 2 * static_cast<std::size_t>(space_.components)) {
        failException(Exception::type);
    }
    const bool isIndexed = space_.space == ImageSpace::indexed;
    const std::int32_t highest = isIndexed && bits_ > 0 && bits_ <= 8 ? (1 << bits_) - 1 : 1;
    for (const Object& value : values) {
        const ObjectOwner number = resolveObject(entries_.cache(), value);
        decode_.push_back(extendObject(number.get()) / highest);
    }
}

std::size_t ClassicImage::rowBytes() const {
    const auto width = static_cast<std::size_t>(width_);
    return isMask_ ? (width + 7) / 8 : 4 * width;
}

Chain ClassicImage::open() const {
    constexpr std::int32_t highestByte = 255;
    Chain chain = coded_.open();
    switch (coded_.codec()) {
    case ImageCodec::dct:
        chain.link(setupDiscrete(0, 0, 0));
        chain.link(setupMeter(entries_.cache().work));
        break;
    case ImageCodec::jpx:
    case ImageCodec::jbig2:
        failException(Exception::range);
    default:
        break;
    }
    const bool isIndexed = space_.space == ImageSpace::indexed;
    if (!isMask_) {
        chain.link(setupComponent(bits_, width_ * space_.components,
                                  isIndexed ? SampleScale::kept : SampleScale::full));
    }
    const std::int32_t highest = isIndexed ? (1 << bits_) - 1 : highestByte;
    chain.link(setupMapping(decode_, highest));
    chain.link(setupSpace(space_.space,
                          palette_.empty() ? 0 : static_cast<std::uint32_t>(palette_.size() - 1),
                          palette_));
    return chain;
}

} // namespace corvane::classic
