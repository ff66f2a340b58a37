// What a content that the art walk draws has beside its operators.
#pragma once

#include "writer/art/drawn_looks.h"
#include "writer/image/new_images.h"
#include "writer/page/resource_registry.h"
#include "writer/text/drawn_texts.h"

namespace corvane {

struct DrawnContent {
    /// Of all layers that are drawn.
    explicit DrawnContent(DocumentCache& cache) : texts(resources), newImages(cache) {}
    /// Of what `top` holds; nothing is seen beyond `area`.
    DrawnContent(DocumentCache& cache, Art top, const Rect& area)
        : texts(resources, top), newImages(cache), looks(resources, area) {}
    DrawnContent(const DrawnContent&) = delete;
    DrawnContent& operator=(const DrawnContent&) = delete;

    /// Writes its fonts, images and the rest to the cache's output, once the content is drawn.
    void writeObjects(DocumentCache& cache) const {
        texts.fonts().write(cache);
        for (const NewImage& image : newImages.images()) {
            writeImage(cache, image);
        }
        looks.write(cache, resources);
    }

    ResourceRegistry resources;
    DrawnTexts texts;
    NewImages newImages;
    ContentImages images{newImages, resources};
    DrawnLooks looks{resources};
};

} // namespace corvane
