#include "reader/shading/shading_image.h"

#include "objects/referenced.h"
#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "reader/page/followed_digest.h"
#include "reader/shading/box_art.h"
#include "reader/shading/shading_gradient.h"
#include "reader/shading/shading_mesh.h"
#include "reader/shading/shading_raster.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/matrix.h"
#include "runtime/work_meter.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <string>

namespace corvane {

namespace {

/// Colours run slowly: more is not seen in print.
constexpr double pixelsPerPoint = 150.0 / 72;

/// Work on one image, in the steps that functions count.
constexpr std::int64_t imageWork = 400'000'000;

/// Of the meter that asks whether the person wants to stop; the work itself is charged before.
constexpr std::int64_t endless = std::int64_t{1} << 62;

Box common(const Box& a, const Box& b) {
    return {std::max(a.left, b.left), std::max(a.bottom, b.bottom), std::min(a.right, b.right),
            std::min(a.top, b.top)};
}

/// Around all that a mesh paints.
Box meshBox(DocumentCache& cache, ContentProgress& progress, const Shading& shading,
            const RealMatrix& matrix) {
    Box box{INFINITY, INFINITY, -INFINITY, -INFINITY};
    std::int64_t count = 0;
    const auto work = [&](std::int64_t steps) { progress.work(steps); };
    forEachTriangle(cache, work, shading, INFINITY, [&](const MeshTriangle& triangle) {
        ++count;
        for (const MeshCorner& corner : triangle) {
            const RealPoint point = transform(matrix, corner.point);
            box = {std::min(box.left, point.x), std::min(box.bottom, point.y),
                   std::max(box.right, point.x), std::max(box.top, point.y)};
        }
    });
    // Drawing them takes as long again, and a patch is drawn as a finer grid.
    constexpr std::int64_t finer = 64;
    progress.work(count * vertexSteps * (shading.kind >= ShadingKind::coonsPatches ? finer : 1));
    // A coarse grid cuts the corners of curved edges.
    const double room = shading.kind >= ShadingKind::coonsPatches
                            ? .25 * std::max(box.right - box.left, box.top - box.bottom)
                            : 0;
    return {box.left - room, box.bottom - room, box.right + room, box.top + room};
}

/// The part of the artboard that the shading paints.
Box seenPart(Interpreter& interpreter, const Shading& shading, const RealMatrix& matrix, Box area,
             bool asPattern) {
    if (shading.box) {
        area = common(area, spannedBox(*shading.box, matrix));
    }
    if (asPattern && !shading.background.empty()) {
        return area;
    }
    if (shading.isMesh()) {
        return common(area, meshBox(interpreter.cache, interpreter.progress, shading, matrix));
    }
    if (shading.kind == ShadingKind::function) {
        const auto& [left, right, bottom, top] = shading.domain;
        return common(area,
                      spannedBox({left, bottom, right, top}, multiply(shading.matrix, matrix)));
    }
    return area;
}

/// Steps of drawing so many pixels, beside the vertices of a mesh: those that are drawn when the
/// page is read, and count when it is read again for a save.
std::int64_t drawingWork(const Shading& shading, std::int64_t pixels) {
    constexpr std::int64_t pixelSteps = 10;
    constexpr std::int64_t layers = 8;
    constexpr std::int64_t rampLength = 1024;
    if (shading.kind == ShadingKind::function) {
        return pixels * (pixelSteps + shading.cost());
    }
    const std::int64_t ramp = shading.functions.empty() ? 0 : rampLength * shading.cost();
    return ramp + pixels * pixelSteps * (shading.isMesh() ? layers : 2);
}

/// Of one pixel.
std::int64_t workOf(const Shading& shading) {
    return shading.kind == ShadingKind::function ? shading.cost() : 1;
}

std::string keyOf(DocumentCache& cache, const Object& entry, const RealMatrix& matrix,
                  const Box& part, bool asPattern) {
    DigestFeed feed;
    FedStreams fed;
    Followed followed(feed, cache, fed, false);
    followed.root(entry);
    feedDefaults(followed, colourSpacesOf(cache).defaults().inForce());
    followed.follow();
    for (const double number : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty,
                                part.left, part.bottom, part.right, part.top}) {
        feed.number(fixedFromReal(number));
    }
    feed.number(asPattern ? 1 : 0);
    const std::int32_t number = referenced(entry).number;
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%" PRId32 "-%016" PRIx64, number, feed.value());
    return text.data();
}

} // namespace

