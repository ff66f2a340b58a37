#include "app/images/embedded_images.h"

#include "app/images/base64.h"
#include "app/images/image_encoder.h"

#include <span>
#include <string>
#include <string_view>

namespace corvane {

namespace {

class AddressSink final : public ByteSink {
public:
    explicit AddressSink(std::string_view start) : text_(start), writer_(text_) {}
    std::error_code write(std::string_view bytes) override {
        writer_.add(std::as_bytes(std::span(bytes)));
        return {};
    }
    std::string take() {
        writer_.end();
        return std::move(text_);
    }

private:
    std::string text_;
    Base64Writer writer_;
};

class EmbeddedSink final : public ImageSink {
public:
    explicit EmbeddedSink(const ImageFacts& facts)
        : address_(facts.coding == ImageCoding::jpeg ? "data:image/jpeg;base64,"
                                                     : "data:image/png;base64,"),
          encoder_(facts, address_) {}
    void add(std::span<const std::byte> bytes) override { encoder_.add(bytes); }
    ImageFile end() override {
        encoder_.end();
        return {address_.take(), encoder_.digest(), encoder_.orientation() != upright};
    }

private:
    AddressSink address_;
    ImageEncoder encoder_;
};

} // namespace

std::unique_ptr<ImageSink> EmbeddedImages::begin(const ImageFacts& facts) {
    return std::make_unique<EmbeddedSink>(facts);
}

} // namespace corvane
