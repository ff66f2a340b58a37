// Pictures of the artwork that no object of the file holds yet.
#pragma once

#include "host/image.h"
#include "reader/document/cache.h"
#include "writer/image/pixel_rows.h"
#include "writer/page/resource_registry.h"

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace corvane {

/// Numbers of the objects that an image becomes: itself and, for its alpha, another one; the
/// lengths of both are known when they are written.
struct NewImage {
    Image image = Image::null;
    PixelContents contents = {};
    std::int32_t number = 0;
    std::int32_t length = 0;
    std::int32_t mask = 0; ///< 0: every pixel is opaque
    std::int32_t maskLength = 0;
};

class NewImages {
public:
    /// The name of an image that is drawn, in the resources of the content that draws it. However
    /// often and wherever it is, it is one object.
    std::string_view add(Image image, ResourceRegistry& resources);

    const std::vector<NewImage>& images() const { return images_; }

private:
    std::vector<NewImage> images_;
    std::map<Image, std::int32_t> numbers_;
};

/// Writes the image's objects to the cache's output (PDF Reference, 4.8): JPEG as its own bytes,
/// samples deflated behind PNG predictors, their alpha as a soft mask. Raises `host` where the host
/// has fewer bytes than it said.
void writeImage(DocumentCache& cache, const NewImage& image);

} // namespace corvane