std::optional<PlacedImage> shadingImage(Interpreter& interpreter, const Shading& shading,
                                        const Object& entry, const RealMatrix& matrix,
                                        const Box& area, bool asPattern) {
    DocumentCache& cache = interpreter.cache;
    const Box part = seenPart(interpreter, shading, matrix, area, asPattern);
    if (!interpreter.readsImages || !inverse(matrix) || !hasArea(part)) {
        return std::nullopt;
    }
    const double width = part.right - part.left;
    const double height = part.top - part.bottom;
    const auto most =
        static_cast<double>(std::min(budget::shadingPixels, imageWork / workOf(shading)));
    const double fine = std::min(pixelsPerPoint, std::sqrt(most / (width * height)));
    const auto pixels = [&](double length) {
        return static_cast<std::int32_t>(
            std::clamp(std::ceil(length * fine), 1.0, static_cast<double>(budget::shadingPixels)));
    };
    const std::string key = keyOf(cache, entry, matrix, part, asPattern);
    const ImageFacts facts{.width = pixels(width),
                           .height = pixels(height),
                           .colours = ImageColours::rgb,
                           .hasAlpha = true,
                           .key = key};
    PlacedImage placed{.matrix =
                           hostMatrix(RealMatrix{width, 0, 0, height, part.left, part.bottom})};
    // A page may ask for image after image.
    const std::int64_t count = std::int64_t{facts.width} * facts.height;
    interpreter.progress.charge(count);
    interpreter.progress.work(drawingWork(shading, count));
    std::uint8_t wantsBytes = 0;
    callHost(slot::addImage, &facts, &placed.image, &wantsBytes);
    if (wantsBytes != 0) {
        StepMeter meter(endless);
        ShadingRaster raster(shading, matrix, part, facts.width, facts.height);
        if (!raster.draw(cache, meter, asPattern)) {
            interpreter.omissions.note(Omission::shading);
        }
        for (std::int32_t y = 0; y < facts.height; ++y) {
            const std::span<const std::uint8_t> row = raster.row(y);
            callHost(slot::addImageBytes, placed.image, std::as_bytes(row).data(), std::ssize(row));
        }
        callHost(slot::endImage, placed.image);
    }
    return placed;
}

std::optional<Colour> shadingTile(Interpreter& interpreter, const Shading& shading,
                                  const Object& entry, const RealMatrix& matrix) {
    const Box& area = interpreter.level.area;
    if (!hasArea(area)) {
        return std::nullopt;
    }
    Art tile = Art::null;
    callHost(slot::newArtwork, &tile);
    if (isGradient(shading)) {
        PathStyle style;
        style.fillPaint = 1;
        style.fill = gradientOf(interpreter.progress, shading, matrix, true);
        const Art path = newArt(ArtKind::path, Placement::inside, tile);
        setCorners(path, *shading.box, matrix);
        callHost(slot::setPathStyle, path, &style);
    } else if (const auto placed = shadingImage(interpreter, shading, entry, matrix, area, true)) {
        callHost(slot::setPlacedImage, newArt(ArtKind::placed, Placement::inside, tile), &*placed);
    } else {
        return std::nullopt;
    }
    const PatternFacts facts{.tile = tile,
                             .left = area.left,
                             .bottom = area.bottom,
                             .right = area.right,
                             .top = area.top,
                             .stepX = area.right - area.left,
                             .stepY = area.top - area.bottom,
                             .matrix = {}};
    Colour colour{.kind = ColourKind::pattern, .component = {}};
    callHost(slot::addPattern, &facts, &colour.source);
    return colour;
}

} // namespace corvane
