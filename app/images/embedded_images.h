// Images that the artwork's SVG carries itself, as "data:" addresses.
#pragma once

#include "app/artwork/images/image_store.h"

namespace corvane {

class EmbeddedImages final : public ImageStore {
public:
    std::optional<ImageFile> find(const ImageFacts&) override { return std::nullopt; }
    std::unique_ptr<ImageSink> begin(const ImageFacts&) override;
};

} // namespace corvane
