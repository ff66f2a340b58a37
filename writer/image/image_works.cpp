#include "writer/image/image_works.h"

#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/matrix.h"
#include "writer/art/space_works.h"
#include "writer/image/new_images.h"

namespace corvane {

PlacedImage placedImage(Art art) {
    PlacedImage placed;
    callHost(slot::getPlacedImage, art, &placed);
    return placed;
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
    spaceWorks(walk, realMatrix(placed.matrix));
    walk.text.add("/");
    walk.text.add(name);
    walk.text.add(" Do\n");
    leaveWorks(walk);
}

} // namespace corvane
