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

[[noreturn]] void refuseChanged() {
    throw ImageError("has changed while it was read");
}

/// A file's bytes as they are.
class FileBytes final : public ImageSource {
public:
    FileBytes(std::unique_ptr<ByteSource> file, std::uint64_t digest)
        : file_(std::move(file)), stream_(*file_, digest) {}
    std::size_t read(std::span<std::byte> into) override {
        const std::size_t count = stream_.read(into);
        if (count < into.size()) {
            stream_.finish();
        }
        return count;
    }

private:
    std::unique_ptr<ByteSource> file_;
    SourceStream stream_;
};

std::unique_ptr<ImageSource> openJpeg(std::unique_ptr<ByteSource> file, const ImageFacts& known,
                                      std::uint64_t digest) {
    const ImageFacts now = readJpegHeader(*file).facts;
    if (now.width != known.width || now.height != known.height || now.colours != known.colours ||
        now.isInverted != known.isInverted) {
        refuseChanged();
    }
    return std::make_unique<FileBytes>(std::move(file), digest);
}

class FileContent final : public ImageContent {
public:
    FileContent(std::shared_ptr<const ByteOrigin> file, ReadFacts known, std::uint64_t digest,
                std::string name)
        : file_(std::move(file)), known_(std::move(known)), digest_(digest),
          name_(std::move(name)) {}
    std::unique_ptr<ImageSource> open() const override {
        return named(name_, [&]() -> std::unique_ptr<ImageSource> {
            std::unique_ptr<ByteSource> bytes = file_->open();
            return std::make_unique<NamedSource>(
                known_.facts.coding == ImageCoding::jpeg
                    ? openJpeg(std::move(bytes), known_.facts, digest_)
                    : openPng(std::move(bytes), known_, digest_),
                name_);
        });
    }

private:
    std::shared_ptr<const ByteOrigin> file_;
    ReadFacts known_; ///< without key
    std::uint64_t digest_;
    std::string name_;
};

/// Looks for the end marker of a JPEG, behind its first scan: previews, which have ends of their
/// own, stand in front of that, and data of scans hold no such bytes.
class EndFinder {
public:
    explicit EndFinder(std::uint64_t scan) : left_(scan) {}

    void add(std::span<const std::byte> bytes) {
        const std::size_t passed =
            static_cast<std::size_t>(std::min<std::uint64_t>(left_, bytes.size()));
        left_ -= passed;
        bytes = bytes.subspan(passed);
        constexpr std::byte lead{0xFF};
        constexpr std::byte end{0xD9};
        while (!isFound_ && !bytes.empty()) {
            isFound_ = isBehindLead_ && bytes.front() == end;
            const auto next = std::find(bytes.begin(), bytes.end(), lead);
            isBehindLead_ = next != bytes.end();
            bytes = bytes.subspan(static_cast<std::size_t>(next - bytes.begin()) +
                                  (isBehindLead_ ? 1 : 0));
        }
    }
    bool isFound() const { return isFound_; }

private:
    std::uint64_t left_; ///< bytes that are not looked at
    bool isBehindLead_ = false;
    bool isFound_ = false;
};

ReadImage readPng(const ByteSource& bytes, const ByteUse& use) {
    ReadImage image;
    ReadFacts read = readPngFacts(bytes);
    image.facts = read.facts;
    image.palette = std::move(read.palette);
    image.digest = digestOf(bytes, use);
    return image;
}

ReadImage readJpeg(const ByteSource& bytes, const ByteUse& use) {
    ReadImage image;
    const JpegHeader header = readJpegHeader(bytes);
    image.facts = header.facts;
    image.orientation = header.orientation;
    EndFinder end(header.scan.value_or(0));
    image.digest = digestOf(bytes, [&](std::span<const std::byte> block) {
        use(block);
        end.add(block);
    });
    image.isCutShort = !header.scan || !end.isFound();
    return image;
}

} // namespace

std::optional<ReadImage> readImage(std::shared_ptr<const ByteOrigin> file, std::string name,
                                   const std::function<void()>& pause) {
    const std::unique_ptr<ByteSource> bytes = file->open();
    const auto use = [&](std::span<const std::byte>) {
        if (pause) {
            pause();
        }
    };
    const FileKind kind = kindOf(*bytes);
    if (kind == FileKind::unknown) {
        return std::nullopt;
    }
    ReadImage image = kind == FileKind::png ? readPng(*bytes, use) : readJpeg(*bytes, use);
    image.content = std::make_shared<FileContent>(
        std::move(file), ReadFacts{image.facts, image.palette}, image.digest, std::move(name));
    return image;
}

} // namespace corvane
