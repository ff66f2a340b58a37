#include "writer/image/new_images.h"

#include "codecs/jpeg/jpeg_lead.h"
#include "filters/coding/deflate.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/image/page_images.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/reason.h"
#include "writer/crypt/sealed.h"
#include "writer/crypt/sealed_output.h"
#include "writer/image/file_images.h"
#include "writer/image/pixel_rows.h"
#include "writer/page/needed_version.h"
#include "writer/page/stream_object.h"
#include "writer/paint/plain_spaces.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>

namespace corvane {

namespace {

ImageFacts factsOf(Image image) {
    ImageFacts facts;
    callHost(slot::getImageFacts, image, &facts);
    return facts;
}

/// Runs what takes bytes of an image from the host, which may fail to read them.
template <class Body>
void readingImage(Body&& body) {
    if (guarded(std::forward<Body>(body)) == Exception::host) {
        noteReason(Reason::unreadableImage);
        failException(Exception::unpatchable);
    }
    againException();
}

PixelContents contentsOf(Image image, const ImageFacts& facts) {
    PixelContents contents{.isGray = false};
    if (facts.coding == ImageCoding::samples) {
        readingImage([&] { contents = examinePixels(image, facts); });
    }
    return contents;
}

/// The object of the file that is the image of that key and is enlarged so; 0: there is none.
std::int32_t sameObject(DocumentCache& cache, const ImageFacts& facts, bool isSmooth) {
    const std::int32_t number = imageObject(cache, std::string(facts.key));
    if (number == 0) {
        return 0;
    }
    ObjectOwner reference;
    indirectObject(reference.get(), number, 0);
    const ObjectOwner stream = resolveObject(cache, reference.get());
    return smoothnessOf(cache, stream.get()).value_or(isSmooth) == isSmooth ? number : 0;
}

std::string entry(const char* key, std::int64_t value) {
    return "/" + std::string(key) + " " + std::to_string(value) + " ";
}

std::string beginning(const NewImage& image, const ImageFacts& facts, std::int32_t bits) {
    return "<<\r/Type /XObject /Subtype /Image " + entry("Width", facts.width) +
           entry("Height", facts.height) + entry("BitsPerComponent", bits) +
           (image.isSmooth ? "/Interpolate true\r" : "/Interpolate false\r");
}

std::string predictorEntries(const PixelForm& form) {
    constexpr std::int64_t png = 15; // each row names its own
    return "/Filter /FlateDecode /DecodeParms << " + entry("Predictor", png) +
           entry("Colors", form.components) + entry("BitsPerComponent", form.bits) +
           entry("Columns", form.width) + ">>\r";
}

/// A stream whose length is told behind it. Its entries are written between its making and its
/// data.
class LengthLater {
public:
    LengthLater(DocumentCache& cache, std::int32_t number, std::int32_t length)
        : cache_(cache), number_(number), length_(length) {
        touchXRef(*cache.output, number, 0);
        objectOutput(*cache.output, number, 0);
    }

    void beginData() {
        Filter& output = *cache_.output;
        stringOutput(output, "/Length ");
        referenceOutput(output, length_, 0);
        stringOutput(output, ">>\rstream\r");
        start_ = markFilter(output);
        chain_ = Chain(&output);
        linkSeal(cache_, chain_, newStreamCipher(cache_), {number_, 0});
    }

    Chain& chain() { return chain_; }

