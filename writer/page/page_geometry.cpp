#include "writer/page/page_geometry.h"

#include "output/primitives.h"
#include "reader/page/page_matrix.h"
#include "runtime/callbacks.h"
#include "runtime/extension.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

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

/// The page as it lay on the artboard when it was opened.
struct OpenedPage {
    Box mediaBox;
    Box cropBox;
    PageMatrix matrix;
};

OpenedPage openedPage(DocumentCache& cache, const PageBase* base) {
    if (base != nullptr) {
        return {base->mediaBox, base->cropBox, base->matrix};
    }
    return {mediaCache(cache), cropCache(cache), pageMatrix(cache)};
}

/// Whether the host still has what opening the page gave it. No bounds at all are no change.
bool isUnchanged(const OpenedPage& opened, const ArtboardSize& size, const Rect& crop) {
    const ArtboardSize former = hostSize(turnedBox(opened.matrix, opened.mediaBox));
    return size.width == former.width && size.height == former.height &&
           (crop == hostRect(turnedBox(opened.matrix, opened.cropBox)) ||
            callHost(slot::rectEmpty, &crop));
}

/// Whether the artwork came from no page and is as large as what is seen of this one. Editors that
/// drop all marks leave no more of where it lay.
bool isTakenForSeen(const ArtboardSize& size, const Rect& bounds, const Rect& seen) {
    const auto extension = knownExtension();
    constexpr Fixed room = fixedOne / 100;
    const auto isNear = [](std::int64_t a, std::int64_t b) { return std::abs(a - b) <= room; };
    return extension && extension->artworkDigest == nullptr && bounds.left == 0 &&
           bounds.bottom == 0 && bounds.right == size.width && bounds.top == size.height &&
           isNear(size.width, std::int64_t{seen.right} - seen.left) &&
           isNear(size.height, std::int64_t{seen.top} - seen.bottom);
}

/// A box of the artboard in the page's own space.
Box placedBox(const PageGeometry& geometry, const Rect& rect) {
    const Box box{realFromFixed(rect.left), realFromFixed(rect.bottom), realFromFixed(rect.right),
                  realFromFixed(rect.top)};
    return rules().keepsGeometry ? turnedBox({.fixed = {}, .exact = geometry.placement}, box) : box;
}

/// A number; one beyond 16.16 is read back as an integer only, and beyond 32 bits not at all.
void writeCoordinate(Filter& output, double value) {
    constexpr double largestInteger = std::numeric_limits<std::int32_t>::max();
    constexpr double largestFixed = largestInteger / fixedOne;
    if (std::abs(value) <= largestFixed) {
        fixedOutput(output, fixedFromReal(value));
    } else {
        const double whole = std::clamp(std::nearbyint(value), -largestInteger, largestInteger);
        integerOutput(output, static_cast<std::int32_t>(whole));
    }
}

} // namespace

PageGeometry pageGeometry(DocumentCache& cache, const PageBase* base) {
    ArtboardSize size;
    callHost(slot::getArtboardSize, &size);
    Rect crop;
    callHost(slot::getPageBounds, &crop);
    PageGeometry geometry;
    if (rules().keepsGeometry) {
        const OpenedPage opened = openedPage(cache, base);
        // A turn by right angles and a move always has one.
        geometry.placement =
            withoutSignedZeros(inverse(opened.matrix.exact).value_or(RealMatrix()));
        if (isUnchanged(opened, size, crop)) {
            geometry.mediaBox = opened.mediaBox;
            geometry.cropBox = opened.cropBox;
            // An earlier save may have given the page a new size.
            geometry.kept =
                opened.mediaBox == mediaCache(cache) && opened.cropBox == cropCache(cache);
            return geometry;
        }
        const Rect seen = hostRect(turnedBox(opened.matrix, opened.cropBox));
        if (base == nullptr && isTakenForSeen(size, crop, seen)) {
            geometry.placement =
                multiply({.tx = realFromFixed(seen.left), .ty = realFromFixed(seen.bottom)},
                         geometry.placement);
            geometry.mediaBox = opened.mediaBox;
            geometry.cropBox = opened.cropBox;
            geometry.kept = true;
            return geometry;
        }
    }
    const Rect media = mediaRect(size, crop);
    geometry.mediaBox = placedBox(geometry, media);
    geometry.cropBox = placedBox(geometry, fittedCrop(crop, media));
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

void writeBox(Filter& output, std::string_view key, const Box& box) {
    nameOutput(output, key);
    stringOutput(output, "[ ");
    for (const double edge : {box.left, box.bottom, box.right, box.top}) {
        writeCoordinate(output, edge);
    }
    stringOutput(output, "]\r");
}

} // namespace corvane
