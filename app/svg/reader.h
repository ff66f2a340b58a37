// Reads SVG into artwork: our own exactly as it was written, anybody's as plain art.
#pragma once

#include "app/artwork/document.h"
#include "app/artwork/provenance.h"
#include "app/images/image_folders.h"
#include "host/matrix.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace corvane {

/// An image that a file of artwork shows and the artwork does not hold: it comes from the network,
/// or is neither PNG nor JPEG.
struct SvgImage {
    std::string id;        ///< of the element; empty where it has none
    std::string href;      ///< as written; of an embedded image only what stands before its data
    bool embedded = false; ///< a "data:" address: the image is in the file of artwork itself
    double x = 0;          ///< the rectangle that shows it, in its user space, y downwards
    double y = 0;
    double width = 0; ///< 0: as the image has it
    double height = 0;
    RealMatrix matrix; ///< from that user space to the art
};

/// A layer of the PDF that the person showed or hid in some of its groups alone.
struct SplitLayer {
    std::string name;
    bool isVisible = true; ///< in these
    std::int32_t changed = 0;
    std::int32_t groups = 0; ///< all of them
};

/// What a file of artwork says besides the artwork.
struct SvgReading {
    Provenance provenance; ///< what a file of ours remembers of its page
    bool ours = false;     ///< written by this program, as the file says or its reader knows
    /// How many elements or properties were ignored because artwork cannot hold them, by kind
    /// ("filter", "text", "opacity", "animate").
    std::map<std::string, std::int32_t> ignored;
    /// Of the elements that are ignored as "image": all of them, in the order in which they are
    /// read.
    std::vector<SvgImage> images;
    std::vector<SplitLayer> splitLayers;
};

/// The page that a file of ours was made of.
struct OpenedPage {
    Provenance provenance;
    Page page;
};

/// The text is no SVG, or passes a limit. The sentence says what is wrong, and in which line.
class SvgError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An image that cannot be read: its file is missing, damaged, or not to be read.
class SvgImageError : public SvgError {
public:
    using SvgError::SvgError;
};

/// Called before each element, with how many bytes of the text were read. It may end the reading by
/// what it throws.
using ReadingPause = std::function<void(std::size_t done)>;

/// Reads `text`, which is taken over and changed in place, into `document`, which is new but for
/// the profile of its page, which counts where the file is not ours: in the original one opacity,
/// blending and masks are ignored. Files of
/// images are read as `files` says, without it none; nothing else is ever read from disk or
/// network, whatever the text refers to. Throws `SvgError`, and `ArtworkError` where the artwork's
/// own limits are passed; the document is then of no use.
///
/// `opened` counts where the root does not say any more where the file came from, since some
/// editors drop all our marks: the file is one of ours then, and of that page.
///
/// `pause` is not called while the text is taken apart into elements, which is the smaller part.
SvgReading readSvg(std::string text, Document& document, const ReadingPause& pause = {},
                   const ImageFolders* files = nullptr, const OpenedPage* opened = nullptr);

} // namespace corvane
