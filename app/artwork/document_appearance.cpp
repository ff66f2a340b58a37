// How art of the artwork is laid over what is behind it.
#include "app/artwork/document.h"

namespace corvane {

namespace {

/// A pattern of any number was made later than what this one is of.
constexpr PaintSource anyPattern{1};

} // namespace

Appearance Document::appearance(Art art) const {
    const Appearance* const found = appearances_.find(tree_.find(art));
    return found == nullptr ? Appearance() : *found;
}

void Document::setAppearance(Art art, const Appearance& appearance) {
    const NodeIndex node = tree_.find(art);
    if (!isOpacity(appearance.opacity) || !isOpacity(appearance.fillOpacity) ||
        !isOpacity(appearance.strokeOpacity) || appearance.blend > BlendMode::luminosity ||
        appearance.intent > RenderingIntent::saturation) {
        throw ArtworkError("the appearance has a value without meaning");
    }
    if (appearance.mask != SoftMask::null) {
        masks_[appearance.mask];
        if (firstPatternOf(topOf(node)) != PaintSource::null) {
            throw ArtworkError("a tile, or a mask's content, can only use masks made before it");
        }
    }
    if (appearance == Appearance()) {
        appearances_.erase(node);
    } else {
        appearances_.set(node, appearance);
    }
}

SoftMask Document::addMask(const MaskFacts& facts) {
    const NodeIndex content = findArtwork(facts.content);
    if (firstPatternOf(content) != PaintSource::null) {
        throw ArtworkError("the artwork is the tile of a pattern or the content of a mask");
    }
    const SoftMask mask = masks_.add(facts);
    artworks_.set(content, anyPattern);
    return mask;
}

const MaskFacts& Document::mask(SoftMask mask) const {
    return masks_[mask];
}

} // namespace corvane
