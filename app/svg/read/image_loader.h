// The images that an SVG names: each read once, however often it is shown.
#pragma once

#include "app/artwork/document.h"
#include "app/images/image_file.h"
#include "app/images/image_folders.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace corvane {

struct LoadedImage {
    Image image = Image::null;
    Orientation orientation = upright;
    double width = 0; ///< pixels, as they lie in the file
    double height = 0;
};

class ImageLoader {
public:
    /// Without `files` only images that the SVG carries itself are read. `pause` as `readSvg` got
    /// it: it is called while the bytes of an image are looked at.
    ImageLoader(Document& document, const ImageFolders* files, const std::function<void()>& pause)
        : document_(document), files_(files), pause_(pause) {}

    /// The image at an address, which stays where it is in the file's text. `mark` is what a file
    /// of ours says of it: the key of the image of the page and the digest of its file, whose
    /// pixels are not looked at while the digest is right. None where images of that kind or place
    /// are not read. Throws `SvgImageError` where it should be there, and cannot be read.
    std::optional<LoadedImage> load(std::string_view address, std::string_view mark);

    /// An image of the page that no file shows: "640 480 12-0a1b". Null where the text is not that.
    Image loadKept(std::string_view text);

    /// Links art to the EPSF file of that address, which the picture that it shows was made of. A
    /// picture that was changed since, and a file that is not there or not to be read, link
    /// nothing.
    void link(Art placed, std::string_view address);

private:
    std::optional<LoadedImage> read(std::string_view address, std::string_view mark);
    std::optional<ReadImage> look(std::string_view address, const std::string& name);

    Document& document_;
    const ImageFolders* files_;
    const std::function<void()>& pause_;
    /// By the place of the address in the text, and of the mark.
    std::map<std::pair<const char*, const char*>, std::optional<LoadedImage>> byPlace_;
    std::map<std::pair<std::string, std::string_view>, std::optional<LoadedImage>> byAddress_;
    /// By the path of the file: addresses of one file may be spelled in many ways.
    std::unordered_map<std::string, std::optional<ReadImage>> byPath_;
    /// Images of no page by the digest of their file.
    std::unordered_map<std::uint64_t, LoadedImage> byDigest_;
};

} // namespace corvane
