#include "writer/image/file_images.h"

#include "reader/image/image_key.h"
#include "reader/paint/colour_space_cache.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <span>

namespace corvane {

namespace {

/// Sets of default spaces under which an image is looked for. Real pages have one or two; past that
/// the picture is written anew.
constexpr std::size_t mostDefaults = 16;

} // namespace

std::int32_t imageObject(DocumentCache& cache, const std::string& key) {
    std::int32_t number = 0;
    const auto read = std::from_chars(key.data(), key.data() + key.size(), number);
    if (read.ec != std::errc() || number <= 0) {
        return 0;
    }
    bool isIt = false;
    attempted([&] {
        constexpr std::int32_t noStencil = -1;
        ObjectOwner reference;
        indirectObject(reference.get(), number, 0);
        const ObjectOwner object = resolveObject(cache, reference.get());
        // An image is called by the default spaces, too, under which a content draws it.
        const std::span sets(colourSpacesOf(cache).defaults().all());
        isIt = typeObject(object.get()) == ObjectType::stream &&
               std::ranges::any_of(sets.first(std::min(sets.size(), mostDefaults)),
                                   [&](const DefaultSpaces& defaults) {
                                       return imageKeyOf(ImageEntries(cache, object.get()), number,
                                                         std::nullopt, noStencil, defaults) == key;
                                   });
    });
    return isIt ? number : 0;
}

} // namespace corvane
