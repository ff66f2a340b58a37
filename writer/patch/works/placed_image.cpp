#include "writer/patch/works/placed_image.h"

#include "reader/content/losses.h"
#include "reader/syntax/syntax.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/matrix.h"
#include "runtime/warning.h"
#include "writer/art/space_works.h"
#include "writer/art/style_works.h"
#include "writer/image/file_images.h"
#include "writer/image/image_works.h"
#include "writer/patch/works/kept_works.h"

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

/// Sets the rendering intent that an image of the file names for itself.
void intentWorks(PatchTools& tools, Art was) {
    DocumentCache& cache = tools.ofPage.cache;
    const std::int32_t number = imageObject(cache, imageKey(placedImage(was)));
    if (number == 0) {
        return;
    }
    ObjectOwner reference;
    indirectObject(reference.get(), number, 0);
    const ObjectOwner stream = resolveObject(cache, reference.get());
    const ObjectOwner intent = lookupObject(cache, stream.get(), "Intent");
    if (typeObject(intent.get()) == ObjectType::literal) {
        tools.walk.text.addName(literalObject(intent.get()));
        tools.walk.text.add("ri\n");
    }
}

} // namespace

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
    // What is smooth again may be so because an editor dropped what it does not know.
    if (!difference.image && former.isSmooth && !now.isSmooth) {
        raiseWarning(Warning::smoothnessKept);
    }
    return difference;
}

RealMatrix movementOfImage(Art was, Art is) {
    const std::optional<RealMatrix> back = inverse(realMatrix(placedImage(was).matrix));
    if (!back) {
        failException(Exception::unpatchable);
    }
    return multiply(*back, realMatrix(placedImage(is).matrix));
}

namespace {

void pictureWorks(PatchTools& tools, const PaintedArt& was, Art is,
                  const ArtDifference& difference) {
    const TraceEvent& event = tools.trace.events()[was.event];
    if (difference.place || difference.image) {
        const std::optional<RealMatrix> back = inverse(tools.trace.matrix(event.behind.matrix));
        if (!back) {
            failException(Exception::unpatchable);
        }
        spaceWorks(tools.walk, multiply(realMatrix(placedImage(is).matrix), *back));
    }
    if (difference.image) {
        intentWorks(tools, was.art);
        tools.walk.text.add("/");
        tools.walk.text.add(tools.contentImages.add(placedImage(is)));
        tools.walk.text.add(" Do\n");
    } else {
        rangesWorks(tools, {{event.start, event.end}});
    }
}

} // namespace

void imageWorks(PatchTools& tools, const PaintedArt& was, Art is, const ArtDifference& difference) {
    const Surroundings& own = tools.trace.events()[was.event].behind;
    const bool isMasked = difference.look.mask
                              ? *difference.look.mask != SoftMask::null
                              : difference.image && (own.settings & softMaskSetting) != 0;
    const RealMatrix& ctm = tools.trace.matrix(own.matrix);
    const std::optional<RealMatrix> back = inverse(ctm);
    if (!isMasked || !back) {
        return pictureWorks(tools, was, is, difference);
    }
    const std::string before = tools.taken();
    pictureWorks(tools, was, is, difference);
    const std::string_view name = tools.looks.addGroup(tools.taken(), {}, ctm);
    tools.walk.text.add(before);
    if (*back != RealMatrix()) {
        spaceWorks(tools.walk, *back);
    }
    tools.walk.text.add("/");
    tools.walk.text.add(name);
    tools.walk.text.add(" Do\n");
}

} // namespace corvane
