// The images of a page, each told to the host once.
#pragma once

#include "host/appearance.h"
#include "host/image.h"
#include "objects/object.h"
#include "reader/document/cache.h"

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace corvane {

/// An image as the host has it.
struct KnownImage {
    Image image = Image::null; ///< null: none, or one that cannot be told
    /// Whether its pixels run into one another where they are enlarged; nothing where the file does
    /// not say.
    std::optional<bool> isSmooth = std::nullopt;
    bool isStencil = false;   ///< its pixels have the colour that it was asked for with
    bool hasSoftMask = false; ///< of its own, which counts instead of that of the state
    std::optional<RenderingIntent> intent = std::nullopt; ///< the same
};

class PageImages {
public:
    /// The image of an XObject: an entry of the resources, a stream or a reference to one, and the
    /// stream that it leads to. A stencil is another image in another `fill`.
    KnownImage find(DocumentCache& cache, const Object& entry, const Object& stream,
                    const Colour& fill);

private:
    struct Entry {
        Colour fill; ///< of stencils
        KnownImage known;
    };

    /// By the number of the object and that of the default spaces; the fills that stencils had.
    std::map<std::pair<std::int32_t, std::size_t>, std::vector<Entry>> byNumber_;
};

/// The rendering intent that the dictionary names; nothing where it names none.
std::optional<RenderingIntent> intentOfImage(DocumentCache& cache, const Object& dictionary);

/// Whether the dictionary says that pixels run into one another; nothing where it does not say.
std::optional<bool> smoothnessOf(DocumentCache& cache, const Object& dictionary);
/// Whether it is a mask, through which the fill in force is painted.
bool isStencilImage(DocumentCache& cache, const Object& dictionary);

} // namespace corvane
