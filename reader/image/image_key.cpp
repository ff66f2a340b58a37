#include "reader/image/image_key.h"

#include "reader/page/followed_digest.h"
#include "reader/syntax/syntax.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace corvane {

namespace {

/// A change of the rule by which images are decoded or digested is a new version.
constexpr std::int64_t version = 2;

constexpr std::array countedKeys = {
    imageKey::width,  imageKey::height,     imageKey::bits,  imageKey::space,
    imageKey::decode, imageKey::isMask,     imageKey::mask,  imageKey::softMask,
    imageKey::filter, imageKey::parameters, imageKey::matte, imageKey::softMaskInData};

/// A colour space of an inline image that is named among the page's resources.
void feedNamedSpace(const ImageEntries& entries, Followed& followed) {
    DocumentCache& cache = entries.cache();
    const Object space = entries.raw(imageKey::space);
    if (typeObject(space) != ObjectType::literal ||
        typeObject(cache.resources.get()) != ObjectType::dictionary) {
        return;
    }
    const ObjectOwner spaces = lookupObject(cache, cache.resources.get(), "ColorSpace");
    if (typeObject(spaces.get()) == ObjectType::dictionary) {
        followed.root(findEntry(cache, spaces.get(), literalObject(space)));
    }
}

} // namespace

std::string imageKeyOf(const ImageEntries& entries, std::int32_t number,
                       std::optional<std::span<const std::byte>> data, std::int32_t stencilColour,
                       const DefaultSpaces& defaults) {
    DigestFeed feed;
    FedStreams fed;
    Followed followed(feed, entries.cache(), fed, false);
    feed.number(version);
    feed.number(stencilColour);
    for (const ImageKey& key : countedKeys) {
        followed.root(entries.raw(key));
    }
    if (stencilColour < 0) {
        feedDefaults(followed, defaults);
    }
    if (data) {
        feedNamedSpace(entries, followed);
        feed.number(static_cast<std::int64_t>(data->size()));
        feed.feed(*data);
    } else {
        feedAgain(feed, fed, entries.object());
        followed.data(entries.object());
    }
    followed.follow();
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%" PRId32 "-%016" PRIx64, number, feed.value());
    return text.data();
}

} // namespace corvane
