#include "app/artwork/document.h"

#include "app/artwork/art_kinds.h"

#include <utility>

namespace corvane {

Document::Document(std::int64_t limit)
    : budget_(limit), tree_(budget_), segments_(budget_), styles_(budget_), fonts_(budget_),
      texts_(budget_, styles_), images_(budget_), placed_(budget_), placedFiles_(budget_, images_),
      linked_(budget_), sources_(budget_), appearances_(budget_), masks_(budget_), forms_(budget_),
      contentLayers_(budget_), groupLayers_(budget_), artworks_(budget_), paint_(budget_),
      layers_(budget_) {
    addLayer({});
}

// Layers

Layer Document::firstLayer() const {
    return layers_.first();
}

Layer Document::lastLayer() const {
    return layers_.last();
}

Layer Document::nextLayer(Layer layer) const {
    return layers_[layer].behind;
}

Layer Document::previousLayer(Layer layer) const {
    return layers_[layer].inFront;
}

Layer Document::addLayer(LayerProperties properties) {
    return layers_.addInFront(makeLayerArt(), std::move(properties));
}

Layer Document::addLayerBehind(LayerProperties properties) {
    return layers_.addBehind(makeLayerArt(), std::move(properties));
}

const LayerProperties& Document::layerProperties(Layer layer) const {
    return layers_[layer].properties;
}

void Document::setLayerProperties(Layer layer, LayerProperties properties) {
    layers_.setProperties(layer, std::move(properties));
}

Art Document::layerArt(Layer layer) const {
    return layers_[layer].art;
}

Art Document::makeLayerArt() {
    const NodeIndex group = tree_.allocate(ArtKind::group);
    tree_[group].depth = 1;
    return tree_.handle(group);
}

// Artworks

Art Document::makeArtwork() {
    const NodeIndex group = tree_.allocate(ArtKind::group);
    tree_[group].depth = 1;
    try {
        artworks_.set(group, PaintSource::null);
    } catch (...) {
        tree_.free(group);
        throw;
    }
    return tree_.handle(group);
}

void Document::disposeArtwork(Art artwork) {
    const NodeIndex node = findArtwork(artwork);
    if (firstPatternOf(node) != PaintSource::null) {
        throw ArtworkError("the artwork is the tile of a pattern or the content of a mask");
    }
    freeTree(node);
    reclaimSegments();
}

NodeIndex Document::findArtwork(Art artwork) const {
    const NodeIndex node = tree_.find(artwork, ArtKind::group);
    if (artworks_.find(node) == nullptr) {
        throw ArtworkError("the group is no artwork of its own");
    }
    return node;
}

// Reading the tree

ArtKind Document::kind(Art art) const {
    return tree_[tree_.find(art)].kind;
}

Art Document::parent(Art art) const {
    return tree_.handle(tree_[tree_.find(art)].parent);
}

Art Document::firstChild(Art art) const {
    return tree_.handle(tree_[findContainer(art)].firstChild);
}

Art Document::lastChild(Art art) const {
    return tree_.handle(tree_[findContainer(art)].lastChild);
}

Art Document::nextSibling(Art art) const {
    return tree_.handle(tree_[tree_.find(art)].next);
}

Art Document::previousSibling(Art art) const {
    return tree_.handle(tree_[tree_.find(art)].previous);
}

Art Document::top(Art art) const {
    return tree_.handle(topOf(tree_.find(art)));
}

bool Document::clipped(Art group) const {
    return tree_[tree_.find(group, ArtKind::group)].clipped;
}

void Document::setClipped(Art group, bool clipped) {
    tree_[tree_.find(group, ArtKind::group)].clipped = clipped;
}

NodeIndex Document::topOf(NodeIndex node) const {
    while (tree_[node].parent != 0) {
        node = tree_[node].parent;
    }
    return node;
}

NodeIndex Document::findContainer(Art art) const {
    const NodeIndex node = tree_.find(art);
    if (!artTraits(tree_[node].kind).holdsArt) {
        throw ArtworkError("art of that kind holds no other art");
    }
    return node;
}

// Where art was read from

std::optional<ArtSource> Document::source(Art art) const {
    const ArtSource* const found = sources_.find(tree_.find(art));
    return found == nullptr ? std::nullopt : std::optional(*found);
}

void Document::setSource(Art art, const ArtSource& source) {
    const NodeIndex node = tree_.find(art);
    if (source.start < 0 || source.end < source.start || source.ordinal < 0 || source.content < 0) {
        throw ArtworkError("the source of art has a value without meaning");
    }
    sources_.set(node, source);
}

// Import

void Document::expectImport() {
    import_ = Import::expected;
}

Art Document::importArt() {
    if (import_ == Import::expected) {
        import_ = Import::started;
    }
    return layerArt(firstLayer());
}

void Document::finishImport(Art art) {
    tree_.find(art);
    if (import_ != Import::started) {
        throw ArtworkError("no import was started");
    }
    import_ = Import::finished;
}

bool Document::importFinished() const {
    return import_ == Import::finished;
}

} // namespace corvane
