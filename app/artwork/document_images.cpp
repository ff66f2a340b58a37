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

const PlacedFile* Document::placedFile(Art placed) const {
    const PlacedFileId* const found = linked_.find(tree_.find(placed, ArtKind::placed));
    return found == nullptr ? nullptr : &placedFiles_.at(*found);
}

void Document::setPlacedFile(Art placed, PlacedFileId id) {
    const NodeIndex node = tree_.find(placed, ArtKind::placed);
    const PlacedFile& file = placedFiles_.at(id);
    PlacedImage image = placedImage(placed);
    image.image = file.view.image;
    setPlacedImage(placed, image);
    linked_.set(node, id);
}

} // namespace corvane
