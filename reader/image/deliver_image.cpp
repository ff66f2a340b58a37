#include "reader/image/deliver_image.h"

#include "reader/image/image_key.h"
#include "reader/image/image_meter.h"
#include "reader/image/pixels/picture_rows.h"
#include "reader/paint/colour_space_cache.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/warning.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace corvane {

namespace {

/// Sides that are told of an image that cannot be decoded; nothing is made of them.
constexpr std::int32_t longestPlaceholder = 32767;

/// Runs what decodes; false where the image is to blame, or is too much.
template <class Body>
bool decodes(Body&& body) {
    const Exception code = guarded(std::forward<Body>(body));
    const bool isTooMuch = code == Exception::limit || code == Exception::memory;
    if (code != Exception::none && !isTooMuch && !isFileFault(code)) {
        againException();
    }
    resetException();
    return code == Exception::none;
}

void deliver(Image image, std::span<const std::byte> bytes) {
    callHost(slot::addImageBytes, image, bytes.data(), static_cast<std::int64_t>(bytes.size()));
}

void deliverJpeg(Image image, const CodedImage& coded) {
    const Chain chain = coded.open();
    std::vector<std::byte> block(1 << 16);
    while (const std::size_t count = readFilter(*chain.top(), block)) {
        deliver(image, std::span(block).first(count));
    }
}

/// What kind of JPEG it is that was not decoded, where the kind is the reason.
void warnOfKind(JpegKind kind) {
    switch (kind) {
    case JpegKind::usual:
        break;
    case JpegKind::deep:
        raiseWarning(Warning::deepJpeg);
        break;
    case JpegKind::arithmetic:
        raiseWarning(Warning::arithmeticJpeg);
        break;
    case JpegKind::lossless:
        raiseWarning(Warning::losslessJpeg);
        break;
    case JpegKind::hierarchical:
        raiseWarning(Warning::hierarchicalJpeg);
    }
}

class Delivery {
public:
    Delivery(DocumentCache& cache, const Object& object, std::int32_t number,
             std::optional<std::span<const std::byte>> data, const Colour& fill,
             bool isGlyph = false)
        : cache_(cache), object_(object), number_(number), data_(data), entries_(cache, object),
          fill_(seenColour(fill)), isGlyph_(isGlyph) {}

    Image run() {
        ImageFacts facts{.width = 0, .height = 0};
        bool isStencil = false;
        const bool isImage = decodes([&] {
            facts.width = entries_.integer(imageKey::width).value_or(0);
            facts.height = entries_.integer(imageKey::height).value_or(0);
            isStencil = entries_.boolean(imageKey::isMask);
        });
        if (!isImage || facts.width <= 0 || facts.height <= 0) {
            return Image::null;
        }
        const std::int32_t colour =
            isStencil ? fill_.red << 16 | fill_.green << 8 | fill_.blue : -1;
        return tell(facts, colour);
    }

private:
    Image tell(ImageFacts facts, std::int32_t colour) {
        std::string key = std::to_string(number_);
        std::optional<Picture> picture;
        const bool isKnown = decodes([&] {
            if (++cache_.work.images > budget::pageImages) {
                failException(Exception::limit);
            }
            key = imageKeyOf(entries_, number_, data_, colour,
                             colourSpacesOf(cache_).defaults().inForce());
            if (isGlyph_) {
                key.replace(0, key.find('-'), "glyph");
            }
            picture.emplace(cache_, object_, data_, fill_);
            if (!picture->isJpegAsItIs() && picture->bytes() > left()) {
                failException(Exception::limit);
            }
        });
        if (isKnown) {
            facts = picture->facts();
        } else {
            facts.width = std::min(facts.width, longestPlaceholder);
            facts.height = std::min(facts.height, longestPlaceholder);
            facts.isPlaceholder = true;
        }
        facts.key = key;
        Image image = Image::null;
        std::uint8_t wantsBytes = 0;
        callHost(slot::addImage, &facts, &image, &wantsBytes);
        if (wantsBytes != 0 && isKnown) {
            const bool isDecoded = decodes([&] { deliverBytes(image, *picture); });
            callHost(isDecoded ? slot::endImage : slot::giveUpImage, image);
            if (const std::optional<JpegLead>& jpeg = picture->image().jpeg; jpeg && !isDecoded) {
                warnOfKind(jpeg->frame->kind());
            }
        }
        return image;
    }

    std::int64_t left() const { return budget::imageBytes - cache_.work.imageBytes; }

    void deliverBytes(Image image, Picture& picture) {
        if (picture.isJpegAsItIs()) {
            return deliverJpeg(image, picture.image().coded);
        }
        picture.forEachBlock([&](std::span<const std::byte> rows) {
            cache_.work.imageBytes += static_cast<std::int64_t>(rows.size());
            deliver(image, rows);
        });
    }

    DocumentCache& cache_;
    const Object& object_;
    std::int32_t number_;
    std::optional<std::span<const std::byte>> data_;
    ImageEntries entries_;
    SeenColour fill_;
    bool isGlyph_;
};

} // namespace

Image deliverImage(DocumentCache& cache, const Object& stream, std::int32_t number,
                   const Colour& fill) {
    const ImageMeter meter(cache);
    return Delivery(cache, stream, number, std::nullopt, fill).run();
}

Image deliverInlineImage(DocumentCache& cache, const Object& dictionary,
                         std::span<const std::byte> data, const Colour& fill, bool isGlyph) {
    const ImageMeter meter(cache);
    return Delivery(cache, dictionary, 0, data, fill, isGlyph).run();
}

} // namespace corvane
