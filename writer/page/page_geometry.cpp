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

/// The artboard and what is seen of it, as the host has them.
struct ArtArea {
    ArtboardSize size;
    Rect crop;
};

bool isFromNoPage() {
    const auto extension = knownExtension();
    return extension && extension->artworkDigest == nullptr;
}

/// The units of the page's own space that a unit of the artwork is. Artwork of the page is in
/// those, artwork that came from no page in points of paper, as its host counts.
double unitsOf(DocumentCache& cache) {
    constexpr double most = 1e6; // of what is no unit of any paper
    return isFromNoPage() ? 1 / std::clamp(userUnitCache(cache), 1 / most, most) : 1;
}

ArtArea scaled(const ArtArea& area, double scale) {
    const auto side = [&](Fixed length) { return fixedFromReal(realFromFixed(length) * scale); };
    return {{side(area.size.width), side(area.size.height)},
            rectOf(side(area.crop.left), side(area.crop.top), side(area.crop.right),
                   side(area.crop.bottom))};
}

/// Whether the artwork came from no page and is as large as what is seen of this one. Editors that
/// drop all marks leave no more of where it lay.
bool isTakenForSeen(const ArtboardSize& size, const Rect& bounds, const Rect& seen) {
    constexpr Fixed room = fixedOne / 100;
    const auto isNear = [](std::int64_t a, std::int64_t b) { return std::abs(a - b) <= room; };
    return isFromNoPage() && bounds.left == 0 && bounds.bottom == 0 && bounds.right == size.width &&
           bounds.top == size.height && isNear(size.width, std::int64_t{seen.right} - seen.left) &&
           isNear(size.height, std::int64_t{seen.top} - seen.bottom);
}

/// A box of the artboard in the page's own space.
Box placedBox(const RealMatrix& placement, const Rect& rect) {
    const Box box{realFromFixed(rect.left), realFromFixed(rect.bottom), realFromFixed(rect.right),
                  realFromFixed(rect.top)};
    return rules().keepsGeometry ? turnedBox({.fixed = {}, .exact = placement}, box) : box;
}

/// Where the artwork lies on a page that keeps its boxes; nothing where they do not fit.
std::optional<RealMatrix> placeOnKept(const OpenedPage& opened, const RealMatrix& back,
                                      const ArtArea& area, bool hasBase) {
    if (isUnchanged(opened, area.size, area.crop)) {
        return back;
    }
    const Rect seen = hostRect(turnedBox(opened.matrix, opened.cropBox));
    if (!hasBase && isTakenForSeen(area.size, area.crop, seen)) {
        return multiply({.tx = realFromFixed(seen.left), .ty = realFromFixed(seen.bottom)}, back);
    }
    return std::nullopt;
}

/// A number, to the nearest of 16.16 or exactly; one beyond 16.16 is read back as an integer only,
/// and beyond 32 bits not at all.
void writeCoordinate(Filter& output, double value, BoxDigits digits) {
    constexpr double largestInteger = std::numeric_limits<std::int32_t>::max();
    constexpr double largestFixed = largestInteger / fixedOne;
    if (std::abs(value) <= largestFixed) {
        digits == BoxDigits::all ? realOutput(output, value)
                                 : fixedOutput(output, fixedFromReal(value));
    } else {
        const double whole = std::clamp(std::nearbyint(value), -largestInteger, largestInteger);
        integerOutput(output, static_cast<std::int32_t>(whole));
    }
}

} // namespace

PageGeometry pageGeometry(DocumentCache& cache, const PageBase* base) {
    ArtArea area;
    callHost(slot::getArtboardSize, &area.size);
    callHost(slot::getPageBounds, &area.crop);
    PageGeometry geometry;
    RealMatrix back;
    if (rules().keepsGeometry) {
        const double scale = unitsOf(cache);
        area = scale == 1 ? area : scaled(area, scale);
        const OpenedPage opened = openedPage(cache, base);
        // A turn by right angles and a move always has one.
        back = withoutSignedZeros(inverse(opened.matrix.exact).value_or(RealMatrix()));
        const RealMatrix units{.a = scale, .d = scale};
        geometry.placement = multiply(units, back);
        if (const auto kept = placeOnKept(opened, back, area, base != nullptr)) {
            geometry.placement = multiply(units, *kept);
            geometry.mediaBox = opened.mediaBox;
            geometry.cropBox = opened.cropBox;
            // An earlier save may have given the page a new size.
            geometry.kept =
                opened.mediaBox == mediaCache(cache) && opened.cropBox == cropCache(cache);
            return geometry;
        }
    }
    const Rect media = mediaRect(area.size, area.crop);
    geometry.mediaBox = placedBox(back, media);
    geometry.cropBox = placedBox(back, fittedCrop(area.crop, media));
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

void writeBox(Filter& output, std::string_view key, const Box& box, BoxDigits digits) {
    nameOutput(output, key);
    stringOutput(output, "[ ");
    for (const double edge : {box.left, box.bottom, box.right, box.top}) {
        writeCoordinate(output, edge, digits);
    }
    stringOutput(output, "]\r");
}

} // namespace corvane
