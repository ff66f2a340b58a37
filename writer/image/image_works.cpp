#include "writer/image/image_works.h"

#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/matrix.h"
#include "writer/image/new_images.h"

#include <cmath>

namespace corvane {

namespace {

/// A billionth of an image is nothing, and shorter without.
RealMatrix rounded(const RealMatrix& matrix) {
    constexpr double steps = 1e9;
    const auto round = [](double value) { return std::round(value * steps) / steps; };
    return {round(matrix.a), round(matrix.b),  round(matrix.c),
            round(matrix.d), round(matrix.tx), round(matrix.ty)};
}

} // namespace

PlacedImage placedImage(Art art) {
    PlacedImage placed;
    callHost(slot::getPlacedImage, art, &placed);
    return placed;
}

void imageSpaceWorks(Walk& walk, const RealMatrix& matrix) {
    walk.text.addMatrix(withoutSignedZeros(rounded(matrix)));
    walk.text.add("cm\n");
}

void drawnImageWorks(Walk& walk, Art art) {
    const PlacedImage placed = placedImage(art);
    if (placed.image == Image::null) {
        return; // it shows nothing
    }
    if (walk.images == nullptr) {
        failException(Exception::unpatchable);
    }
    const std::string_view name = walk.images->add(placed);
    enterWorks(walk);
    imageSpaceWorks(walk, realMatrix(placed.matrix));
    walk.text.add("/");
    walk.text.add(name);
    walk.text.add(" Do\n");
    leaveWorks(walk);
}

} // namespace corvane
