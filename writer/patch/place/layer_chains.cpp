#include "writer/patch/place/layer_chains.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "writer/art/art_stack.h"
#include "writer/art/layers.h"
#include "writer/patch/form/edited_form.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace corvane {

namespace {

/// Groups within one another that surely become groups of an SVG.
constexpr std::int32_t deepestTold = 150;

} // namespace

LayerChain LayerChains::within(LayerChain outer, ContentLayer layer) {
    if (layer == ContentLayer::null || holds(outer, layer)) {
        return outer;
    }
    const auto [place, isNew] =
        numbers_.emplace(std::pair(outer, layer), static_cast<LayerChain>(links_.size()));
    if (isNew) {
        links_.push_back({outer, layer, links_[outer].depth + 1});
    }
    return place->second;
}

bool LayerChains::holds(LayerChain chain, ContentLayer layer) const {
    while (chain != 0 && links_[chain].layer != layer) {
        chain = links_[chain].outer;
    }
    return chain != 0;
}

bool LayerChains::isAround(LayerChain outer, LayerChain inner) const {
    while (links_[inner].depth > links_[outer].depth) {
        inner = links_[inner].outer;
    }
    return inner == outer;
}

void PatchLayers::read(Art root, OptionalContent layers) {
    ofPage_ = std::move(layers);
    if (!ofPage_.any()) {
        return;
    }
    struct Open {
        LayerChain chain = 0;
        bool isListed = true;
    };
    std::vector<Open> open{{}};
    ArtStack pending;
    pending.push(root);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art) {
            open.pop_back();
            continue;
        }
        if (open.back().chain != 0) {
            if (around_.size() == around_.capacity()) {
                const std::size_t room = 2 * around_.size() + 64;
                charge_.resize(static_cast<std::int64_t>(room * sizeof(around_.front())));
                around_.reserve(room);
            }
            around_.push_back({step.art,
                               pending.depth() > deepestTold ? notTold : open.back().chain,
                               open.back().isListed});
        }
        if (artKind(step.art) == ArtKind::group) {
            const bool isForm = formOf(step.art).content != 0;
            const ContentLayer layer = layerOf(step.art);
            const bool isListed =
                open.back().isListed && (layer != ContentLayer::null || step.art == root);
            open.push_back({isForm ? 0 : chains_.within(open.back().chain, layer), isListed});
            pending.enter(firstChild(step.art), ArtStep::What::end);
        }
    }
    std::ranges::sort(around_, {}, &Around::art);
}

LayerChain PatchLayers::around(Art art) const {
    if (named_.empty()) {
        return 0;
    }
    const auto at = std::ranges::lower_bound(around_, art, {}, &Around::art);
    return at != around_.end() && at->art == art ? at->chain : 0;
}

namespace {

void collect(const EditedArtwork& artwork, std::unordered_set<ContentLayer>& layers) {
    for (const EditedGroup& group : artwork.groups.items()) {
        if (group.layer != ContentLayer::null) {
            layers.insert(group.layer);
        }
    }
}

ContentLayerFacts factsOf(ContentLayer layer) {
    ContentLayerFacts facts;
    callHost(slot::getContentLayer, layer, &facts);
    return facts;
}

} // namespace

/// Some layers of the file have no number, and an editor that drops numbers mostly keeps names.
void PatchLayers::nameAgain(EditedArtwork& artwork) {
    std::unordered_map<std::string, ContentLayer> unnamed;
    for (const auto& [number, layer] : ofPage_.known()) {
        if (!named_.contains(layer)) {
            unnamed.emplace(factsOf(layer).name, layer);
        }
    }
    const auto& unnumbered = ofPage_.unnumbered();
    if (unnamed.empty() && unnumbered.empty()) {
        return;
    }
    for (std::size_t i = 0; i < artwork.groups.size(); ++i) {
        ContentLayer& layer = artwork.groups[i].layer;
        if (layer == ContentLayer::null) {
            continue;
        }
        const ContentLayerFacts facts = factsOf(layer);
        if (facts.object != 0) {
            continue;
        }
        const std::string name(facts.name);
        if (const auto same = unnamed.find(name); same != unnamed.end()) {
            layer = same->second;
            byTitle_.insert(layer);
        } else if (const auto alike = unnumbered.find({name, facts.isVisible});
                   alike != unnumbered.end()) {
            layer = alike->second;
            byTitle_.insert(layer);
        }
    }
}

/// Outer groups stand in front of inner ones.
void PatchLayers::settle(EditedArtwork& artwork) {
    for (std::size_t i = 1; i < artwork.groups.size(); ++i) {
        EditedGroup& group = artwork.groups[i];
        const LayerChain outer = artwork.groups[group.outer].layers;
        group.layers = chains_.within(outer, group.layer);
        if (group.layers == outer) {
            group.layer = ContentLayer::null;
        }
    }
}

void PatchLayers::settle(EditedArtwork& page, EditedForms& forms) {
    collect(page, named_);
    for (const EditedForm& form : forms) {
        collect(form.inside, named_);
    }
    nameAgain(page);
    for (EditedForm& form : forms) {
        nameAgain(form.inside);
    }
    collect(page, named_);
    settle(page);
    for (EditedForm& form : forms) {
        collect(form.inside, named_);
        settle(form.inside);
    }
    // What does not count of the chains of the base is not around it.
    std::unordered_map<LayerChain, LayerChain> counted{{0, 0}, {notTold, notTold}};
    const auto reduce = [&](auto&& self, LayerChain chain) -> LayerChain {
        const auto known = counted.find(chain);
        if (known != counted.end()) {
            return known->second;
        }
        const ContentLayer layer = chains_.innermost(chain);
        const LayerChain reduced = within(self(self, chains_.outer(chain)), layer);
        counted.emplace(chain, reduced);
        return reduced;
    };
    const auto isByTitle = [&](LayerChain chain) {
        while (chain != 0 && !byTitle_.contains(chains_.innermost(chain))) {
            chain = chains_.outer(chain);
        }
        return chain != 0;
    };
    for (Around& each : around_) {
        const bool isUntold = each.chain == notTold || (!each.isListed && isByTitle(each.chain));
        each.chain = isUntold ? notTold : reduce(reduce, each.chain);
    }
}

} // namespace corvane
