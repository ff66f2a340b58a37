#include "writer/patch/placed_image.h"

#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/matrix.h"
#include "writer/art/style_works.h"
#include "writer/image/file_images.h"
#include "writer/patch/kept_works.h"
#include "writer/patch/space_works.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

/// Points by which an editor's rounding may move a corner.
constexpr double cornerRoom = 1.0 / 64;

bool samePlace(const RealMatrix& a, const RealMatrix& b) {
    return std::ranges::all_of(unitSquare, [&](const RealPoint& corner) {
        const RealPoint ofA = transform(a, corner);
        const RealPoint ofB = transform(b, corner);
        return std::abs(ofA.x - ofB.x) <= cornerRoom && std::abs(ofA.y - ofB.y) <= cornerRoom;
    });
}

/// Draws an image of the file, which another content of the page drew, or a new object.
void drawWorks(PatchTools& tools, Art art) {
    const PlacedImage placed = placedImage(art);
    const std::int32_t object = imageObject(tools.ofPage.cache, imageKey(placed));
    tools.walk.text.add("/");
    tools.walk.text.add(object != 0 ? tools.resources.add(ResourceCategory::object, object, 0)
                                    : tools.ofPage.images.add(placed.image, tools.resources));
    tools.walk.text.add(" Do\n");
}

} // namespace

PlacedImage placedImage(Art art) {
    PlacedImage placed;
    callHost(slot::getPlacedImage, art, &placed);
    return placed;
}

std::string imageKey(const PlacedImage& placed) {
    if (placed.image == Image::null) {
        return {};
    }
    ImageFacts facts;
    callHost(slot::getImageFacts, placed.image, &facts);
    return std::string(facts.key);
}

ArtDifference compareImages(Art was, Art is) {
    const PlacedImage former = placedImage(was);
    const PlacedImage now = placedImage(is);
    ArtDifference difference;
    difference.place = !samePlace(realMatrix(former.matrix), realMatrix(now.matrix));
    difference.image = imageKey(former) != imageKey(now);
    return difference;
}

RealMatrix movementOfImage(Art was, Art is) {
    const std::optional<RealMatrix> back = inverse(realMatrix(placedImage(was).matrix));
    if (!back) {
        failException(Exception::unpatchable);
    }
    return multiply(*back, realMatrix(placedImage(is).matrix));
}

void imageWorks(PatchTools& tools, const PaintedArt& was, Art is, const ArtDifference& difference) {
    const TraceEvent& event = tools.trace.events()[was.event];
    if (difference.place || difference.image) {
        const std::optional<RealMatrix> back = inverse(tools.trace.matrix(event.behind.matrix));
        if (!back) {
            failException(Exception::unpatchable);
        }
        spaceWorks(tools.walk, multiply(realMatrix(placedImage(is).matrix), *back));
    }
    if (difference.image) {
        drawWorks(tools, is);
    } else {
        rangesWorks(tools, {{event.start, event.end}});
    }
}

void newImageWorks(PatchTools& tools, Art art) {
    enterWorks(tools.walk);
    spaceWorks(tools.walk, realMatrix(placedImage(art).matrix));
    drawWorks(tools, art);
    leaveWorks(tools.walk);
}

} // namespace corvane
