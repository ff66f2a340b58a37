// Any bytes as the file of an image: it is read within the budgets or refused, gives as many bytes
// as its facts say, and is written as a PNG that reads as the same.
#include "fuzz/targets.h"

#include "app/artwork/error.h"
#include "app/artwork/images/image_table.h"
#include "app/images/image_encoder.h"
#include "app/images/image_error.h"
#include "app/images/image_file.h"

#include <new>
#include <string_view>
#include <vector>

namespace corvane::fuzz {

namespace {

using Block = std::vector<std::byte>;

/// Bytes of samples that one input may make.
constexpr std::int64_t mostBytes = 1 << 20;

class BlockSink final : public ByteSink {
public:
    std::error_code write(std::string_view bytes) override {
        const auto some = std::as_bytes(std::span(bytes));
        block.insert(block.end(), some.begin(), some.end());
        return {};
    }
    Block block;
};

std::optional<ReadImage> read(Block file) {
    return readImage(memoryOrigin(std::move(file)), "it");
}

/// All samples; not more than that many bytes.
Block samplesOf(const ReadImage& image, std::size_t size) {
    Block block(size + 1);
    block.resize(image.content->open()->read(block));
    require(block.size() == size);
    return block;
}

void readAndWrite(Bytes input) {
    const auto image = read({input.begin(), input.end()});
    if (!image) {
        return;
    }
    ImageFacts facts = image->facts;
    facts.palette = image->palette;
    ArtworkBudget budget(memoryLimit);
    ImageTable images(budget);
    images.add(facts, {}, image->content);
    const std::int64_t size = rowBytes(facts) * facts.height;
    if (facts.coding == ImageCoding::jpeg) {
        samplesOf(*image, input.size());
        return;
    }
    if (size > mostBytes) {
        return;
    }
    const Block samples = samplesOf(*image, static_cast<std::size_t>(size));
    BlockSink sink;
    ImageEncoder encoder(facts, sink);
    encoder.add(samples);
    encoder.end();
    const auto again = read(sink.block);
    require(again && again->palette == image->palette && again->digest == encoder.digest());
    require(samplesOf(*again, samples.size()) == samples);
}

} // namespace

void fuzzImageFile(Bytes input) {
    try {
        readAndWrite(input);
    } catch (const ImageError&) {
        return;
    } catch (const ArtworkError&) {
        return;
    } catch (const std::bad_alloc&) {
        return;
    }
}

} // namespace corvane::fuzz
