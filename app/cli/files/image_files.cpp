#include "app/cli/files/image_files.h"

#include "app/artwork/error.h"
#include "app/cli/files/output.h"
#include "app/images/byte_source.h"
#include "app/images/image_encoder.h"
#include "app/images/image_error.h"
#include "app/images/written_file.h"

#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

/// Whether there is a file that is not empty. What is no file of its own, such as a link or a pipe,
/// is neither read nor replaced.
bool isThere(const std::string& path) {
    struct stat facts {};
    if (lstat(path.c_str(), &facts) != 0) {
        return false;
    }
    if (!S_ISREG(facts.st_mode)) {
        throw Failure({code::io, path + " is no regular file, and an image would have that name; "
                                        "remove it, or name another folder with --images"});
    }
    return facts.st_size != 0;
}

/// The digest of a file as it is; none where it cannot be read.
template <class Digest>
std::optional<std::uint64_t> digestAt(const std::string& path, Digest digest) {
    try {
        return digest(*fileOrigin(path)->open());
    } catch (const ImageError&) {
        return std::nullopt;
    }
}

bool isLetter(const ImageFacts& facts) {
    return facts.key.starts_with("glyph");
}

class NoSink final : public ByteSink {
public:
    std::error_code write(std::string_view /*bytes*/) override { return {}; }
};

} // namespace

/// Runs `body`; what it raised is kept, for the plug-in stands between here and the command.
template <class Body>
auto ImageFiles::remember(Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const Failure& failure) {
        fault_ = failure.fault();
        throw;
    } catch (const ImageError& error) {
        throw ArtworkError("an image " + std::string(error.what()));
    }
}

class ImageFiles::NewFile final : public ImageSink {
public:
    NewFile(ImageFiles& files, const ImageFacts& facts, std::string path,
            const OutputTarget& target)
        : files_(files), path_(std::move(path)), output_(target), encoder_(facts, output_) {}

    void add(std::span<const std::byte> bytes) override {
        files_.remember([&] { require(encoder_.add(bytes)); });
    }

    ImageFile end() override {
        return files_.remember([&] {
            output_.commit(encoder_.end());
            files_.written_.push_back(path_);
            return ImageFile{files_.addressOf(path_), encoder_.digest(),
                             encoder_.orientation() != upright};
        });
    }

private:
    void require(std::error_code error) const {
        if (error) {
            throw Failure(outputFault(path_, error));
        }
    }

    ImageFiles& files_;
    std::string path_;
    OutputFile output_;
    ImageEncoder encoder_;
};

/// A JPEG that is there: what the page has of it tells whether it is still the same.
class ImageFiles::SameFile final : public ImageSink {
public:
    SameFile(ImageFiles& files, const ImageFacts& facts, std::string path)
        : files_(files), path_(std::move(path)), encoder_(facts, nowhere_) {}

    void add(std::span<const std::byte> bytes) override { encoder_.add(bytes); }

    ImageFile end() override {
        encoder_.end();
        files_.noteFound(digestAt(path_, [](const ByteSource& file) { return digestOf(file); }) !=
                         encoder_.digest());
        return {files_.addressOf(path_), encoder_.digest(), encoder_.orientation() != upright};
    }

private:
    ImageFiles& files_;
    std::string path_;
    NoSink nowhere_;
    ImageEncoder encoder_;
};

ImageFiles::ImageFiles(ImageFolder& folder, const std::string& output, std::string input)
    : folder_(folder), place_(folder.path()), address_(folderAddress(output, place_)),
      input_(std::move(input)) {}

ImageFiles::~ImageFiles() {
    if (!isKept_) {
        for (const std::string& path : written_) {
            unlink(path.c_str());
        }
    }
}

void ImageFiles::keep() {
    isKept_ = true;
    folder_.keep();
}

std::string ImageFiles::pathOf(const ImageFacts& facts) const {
    return place_ + "/" + std::string(facts.key) +
           (facts.coding == ImageCoding::jpeg ? ".jpg" : ".png");
}

std::string ImageFiles::addressOf(const std::string& path) const {
    return address_ + path.substr(path.rfind('/'));
}

void ImageFiles::noteFound(bool isChanged) {
    ++found_;
    changed_ += isChanged ? 1 : 0;
}

std::optional<ImageFile> ImageFiles::find(const ImageFacts& facts) {
    if (isLetter(facts)) {
        return letters_.find(facts);
    }
    return remember([&]() -> std::optional<ImageFile> {
        const std::string path = pathOf(facts);
        if (facts.coding == ImageCoding::jpeg || !isThere(path)) {
            return std::nullopt;
        }
        const std::optional<std::uint64_t> digest =
            digestAt(path, [&](const ByteSource& file) { return digestOfOwnPng(file, facts.key); });
        noteFound(!digest);
        return ImageFile{addressOf(path), digest};
    });
}

std::unique_ptr<ImageSink> ImageFiles::begin(const ImageFacts& facts) {
    if (isLetter(facts)) {
        return letters_.begin(facts);
    }
    return remember([&]() -> std::unique_ptr<ImageSink> {
        const std::string path = pathOf(facts);
        if (isThere(path)) {
            return std::make_unique<SameFile>(*this, facts, path);
        }
        if (folder_.use().empty()) {
            throw Failure(outputFault(place_, lastError()));
        }
        OutputTarget target = outputTarget(path, input_, true);
        target.isFirst = written_.empty();
        target.isSynced = false;
        return std::make_unique<NewFile>(*this, facts, path, target);
    });
}

} // namespace corvane
