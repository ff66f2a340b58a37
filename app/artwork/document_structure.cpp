// What groups stand for in the file that they were read from.
#include "app/artwork/document.h"

namespace corvane {

std::optional<FormFacts> Document::form(Art group) const {
    const FormFacts* const found = forms_.find(tree_.find(group, ArtKind::group));
    return found == nullptr ? std::nullopt : std::optional(*found);
}

void Document::setForm(Art group, const FormFacts& facts) {
    const NodeIndex node = tree_.find(group, ArtKind::group);
    if (facts.object < 0 || facts.content <= 0) {
        throw ArtworkError("the form of a group has a value without meaning");
    }
    forms_.set(node, facts);
}

ContentLayer Document::groupLayer(Art group) const {
    const ContentLayer* const found = groupLayers_.find(tree_.find(group, ArtKind::group));
    return found == nullptr ? ContentLayer::null : *found;
}

void Document::setGroupLayer(Art group, ContentLayer layer) {
    const NodeIndex node = tree_.find(group, ArtKind::group);
    if (layer == ContentLayer::null) {
        groupLayers_.erase(node);
        return;
    }
    contentLayers_.facts(layer);
    groupLayers_.set(node, layer);
}

} // namespace corvane
