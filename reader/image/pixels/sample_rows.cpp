#include "reader/image/pixels/sample_rows.h"

#include "codecs/jbig2/jbig2.h"
#include "codecs/jpx/jpx.h"
#include "filters/coding/dct.h"
#include "reader/syntax/stream/meter.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/stream/stream_filters.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <algorithm>

namespace corvane {

namespace {

class ChainRows final : public SampleRows {
public:
    explicit ChainRows(Chain chain) : chain_(std::move(chain)) {}

    /// A filter may deliver less than was asked for only at its end.
    std::size_t read(std::span<std::byte> rows) override { return readFilter(*chain_.top(), rows); }

private:
    Chain chain_;
};

class JpxRows final : public SampleRows {
public:
    explicit JpxRows(const LookedImage& image)
        : picture_(image.held.bytes, *image.jpx, image.keepsPalette,
                   image.entries.cache().work.codecs),
          rowBytes_(static_cast<std::size_t>(image.form.rowBytes())), height_(image.jpx->height) {}

    std::size_t read(std::span<std::byte> rows) override {
        std::size_t done = 0;
        for (; y_ < height_ && done + rowBytes_ <= rows.size(); ++y_, done += rowBytes_) {
            picture_.row(y_, rows.subspan(done, rowBytes_));
        }
        return done;
    }

private:
    JpxPicture picture_;
    std::size_t rowBytes_;
    std::uint32_t height_;
    std::uint32_t y_ = 0;
};

/// In documents a bit of 1 is white. A page of another size than the dictionary says is cut, or has
/// white beside it.
class Jbig2Rows final : public SampleRows {
public:
    Jbig2Rows(Jbig2Page page, std::size_t rowBytes) : page_(std::move(page)), rowBytes_(rowBytes) {}

    std::size_t read(std::span<std::byte> rows) override {
        const std::size_t pageBytes = (std::size_t{page_.width} + 7) / 8;
        const std::size_t copied = std::min(pageBytes, rowBytes_);
        std::size_t done = 0;
        for (; y_ < page_.height && done + rowBytes_ <= rows.size(); ++y_, done += rowBytes_) {
            const std::span<std::byte> row = rows.subspan(done, rowBytes_);
            const std::span<const std::byte> from =
                std::span(page_.rows).subspan(y_ * pageBytes, copied);
            std::ranges::transform(from, row.begin(), [](std::byte byte) { return ~byte; });
            std::ranges::fill(row.subspan(copied), std::byte{0xFF});
        }
        return done;
    }

private:
    Jbig2Page page_;
    std::size_t rowBytes_;
    std::size_t y_ = 0;
};

std::unique_ptr<SampleRows> openJbig2(const LookedImage& image) {
    DocumentCache& cache = image.entries.cache();
    HeldBytes globals;
    if (typeObject(image.coded.codecParameters()) == ObjectType::dictionary) {
        const ObjectOwner stream =
            lookupObject(cache, image.coded.codecParameters(), "JBIG2Globals");
        if (typeObject(stream.get()) == ObjectType::stream) {
            Chain chain = plainStream(cache, stream.get());
            linkFilters(cache, chain, stream.get());
            globals = readAll(chain);
        }
    }
    const HeldBytes data = image.coded.read();
    Jbig2Page page = decodeJbig2(globals.bytes, data.bytes, cache.work.codecs);
    const auto rowBytes = static_cast<std::size_t>(image.form.rowBytes());
    // Next to nothing of what the dictionary claims.
    if (rowBytes > 16 * ((std::size_t{page.width} + 7) / 8)) {
        failException(Exception::codec);
    }
    return std::make_unique<Jbig2Rows>(std::move(page), rowBytes);
}

} // namespace

std::unique_ptr<SampleRows> openSampleRows(const LookedImage& image) {
    switch (image.coded.codec()) {
    case ImageCodec::jpx:
        return std::make_unique<JpxRows>(image);
    case ImageCodec::jbig2:
        return openJbig2(image);
    default:
        break;
    }
    Chain chain = image.coded.open();
    if (image.coded.codec() == ImageCodec::dct) {
        ReadingWork& work = image.entries.cache().work;
        chain.link(setupDiscreteDecoder(image.dctTransform, &work.codecs));
        chain.link(setupMeter(work));
    }
    return std::make_unique<ChainRows>(std::move(chain));
}

} // namespace corvane
