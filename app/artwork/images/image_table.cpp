#include "app/artwork/images/image_table.h"

#include "app/artwork/error.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

bool isKeyCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
}

bool isKey(std::string_view key) {
    return key.size() <= ImageTable::longestKey && std::ranges::all_of(key, isKeyCharacter);
}

bool sizesFit(const ImageFacts& facts) {
    const auto fits = [](std::int32_t side) { return side > 0 && side <= ImageTable::longestSide; };
    return fits(facts.width) && fits(facts.height) &&
           std::int64_t{facts.width} * facts.height <= ImageTable::mostPixels;
}

bool bitsFit(const ImageFacts& facts) {
    switch (facts.bits) {
    case 8:
        return true;
    case 16:
        return facts.coding == ImageCoding::samples && facts.colours != ImageColours::indexed;
    case 1:
    case 2:
    case 4:
        return facts.coding == ImageCoding::samples && facts.colours != ImageColours::rgb &&
               !facts.hasAlpha;
    default:
        return false;
    }
}

bool paletteFits(const ImageFacts& facts) {
    constexpr std::size_t entry = 4;
    const std::size_t most = entry << std::clamp(facts.bits, 0, 8);
    return facts.colours != ImageColours::indexed
               ? facts.palette.empty()
               : facts.palette.size() % entry == 0 && !facts.palette.empty() &&
                     facts.palette.size() <= most;
}

bool coloursFit(const ImageFacts& facts) {
    const bool isJpeg = facts.coding == ImageCoding::jpeg;
    switch (facts.colours) {
    case ImageColours::gray:
    case ImageColours::rgb:
        return !isJpeg || !facts.hasAlpha;
    case ImageColours::indexed:
        return !isJpeg && !facts.hasAlpha;
    case ImageColours::cmyk:
        return isJpeg && !facts.hasAlpha;
    }
    return false; // a number from outside
}

void check(const ImageFacts& facts) {
    const bool hasCoding =
        facts.coding == ImageCoding::samples || facts.coding == ImageCoding::jpeg;
    if (!hasCoding || !sizesFit(facts) || !coloursFit(facts) || !bitsFit(facts) ||
        !paletteFits(facts) || !isKey(facts.key)) {
        throw ArtworkError("the image has a value without meaning");
    }
}

} // namespace

std::int64_t rowBytes(const ImageFacts& facts) {
    const std::int64_t components =
        (facts.colours == ImageColours::rgb ? 3 : 1) + (facts.hasAlpha ? 1 : 0);
    return (facts.width * components * facts.bits + 7) / 8;
}

ImageTable::Record& ImageTable::at(Image image) {
    const auto number = static_cast<std::size_t>(image);
    if (number == 0 || number > records_.size()) {
        throw ArtworkError("there is no such image");
    }
    return records_[number - 1];
}

const ImageTable::Record& ImageTable::at(Image image) const {
    const auto number = static_cast<std::size_t>(image);
    if (number == 0 || number > records_.size()) {
        throw ArtworkError("there is no such image");
    }
    return records_[number - 1];
}

ImageTable::Record& ImageTable::filling(Image image) {
    Record& record = at(image);
    if (record.sink == nullptr) {
        throw ArtworkError("the image takes no bytes");
    }
    return record;
}

Image ImageTable::known(const ImageFacts& facts) const {
    const auto found = byKey_.find(facts.key);
    return found == byKey_.end() ? Image::null : found->second;
}

Image ImageTable::append(const ImageFacts& facts, std::optional<ImageFile> file) {
    const std::size_t bytes = sizeof(Record) + facts.palette.size() + facts.key.size() +
                              (file ? file->address.size() : 0);
    budget_->charge(static_cast<std::int64_t>(bytes));
    Record& record = records_.emplace_back();
    record.facts = facts;
    record.palette.assign(facts.palette.begin(), facts.palette.end());
    record.key = facts.key;
    record.facts.palette = {};
    record.facts.key = {};
    record.file = std::move(file);
    const auto image = static_cast<Image>(records_.size());
    if (!record.key.empty()) {
        byKey_.emplace(record.key, image);
    }
    return image;
}

Image ImageTable::add(const ImageFacts& facts, bool& wantsBytes) {
    check(facts);
    wantsBytes = false;
    if (const Image image = known(facts); image != Image::null) {
        return image;
    }
    if (facts.isPlaceholder || store_ == nullptr) {
        return append(facts, std::nullopt);
    }
    if (facts.key.empty()) {
        throw ArtworkError("an image that is to be kept has no key");
    }
    if (auto file = store_->find(facts)) {
        return append(facts, std::move(file));
    }
    std::unique_ptr<ImageSink> sink = store_->begin(facts);
    const Image image = append(facts, std::nullopt);
    wantsBytes = sink != nullptr;
    records_.back().sink = std::move(sink);
    return image;
}

void ImageTable::addBytes(Image image, std::span<const std::byte> bytes) {
    filling(image).sink->add(bytes);
}

void ImageTable::end(Image image) {
    Record& record = filling(image);
    ImageFile file = record.sink->end();
    record.sink.reset();
    budget_->charge(static_cast<std::int64_t>(file.address.size()));
    record.file = std::move(file);
}

void ImageTable::giveUp(Image image) {
    Record& record = filling(image);
    record.sink.reset();
    record.facts.isPlaceholder = true;
}

Image ImageTable::add(const ImageFacts& facts, ImageFile file,
                      std::shared_ptr<const ImageContent> content) {
    check(facts);
    if (const Image image = known(facts); image != Image::null) {
        return image;
    }
    const Image image = append(facts, std::move(file));
    records_.back().content = std::move(content);
    return image;
}

ImageFacts ImageTable::facts(Image image) const {
    const Record& record = at(image);
    ImageFacts facts = record.facts;
    facts.palette = record.palette;
    facts.key = record.key;
    return facts;
}

const ImageFile* ImageTable::file(Image image) const {
    const Record& record = at(image);
    return record.file ? &*record.file : nullptr;
}

void ImageTable::open(Image image) {
    Record& record = at(image);
    if (record.content == nullptr) {
        throw ArtworkError("the bytes of the image are not here");
    }
    record.source = record.content->open();
}

std::size_t ImageTable::read(Image image, std::span<std::byte> into) {
    Record& record = at(image);
    if (record.source == nullptr) {
        throw ArtworkError("the bytes of the image were not opened");
    }
    const std::size_t count = record.source->read(into);
    if (count < into.size()) {
        record.source.reset();
    }
    return count;
}

} // namespace corvane
