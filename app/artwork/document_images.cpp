// Placed objects of the artwork, and the images that they show.
#include "app/artwork/document.h"

namespace corvane {

PlacedImage Document::placedImage(Art placed) const {
    const PlacedImage* const found = placed_.find(tree_.find(placed, ArtKind::placed));
    return found == nullptr ? PlacedImage{} : *found;
}

void Document::setPlacedImage(Art placed, const PlacedImage& image) {
    const NodeIndex node = tree_.find(placed, ArtKind::placed);
    images_.facts(image.image);
    placed_.set(node, image);
}

} // namespace corvane
