// What streams of images deliver counts by itself, so that a page's images do not use up what its
// content may have.
#pragma once

#include "reader/document/cache.h"

#include <utility>

namespace corvane {

/// Images are read while it lives.
class ImageMeter {
public:
    explicit ImageMeter(DocumentCache& cache) : work_(cache.work) { swap(); }
    ~ImageMeter() { swap(); }
    ImageMeter(const ImageMeter&) = delete;
    ImageMeter& operator=(const ImageMeter&) = delete;

private:
    void swap() { std::swap(work_.pageBytes, work_.imageStreamBytes); }

    ReadingWork& work_;
};

} // namespace corvane
