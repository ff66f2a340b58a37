#include "app/images/image_file.h"

#include "app/artwork/error.h"
#include "app/images/image_error.h"
#include "app/images/png_file.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {

namespace {

enum class FileKind : std::uint8_t { unknown, png, jpeg };

FileKind kindOf(const ByteSource& file) {
    constexpr std::array png{std::byte{0x89}, std::byte{'P'}, std::byte{'N'}, std::byte{'G'}};
    constexpr std::array jpeg{std::byte{0xFF}, std::byte{0xD8}, std::byte{0xFF}};
    std::array<std::byte, 4> start{};
    if (file.readAt(0, start) == 0) {
        throw ImageError("is empty");
    }
    if (start == png) {
        return FileKind::png;
    }
    return std::ranges::equal(std::span(start).first(3), jpeg) ? FileKind::jpeg : FileKind::unknown;
}

/// Runs `body`; what is wrong with the image gets its name.
template <class Body>
auto named(const std::string& name, Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const ImageError& error) {
        throw ArtworkError(name + ' ' + error.what());
    }
}

class NamedSource final : public ImageSource {
public:
    NamedSource(std::unique_ptr<ImageSource> source, std::string name)
        : source_(std::move(source)), name_(std::move(name)) {}
    std::size_t read(std::span<std::byte> into) override {
        return named(name_, [&] { return source_->read(into); });
    }

private:
    std::unique_ptr<ImageSource> source_;
    std::string name_;
};

/// A file's bytes as they are.
class FileBytes final : public ImageSource {
public:
    explicit FileBytes(std::unique_ptr<ByteSource> file) : file_(std::move(file)) {}
    std::size_t read(std::span<std::byte> into) override {
        const std::size_t count = file_->readAt(offset_, into);
        offset_ += count;
        return count;
    }

private:
    std::unique_ptr<ByteSource> file_;
    std::uint64_t offset_ = 0;
};

class FileContent final : public ImageContent {
public:
    FileContent(std::shared_ptr<const ByteOrigin> file, const ImageFacts& facts, std::string name)
        : file_(std::move(file)), facts_(facts), name_(std::move(name)) {}
    std::unique_ptr<ImageSource> open() const override {
        return named(name_, [&]() -> std::unique_ptr<ImageSource> {
            std::unique_ptr<ByteSource> bytes = file_->open();
            std::unique_ptr<ImageSource> source =
                facts_.coding == ImageCoding::jpeg ? std::make_unique<FileBytes>(std::move(bytes))
                                                   : openPng(std::move(bytes), facts_);
            return std::make_unique<NamedSource>(std::move(source), name_);
        });
    }

private:
    std::shared_ptr<const ByteOrigin> file_;
    ImageFacts facts_; ///< without palette and key
    std::string name_;
};

} // namespace

std::optional<ReadImage> readImage(std::shared_ptr<const ByteOrigin> file, std::string name) {
    const std::unique_ptr<ByteSource> bytes = file->open();
    ReadImage image;
    switch (kindOf(*bytes)) {
    case FileKind::unknown:
        return std::nullopt;
    case FileKind::png: {
        ReadFacts read = readPngFacts(*bytes);
        image.facts = read.facts;
        image.palette = std::move(read.palette);
        break;
    }
    case FileKind::jpeg: {
        const JpegHeader header = readJpegHeader(*bytes);
        image.facts = header.facts;
        image.orientation = header.orientation;
        break;
    }
    }
    image.digest = digestOf(*bytes);
    image.content = std::make_shared<FileContent>(std::move(file), image.facts, std::move(name));
    return image;
}

} // namespace corvane
