#include "app/artwork/document.h"

#include <utility>

namespace corvane {

Document::Document(std::int64_t limit)
    : budget_(limit), tree_(budget_), segments_(budget_), styles_(budget_), paint_(budget_),
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
    if (tree_[node].kind == ArtKind::path) {
        throw ArtworkError("a path holds no art");
    }
    return node;
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
