#include "writer/page/page_geometry.h"

#include "reader/page/page_matrix.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

namespace corvane {

namespace {

Rect rectOf(Fixed left, Fixed top, Fixed right, Fixed bottom) {
    Rect rect;
    callHost(slot::setRect, &rect, left, top, right, bottom);
    return rect;
}

Fixed limitedSide(Fixed side, Warning warning) {
    if (side < rules().smallestPage) {
        raiseWarning(warning);
        return rules().smallestPage;
    }
    if (side > rules().largestPage) {
        raiseWarning(warning);
        return rules().largestPage;
    }
    return side;
}

/// The rectangle of that size, within the limits, at the origin.
Rect limitedRect(Fixed width, Fixed height, Warning warning) {
    width = limitedSide(width, warning);
    height = limitedSide(height, warning);
    return rectOf(0, height, width, 0);
}

/// The media box on the artboard. Bounds that are as large as the artboard are the artboard,
/// wherever they lie: a page that was resized did not grow from its lower left corner.
Rect mediaRect(const ArtboardSize& size, const Rect& bounds) {
    const Rect atOrigin = limitedRect(size.width, size.height, Warning::pageSize);
    const bool isBounds = std::int64_t{bounds.right} - bounds.left == size.width &&
                          std::int64_t{bounds.top} - bounds.bottom == size.height;
    const bool isLimited = atOrigin.right != size.width || atOrigin.top != size.height;
    return rules().keepsGeometry && isBounds && !isLimited ? bounds : atOrigin;
}

/// The crop box for `crop` on a page of `media`.
Rect fittedCrop(const Rect& crop, const Rect& media) {
    if (callHost(slot::rectEmpty, &crop)) {
        return media;
    }
    Rect common;
    callHost(slot::sectRect, &crop, &media, &common);
    if (callHost(slot::rectEmpty, &common)) {
        raiseWarning(Warning::cropArea);
        return limitedRect(fixedFromReal(realFromFixed(crop.right) - realFromFixed(crop.left)),
                           fixedFromReal(realFromFixed(crop.top) - realFromFixed(crop.bottom)),
                           Warning::cropArea);
    }
    if (!callHost(slot::rectsEqual, &common, &crop)) {
        raiseWarning(Warning::cropArea);
        return common;
    }
    return crop;
}

/// Whether the host still has what opening the page gave it. No bounds at all are no change.
bool isUnchanged(DocumentCache& cache, const PageMatrix& matrix, const ArtboardSize& size,
                 const Rect& crop) {
    const ArtboardSize opened = hostSize(turnedBox(matrix, mediaCache(cache)));
    return size.width == opened.width && size.height == opened.height &&
           (crop == hostRect(turnedBox(matrix, cropCache(cache))) ||
            callHost(slot::rectEmpty, &crop));
}

/// A box of the artboard in the page's own space.
Box placedBox(const PageGeometry& geometry, const Rect& rect) {
    const Box box{realFromFixed(rect.left), realFromFixed(rect.bottom), realFromFixed(rect.right),
                  realFromFixed(rect.top)};
    return rules().keepsGeometry ? turnedBox({.fixed = {}, .exact = geometry.placement}, box) : box;
}

} // namespace

PageGeometry pageGeometry(DocumentCache& cache) {
    ArtboardSize size;
    callHost(slot::getArtboardSize, &size);
    Rect crop;
    callHost(slot::getPageBounds, &crop);
    PageGeometry geometry;
    if (rules().keepsGeometry) {
        const PageMatrix matrix = pageMatrix(cache);
        // A turn by right angles and a move always has one.
        geometry.placement = withoutSignedZeros(inverse(matrix.exact).value_or(RealMatrix()));
        geometry.kept = isUnchanged(cache, matrix, size, crop);
    }
    if (!geometry.kept) {
        const Rect media = mediaRect(size, crop);
        geometry.mediaBox = placedBox(geometry, media);
        geometry.cropBox = placedBox(geometry, fittedCrop(crop, media));
    }
    return geometry;
}

PageFacts factsOf(DocumentCache& cache, const PageGeometry& geometry) {
    PageFacts facts = factsCache(cache);
    if (!geometry.kept) {
        facts.mediaBox = geometry.mediaBox;
        facts.cropBox = geometry.cropBox;
        facts.rotate = rules().keepsGeometry ? facts.rotate : 0;
    }
    return facts;
}

} // namespace corvane
