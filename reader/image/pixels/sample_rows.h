// The samples of an image, decoded, a strip at a time.
#pragma once

#include "reader/image/image_form.h"

#include <cstddef>
#include <memory>
#include <span>

namespace corvane {

class SampleRows {
public:
    virtual ~SampleRows() = default;
    /// Whole rows from the top, `ImageForm::rowBytes` each; fewer bytes at the end of the data.
    virtual std::size_t read(std::span<std::byte> rows) = 0;
};

/// Begins to decode. JPX and JBIG2 data are decoded as a whole here.
std::unique_ptr<SampleRows> openSampleRows(const LookedImage& image);

} // namespace corvane
