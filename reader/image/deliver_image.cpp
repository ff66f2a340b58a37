#include "reader/image/deliver_image.h"

#include "reader/syntax/syntax.h"
#include "runtime/callbacks.h"

#include <string>

namespace corvane {

namespace {

Image tell(DocumentCache& cache, const Object& dictionary, const std::string& key) {
    ImageFacts facts{.key = key, .isPlaceholder = true};
    const auto whole = [&](const char* name, const char* shortName) {
        for (const char* each : {name, shortName}) {
            const ObjectOwner value = lookupObject(cache, dictionary, each);
            if (typeObject(value.get()) == ObjectType::integer) {
                return integerObject(value.get());
            }
        }
        return 0;
    };
    facts.width = whole("Width", "W");
    facts.height = whole("Height", "H");
    Image image = Image::null;
    if (facts.width > 0 && facts.height > 0) {
        std::uint8_t wants = 0;
        callHost(slot::addImage, &facts, &image, &wants);
    }
    return image;
}

} // namespace

Image deliverImage(DocumentCache& cache, const Object& stream, std::int32_t number, const Colour&) {
    return tell(cache, stream, std::to_string(number));
}

Image deliverInlineImage(DocumentCache& cache, const Object& dictionary,
                         std::span<const std::byte> data, const Colour&) {
    return tell(cache, dictionary, "inline-" + std::to_string(data.size()));
}

} // namespace corvane
