#include "reader/image/page_images.h"

#include "objects/referenced.h"
#include "reader/content/appearance.h"
#include "reader/image/deliver_image.h"
#include "reader/image/image_entries.h"
#include "reader/paint/colour_space_cache.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <algorithm>

namespace corvane {

namespace {

/// Colours of one stencil that are told apart; past them each drawing tells the host again.
constexpr std::size_t mostFills = 64;

bool hasSoftMask(DocumentCache& cache, const Object& dictionary) {
    const ObjectOwner mask = ImageEntries(cache, dictionary).find(imageKey::softMask);
    return typeObject(mask.get()) == ObjectType::stream;
}

KnownImage tell(DocumentCache& cache, const Object& stream, std::int32_t number,
                const Colour& fill) {
    KnownImage known;
    attempted([&] {
        known.isSmooth = smoothnessOf(cache, stream);
        known.isStencil = isStencilImage(cache, stream);
        known.intent = intentOfImage(cache, stream);
        known.hasSoftMask = !known.isStencil && hasSoftMask(cache, stream);
        known.image = deliverImage(cache, stream, number, fill);
    });
    return known;
}

} // namespace

std::optional<bool> smoothnessOf(DocumentCache& cache, const Object& dictionary) {
    for (const char* key : {"Interpolate", "I"}) {
        const ObjectOwner value = lookupObject(cache, dictionary, key);
        if (typeObject(value.get()) == ObjectType::boolean) {
            return booleanObject(value.get());
        }
    }
    return std::nullopt;
}

std::optional<RenderingIntent> intentOfImage(DocumentCache& cache, const Object& dictionary) {
    const ObjectOwner name = lookupObject(cache, dictionary, "Intent");
    return typeObject(name.get()) == ObjectType::literal ? std::optional(intentOf(name.get()))
                                                         : std::nullopt;
}

bool isStencilImage(DocumentCache& cache, const Object& dictionary) {
    return ImageEntries(cache, dictionary).boolean(imageKey::isMask);
}

KnownImage PageImages::find(DocumentCache& cache, const Object& entry, const Object& stream,
                            const Colour& fill) {
    const std::int32_t number = referenced(entry).number;
    const Colour own = isStencilImage(cache, stream) ? fill : Colour();
    std::vector<Entry>& entries = byNumber_[{number, colourSpacesOf(cache).defaults().number()}];
    const auto known = std::ranges::find(entries, own, &Entry::fill);
    if (number != 0 && known != entries.end()) {
        return known->known;
    }
    const KnownImage told = tell(cache, stream, number, own);
    if (number != 0 && entries.size() < mostFills) {
        entries.push_back({own, told});
    }
    return told;
}

} // namespace corvane
