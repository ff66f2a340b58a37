// Pictures of the artwork that no object of the file holds yet.
#pragma once

#include "host/image.h"
#include "reader/document/cache.h"
#include "writer/image/pixel_rows.h"
#include "writer/page/resource_registry.h"

#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

/// Numbers of the objects that an image becomes: itself and, for its alpha, another one; the
/// lengths of both are known when they are written.
struct NewImage {
    Image image = Image::null;
    bool isSmooth = true; ///< as `PlacedImage`
    PixelContents contents = {};
    std::int32_t number = 0;
    std::int32_t length = 0;
    std::int32_t mask = 0; ///< 0: every pixel is opaque
    std::int32_t maskLength = 0;
};

class NewImages {
public:
    explicit NewImages(DocumentCache& cache) : cache_(&cache) {}

    /// The name of what a placed object shows, which is not null, in the resources of the content
    /// that draws it. However often and wherever an image is drawn, it is one object: that of the
    /// file where it is an image of the file and no stencil. Raises `unpatchable` where its pixels
    /// are not at hand.
    std::string_view add(const PlacedImage& placed, ResourceRegistry& resources);

    const std::vector<NewImage>& images() const { return images_; }

private:
    std::int32_t objectOf(const PlacedImage& placed);

    DocumentCache* cache_;
    std::vector<NewImage> images_;
    std::map<std::pair<Image, bool>, std::int32_t> numbers_; ///< by image and smoothness
};

/// The images of one content, by the names in its resources.
class ContentImages {
public:
    ContentImages(NewImages& images, ResourceRegistry& resources)
        : images_(images), resources_(resources) {}

    std::string_view add(const PlacedImage& placed) { return images_.add(placed, resources_); }

private:
    NewImages& images_;
    ResourceRegistry& resources_;
};

/// Writes the image's objects to the cache's output (PDF Reference, 4.8): JPEG as its own bytes,
/// samples deflated behind PNG predictors, their alpha as a soft mask. Raises
/// `unpatchable` where the host does not have the bytes.
void writeImage(DocumentCache& cache, const NewImage& image);

} // namespace corvane
