#include "reader/image/thumbnail.h"

#include "reader/epsf/classic_image.h"
#include "reader/image/image_meter.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

namespace corvane {

namespace {

/// Pixels of a side: writers make some hundred.
constexpr std::int32_t longestSide = 1024;

Thumbnail decoded(DocumentCache& cache, const Object& stream) {
    const ImageMeter meter(cache);
    const classic::ClassicImage image(cache, stream, std::nullopt);
    if (image.isMask() || image.width() > longestSide || image.height() > longestSide) {
        return {};
    }
    Thumbnail thumbnail{.width = image.width(), .height = image.height(), .pixels = {}};
    thumbnail.pixels.assign(image.rowBytes() * static_cast<std::size_t>(image.height()),
                            std::byte{0xFF});
    const Chain rows = image.open();
    const std::size_t count = readFilter(*rows.top(), thumbnail.pixels);
    return count == thumbnail.pixels.size() ? thumbnail : Thumbnail();
}

} // namespace

bool namesThumbnail(DocumentCache& cache) {
    return typeObject(findEntry(cache, cache.page.get(), "Thumb")) == ObjectType::reference;
}

Thumbnail thumbCache(DocumentCache& cache) {
    Thumbnail thumbnail;
    attempted([&] {
        const ObjectOwner stream = lookupObject(cache, cache.page.get(), "Thumb");
        if (typeObject(stream.get()) == ObjectType::stream) {
            thumbnail = decoded(cache, stream.get());
        }
    });
    return thumbnail;
}

} // namespace corvane
