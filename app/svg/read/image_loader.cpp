#include "app/svg/read/image_loader.h"

#include "app/images/image_error.h"
#include "app/svg/reader.h"
#include "host/files.h"

#include <charconv>
#include <system_error>
#include <utility>

namespace corvane {

namespace {

/// Addresses up to here are also known by what they say, not only by where they stand.
constexpr std::size_t shortAddress = 4096;

/// What `data-image` says.
struct PageMark {
    std::string_view key;
    std::optional<std::uint64_t> digest;
};

PageMark parseMark(std::string_view text) {
    PageMark mark;
    const std::size_t blank = text.find(' ');
    mark.key = text.substr(0, blank);
    if (blank != std::string_view::npos) {
        const std::string_view digits = text.substr(blank + 1);
        std::uint64_t digest = 0;
        const char* const end = digits.data() + digits.size();
        const auto read = std::from_chars(digits.data(), end, digest, 16);
        if (read.ec == std::errc() && read.ptr == end) {
            mark.digest = digest;
        }
    }
    return mark;
}

/// For messages: the last part of a name that is long.
std::string nameOf(std::string_view address, bool isEmbedded) {
    if (isEmbedded) {
        return "an embedded image";
    }
    constexpr std::size_t most = 80;
    const bool isLong = address.size() > most;
    return "the image " + (isLong ? "..." + std::string(address.substr(address.size() - most))
                                  : std::string(address));
}

} // namespace

std::optional<LoadedImage> ImageLoader::load(std::string_view address, std::string_view mark) {
    const auto place = std::pair(address.data(), mark.data());
    if (const auto known = byPlace_.find(place); known != byPlace_.end()) {
        return known->second;
    }
    std::optional<LoadedImage> image;
    if (address.size() <= shortAddress) {
        const auto text = std::pair(std::string(address), mark);
        const auto known = byAddress_.find(text);
        image = known != byAddress_.end() ? known->second : read(address, mark);
        byAddress_.emplace(text, image);
    } else {
        image = read(address, mark);
    }
    byPlace_.emplace(place, image);
    return image;
}

std::optional<ReadImage> ImageLoader::look(std::string_view address, const std::string& name) {
    try {
        if (addressKind(address) == AddressKind::embedded) {
            return readImage(memoryOrigin(embeddedBytes(address)), name, pause_);
        }
        const std::string path = files_->find(address);
        const auto known = byPath_.find(path);
        return known != byPath_.end()
                   ? known->second
                   : byPath_.emplace(path, readImage(resolvedFileOrigin(path), name, pause_))
                         .first->second;
    } catch (const ImageError& error) {
        throw SvgImageError(name + ' ' + error.what());
    }
}

std::optional<LoadedImage> ImageLoader::read(std::string_view address, std::string_view mark) {
    const AddressKind kind = addressKind(address);
    if (address.empty() || kind == AddressKind::network ||
        (kind == AddressKind::file && files_ == nullptr)) {
        return std::nullopt;
    }
    const std::string name = nameOf(address, kind == AddressKind::embedded);
    const std::optional<ReadImage> found = look(address, name);
    if (!found) {
        return std::nullopt;
    }
    const PageMark page = parseMark(mark);
    const bool isOfPage = page.digest && *page.digest == found->digest;
    if (found->isCutShort && !isOfPage) {
        throw SvgImageError(name + " is cut short");
    }
    if (const auto known = byDigest_.find(found->digest); !isOfPage && known != byDigest_.end()) {
        return known->second;
    }
    LoadedImage image;
    image.width = found->facts.width;
    image.height = found->facts.height;
    ImageFacts facts = found->facts;
    facts.palette = found->palette;
    // The matrix of a placed object says how the picture is turned.
    ImageFile file{.address = std::string(address),
                   .digest = {},
                   .ignoresOrientation = found->orientation != upright};
    if (isOfPage) {
        facts.key = page.key;
        file.digest = page.digest;
    } else {
        image.orientation = found->orientation;
    }
    image.image = document_.images().add(facts, std::move(file), found->content);
    if (!isOfPage) {
        byDigest_.emplace(found->digest, image);
    }
    return image;
}

void ImageLoader::link(Art placed, std::string_view address) {
    const Image image = document_.placedImage(placed).image;
    const ImageFile* const shown = document_.images().file(image);
    const bool isAsItWas = shown == nullptr || shown->digest;
    if (files_ == nullptr || !isAsItWas || addressKind(address) != AddressKind::file) {
        return;
    }
    PlacedFile file;
    try {
        if (makeFileSpecification(files_->find(address), file.location) != noErr) {
            return;
        }
    } catch (const ImageError&) {
        return;
    }
    const ImageFacts facts = document_.images().facts(image);
    file.view = {image, facts.width, facts.height, std::string(address)};
    document_.setPlacedFile(placed, document_.placedFiles().add(std::move(file)));
}

Image ImageLoader::loadKept(std::string_view text) {
    ImageFacts facts;
    facts.isPlaceholder = true;
    for (std::int32_t* const side : {&facts.width, &facts.height}) {
        const char* const end = text.data() + text.size();
        const auto read = std::from_chars(text.data(), end, *side);
        if (read.ec != std::errc()) {
            return Image::null;
        }
        text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
        text.remove_prefix(text.starts_with(' ') ? 1 : 0);
    }
    facts.key = text;
    try {
        bool wantsBytes = false;
        return document_.images().add(facts, wantsBytes);
    } catch (const ArtworkError&) {
        return Image::null; // not as we write it
    }
}

} // namespace corvane
