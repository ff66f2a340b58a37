// What art of each kind is in SVG. Paths and compound paths are treated alike: subpaths in one
// style. Text without runs, and a placed object that shows no image, are nothing.
#pragma once

#include "app/artwork/document.h"

namespace corvane {

enum class SvgObject {
    none, ///< is not written
    group,
    shape,
    text,
    image
};

inline SvgObject svgObject(const Document& document, Art art) {
    switch (document.kind(art)) {
    case ArtKind::group:
        return SvgObject::group;
    case ArtKind::path:
    case ArtKind::compound:
        return SvgObject::shape;
    case ArtKind::text:
        return document.textRunCount(art) == 0 ? SvgObject::none : SvgObject::text;
    case ArtKind::placed:
        return document.placedImage(art).image == Image::null ? SvgObject::none : SvgObject::image;
    case ArtKind::unknown:
        break;
    }
    return SvgObject::none;
}

inline bool isShape(const Document& document, Art art) {
    return svgObject(document, art) == SvgObject::shape;
}

/// Calls `use(Art path)` for a path itself, or for each path of a compound path in the order in
/// which they were drawn: from the back.
template <class Use>
void forEachSubpath(const Document& document, Art shape, Use use) {
    if (document.kind(shape) != ArtKind::compound) {
        use(shape);
        return;
    }
    for (Art path = document.lastChild(shape); path != Art::null;
         path = document.previousSibling(path)) {
        use(path);
    }
}

/// The path whose style and flags hold for the whole shape: itself, or the first of a compound
/// path; null where that is empty.
inline Art leadingPath(const Document& document, Art shape) {
    return document.kind(shape) == ArtKind::compound ? document.firstChild(shape) : shape;
}

} // namespace corvane