    void finish() {
        chain_.unlink();
        const std::int32_t bytes = markFilter(*cache_.output) - start_;
        // The line end before "endstream" does not count.
        stringOutput(*cache_.output, "\rendstream\rendobj\r");
        writeLength(cache_, length_, bytes);
    }

private:
    DocumentCache& cache_;
    std::int32_t number_;
    std::int32_t length_;
    std::int32_t start_ = 0;
    Chain chain_;
};

/// Rows of `to`, each made of one of the image.
using RowMaker = std::function<void(std::span<const std::byte> from, std::vector<std::byte>& to)>;

void rowsOutput(Chain& chain, Image image, const PixelForm& from, const PixelForm& to,
                const RowMaker& make) {
    PixelRows rows(image, from);
    RowPredictor predictor(to);
    std::vector<std::byte> row(to.rowBytes());
    for (std::int32_t y = 0; y < from.height; ++y) {
        make(rows.next(), row);
        writeFilter(*chain.top(), predictor.predict(row));
    }
}

/// Takes some samples of each pixel.
RowMaker samplesMaker(const PixelForm& from, const PixelForm& to, std::int32_t first) {
    const std::size_t pixel = from.sampleBytes() * static_cast<std::size_t>(from.components);
    const std::size_t taken = to.sampleBytes() * static_cast<std::size_t>(to.components);
    const std::size_t start = from.sampleBytes() * static_cast<std::size_t>(first);
    return [=](std::span<const std::byte> row, std::vector<std::byte>& out) {
        if (pixel == taken || pixel == 0) { // packed samples have no byte of their own
            std::ranges::copy(row, out.begin());
            return;
        }
        auto at = out.begin();
        for (std::size_t i = 0; i < row.size(); i += pixel) {
            at = std::ranges::copy(row.subspan(i + start, taken), at).out;
        }
    };
}

/// The alpha of each pixel's palette entry.
RowMaker paletteMaker(const ImageFacts& facts) {
    std::array<std::byte, 256> alphas{};
    alphas.fill(std::byte{0xFF});
    for (std::size_t i = 0; 4 * i + 3 < facts.palette.size() && i < alphas.size(); ++i) {
        alphas[i] = std::byte{facts.palette[4 * i + 3]};
    }
    const auto bits = static_cast<unsigned>(facts.bits);
    return [alphas, bits](std::span<const std::byte> row, std::vector<std::byte>& out) {
        for (std::size_t x = 0; x < out.size(); ++x) {
            const std::size_t bit = x * bits;
            const auto packed = std::to_integer<unsigned>(row[bit / 8]);
            const auto shift = static_cast<unsigned>(8 - bits - bit % 8);
            out[x] = alphas[packed >> shift & ((1U << bits) - 1U)];
        }
    };
}

void spaceOutput(DocumentCache& cache, const ImageFacts& facts, bool isGray, std::int32_t number) {
    Filter& output = *cache.output;
    if (facts.colours == ImageColours::indexed) {
        std::vector<std::byte> colours;
        for (std::size_t i = 0; i < facts.palette.size(); ++i) {
            if (i % 4 != 3) {
                colours.push_back(std::byte{facts.palette[i]});
            }
        }
        const std::size_t last = facts.palette.size() / 4 - 1;
        stringOutput(output, "/ColorSpace [ /Indexed " +
                                 plainSpaceText(cache, ColourSpace::Kind::rgb) + " " +
                                 std::to_string(last) + " ");
        sealedBytesOutput(cache, {number, 0}, colours);
        stringOutput(output, " ]\r");
        return;
    }
    const ColourSpace::Kind device = facts.colours == ImageColours::cmyk ? ColourSpace::Kind::cmyk
                                     : facts.colours == ImageColours::rgb && !isGray
                                         ? ColourSpace::Kind::rgb
                                         : ColourSpace::Kind::gray;
    stringOutput(output, "/ColorSpace " + plainSpaceText(cache, device) + "\r");
}

/// The next bytes of an image that was opened.
std::size_t readBytes(Image image, std::span<std::byte> into) {
    if (callHost(slot::checkUserAbort)) {
        failException(Exception::cancelled);
    }
    std::int64_t count = 0;
    callHost(slot::readImageBytes, image, into.data(), std::ssize(into), &count);
    return static_cast<std::size_t>(std::clamp<std::int64_t>(count, 0, std::ssize(into)));
}

/// Whether the three components of a JPEG are red, green and blue as they stand, which a document
/// must say where the file does not.
bool isPlainRgb(const NewImage& image, const ImageFacts& facts) {
    if (facts.colours != ImageColours::rgb) {
        return false;
    }
    callHost(slot::openImageBytes, image.image);
    const JpegLead lead =
        readJpegLead([&](std::span<std::byte> block) { return readBytes(image.image, block); },
                     budget::jpegLeadBytes);
    return !lead.isYccAlone();
}

void jpegOutput(DocumentCache& cache, const NewImage& image, const ImageFacts& facts) {
    const bool isPlain = isPlainRgb(image, facts);
    Filter& output = *cache.output;
    LengthLater stream(cache, image.number, image.length);
    stringOutput(output, beginning(image, facts, 8));
    spaceOutput(cache, facts, false, image.number);
    stringOutput(output, "/Filter /DCTDecode\r");
    if (facts.colours == ImageColours::cmyk && facts.isInverted) {
        stringOutput(output, "/Decode [ 1 0 1 0 1 0 1 0 ]\r");
    }
    if (isPlain) {
        stringOutput(output, "/DecodeParms << /ColorTransform 0 >>\r");
    }
    stream.beginData();
    std::array<std::byte, 1 << 14> block;
    callHost(slot::openImageBytes, image.image);
    for (std::size_t count = block.size(); count == block.size();) {
        count = readBytes(image.image, block);
        writeFilter(*stream.chain().top(), std::span(block).first(count));
    }
    stream.finish();
}

void maskOutput(DocumentCache& cache, const NewImage& image, const ImageFacts& facts) {
    const PixelForm from = pixelForm(facts);
    const bool hasPalette = facts.colours == ImageColours::indexed;
    const PixelForm to{from.width, from.height, 1, hasPalette ? 8 : from.bits};
    LengthLater stream(cache, image.mask, image.maskLength);
    stringOutput(*cache.output, beginning(image, facts, to.bits) + "/ColorSpace /DeviceGray\r" +
                                    predictorEntries(to));
    stream.beginData();
    stream.chain().link(setupPixelDeflate());
    rowsOutput(stream.chain(), image.image, from, to,
               hasPalette ? paletteMaker(facts) : samplesMaker(from, to, from.components - 1));
    stream.finish();
}

void samplesOutput(DocumentCache& cache, const NewImage& image, const ImageFacts& facts) {
    const PixelForm from = pixelForm(facts);
    const bool isGray = image.contents.isGray;
    const std::int32_t colours = isGray ? 1 : from.components - (facts.hasAlpha ? 1 : 0);
    const PixelForm to{from.width, from.height, colours, from.bits};
    needVersion(facts.bits == 16 ? Feature::deepImage : Feature::flate);
    LengthLater stream(cache, image.number, image.length);
    stringOutput(*cache.output, beginning(image, facts, facts.bits));
    spaceOutput(cache, facts, isGray, image.number);
    stringOutput(*cache.output, predictorEntries(to));
    if (image.mask != 0) {
        needVersion(Feature::maskedImage);
        stringOutput(*cache.output, "/SMask " + std::to_string(image.mask) + " 0 R\r");
    }
    stream.beginData();
    stream.chain().link(setupPixelDeflate());
    rowsOutput(stream.chain(), image.image, from, to, samplesMaker(from, to, 0));
    stream.finish();
}

} // namespace

std::int32_t NewImages::objectOf(const PlacedImage& placed) {
    const ImageFacts facts = factsOf(placed.image);
    if (const std::int32_t number = sameObject(*cache_, facts, placed.isSmooth)) {
        return number;
    }
    if (facts.isPlaceholder) {
        noteReason(Reason::imageElsewhere);
        failException(Exception::unpatchable);
    }
    NewImage made{.image = placed.image,
                  .isSmooth = placed.isSmooth,
                  .contents = contentsOf(placed.image, facts),
                  .number = nextIdentity(),
                  .length = nextIdentity()};
    if (!made.contents.isOpaque) {
        made.mask = nextIdentity();
        made.maskLength = nextIdentity();
    }
    images_.push_back(made);
    return made.number;
}

std::string_view NewImages::add(const PlacedImage& placed, ResourceRegistry& resources) {
    std::int32_t& number = numbers_[{placed.image, placed.isSmooth}];
    if (number == 0) {
        number = objectOf(placed);
    }
    return resources.add(ResourceCategory::object, number, 0);
}

void writeImage(DocumentCache& cache, const NewImage& image) {
    readingImage([&] {
        const ImageFacts facts = factsOf(image.image);
        if (facts.coding == ImageCoding::jpeg) {
            return jpegOutput(cache, image, facts);
        }
        samplesOutput(cache, image, facts);
        if (image.mask != 0) {
            maskOutput(cache, image, facts);
        }
    });
}

} // namespace corvane
