#include "app/images/epsf_viewer.h"

#include "app/artwork/error.h"
#include "app/artwork/images/image_table.h"
#include "app/images/base64.h"
#include "app/images/epsf_file.h"
#include "app/images/image_error.h"
#include "host/files.h"
#include "runtime/digest.h"

#include <array>
#include <cstdio>
#include <span>
#include <vector>

namespace corvane {

namespace {

constexpr std::size_t blockBytes = std::size_t{64} << 10;

/// Hands all bytes to `use`, a block at a time.
template <class Use>
void forEachBlock(const ImageContent& content, Use&& use) {
    const std::unique_ptr<ImageSource> source = content.open();
    std::vector<std::byte> block(blockBytes);
    std::size_t count = block.size();
    while (count == block.size()) {
        count = source->read(block);
        use(std::span<const std::byte>(block).first(count));
    }
}

/// By what is seen: equal pictures of several files are one.
std::string keyOf(const EpsfPicture& picture) {
    Digest digest;
    const std::array sides = {picture.facts.width, picture.facts.height};
    digest.feed(std::as_bytes(std::span(sides)));
    digest.feed(std::as_bytes(std::span(picture.palette)));
    forEachBlock(*picture.content, [&](std::span<const std::byte> bytes) { digest.feed(bytes); });
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "epsf-%016llx",
                  static_cast<unsigned long long>(digest.value()));
    return text.data();
}

Image addPicture(ImageTable& images, const EpsfPicture& picture) {
    const std::string key = keyOf(picture);
    ImageFacts facts = picture.facts;
    facts.palette = picture.palette;
    facts.key = key;
    bool wantsBytes = false;
    const Image image = images.add(facts, wantsBytes);
    if (wantsBytes) {
        forEachBlock(*picture.content,
                     [&](std::span<const std::byte> bytes) { images.addBytes(image, bytes); });
        images.end(image);
    }
    return image;
}

} // namespace

EpsfViewer::~EpsfViewer() {
    for (FileSpecification& file : files_) {
        ParamBlock block;
        block.ioNamePtr = file.name;
        block.ioVRefNum = file.volume;
        block.ioDirID = file.directory;
        PBDeleteSync(&block);
    }
}

PlacedView EpsfViewer::view(const FileSpecification& location, ImageTable& images) {
    const std::string path = posixPathOf(location.volume, location.directory, location.name);
    if (path.empty()) {
        throw ArtworkError("there is no place for an EPSF file");
    }
    files_.push_back(location);
    PlacedView view;
    view.address = address_ + escapedPath(path.substr(path.rfind('/')));
    std::optional<EpsfPicture> picture;
    try {
        picture = readEpsf(fileOrigin(path));
    } catch (const ImageError& error) {
        throw ArtworkError("the EPSF file " + path + ' ' + error.what());
    }
    if (picture) {
        view.width = picture->facts.width;
        view.height = picture->facts.height;
        view.image = addPicture(images, *picture);
    } else {
        bool wantsBytes = false;
        view.image = images.add({.width = 1, .height = 1, .isPlaceholder = true}, wantsBytes);
    }
    return view;
}

} // namespace corvane
