#include "app/images/image_encoder.h"

#include "app/images/image_error.h"

#include <algorithm>
#include <string_view>

namespace corvane {

ImageEncoder::ImageEncoder(const ImageFacts& facts, ByteSink& sink) : sink_(sink) {
    if (facts.coding == ImageCoding::samples) {
        png_.emplace(facts, sink);
    }
}

std::error_code ImageEncoder::add(std::span<const std::byte> bytes) {
    if (png_) {
        return png_->add(bytes);
    }
    digest_.feed(bytes);
    const auto some = bytes.first(std::min(bytes.size(), headSize - head_.size()));
    head_.insert(head_.end(), some.begin(), some.end());
    constexpr std::size_t blockSize = std::size_t{64} << 10;
    std::vector<char> block;
    for (; !bytes.empty(); bytes = bytes.subspan(block.size())) {
        block.resize(std::min(bytes.size(), blockSize));
        std::ranges::transform(bytes.first(block.size()), block.begin(),
                               [](std::byte b) { return std::to_integer<char>(b); });
        if (const std::error_code error = sink_.write({block.data(), block.size()})) {
            return error;
        }
    }
    return {};
}

std::error_code ImageEncoder::end() {
    if (png_) {
        return png_->end();
    }
    if (head_.empty()) {
        throw ImageError("has no bytes");
    }
    return {};
}

std::uint64_t ImageEncoder::digest() const {
    return png_ ? png_->digest() : digest_.value();
}

Orientation ImageEncoder::orientation() const {
    return png_ ? upright : exifOrientation(*memoryOrigin(head_)->open());
}

} // namespace corvane
