// Layers of the file around art.
#pragma once

#include "host/artwork.h"
#include "host/structure.h"
#include "reader/layer/optional_content.h"
#include "runtime/memory.h"
#include "writer/patch/base/edited_artwork.h"

#include <cstdint>
#include <map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace corvane {

/// Chains of layers within one another, each layer once in a chain. Equal chains have one number.
class LayerChains {
public:
    /// The chain with one more layer, if it is not in it.
    LayerChain within(LayerChain outer, ContentLayer layer);
    LayerChain outer(LayerChain chain) const { return links_[chain].outer; }
    ContentLayer innermost(LayerChain chain) const { return links_[chain].layer; }
    bool holds(LayerChain chain, ContentLayer layer) const;
    /// Whether the layers of the one are the first of the other.
    bool isAround(LayerChain outer, LayerChain inner) const;
    std::uint32_t depth(LayerChain chain) const { return links_[chain].depth; }

private:
    struct Link {
        LayerChain outer = 0;
        ContentLayer layer = ContentLayer::null;
        std::uint32_t depth = 0;
    };
    std::vector<Link> links_{Link()};
    std::map<std::pair<LayerChain, ContentLayer>, LayerChain> numbers_;
};

/// The layers around what the page paints and around what the artwork holds. A layer that the
/// artwork nowhere names was dropped by an editor and not by a person: it does not count, and what
/// is in it stays in it.
class PatchLayers {
public:
    /// Around art of which the artwork cannot say it: it is nested too deep for SVG, or an editor
    /// dropped the marks of a layer that is no layer for editors.
    static constexpr LayerChain notTold = UINT32_MAX;

    /// Reads which layers are around the art of the base.
    void read(Art root, OptionalContent layers);
    const OptionalContent& ofPage() const { return ofPage_; }

    /// Settles the layers of the groups of the artwork and of the forms in it.
    void settle(EditedArtwork& page, EditedForms& forms);

    /// Around art of the base, within its content.
    LayerChain around(Art art) const;
    /// Whether art of the base is in those layers in the artwork.
    bool isAlike(Art was, LayerChain now) const {
        const LayerChain former = around(was);
        return former == now || former == notTold;
    }
    /// Marked content of that layer within the chain.
    LayerChain within(LayerChain outer, ContentLayer layer) {
        return counts(layer) ? chains_.within(outer, layer) : outer;
    }
    bool counts(ContentLayer layer) const { return named_.contains(layer); }
    const LayerChains& chains() const { return chains_; }
    bool any() const { return !named_.empty(); }

private:
    void nameAgain(EditedArtwork& artwork);
    void settle(EditedArtwork& artwork);

    OptionalContent ofPage_;
    struct Around {
        Art art = Art::null;
        LayerChain chain = 0;
        bool isListed = true; ///< each of the layers lies next in another, or in the page
    };

    std::vector<Around> around_; ///< ascending
    ZoneCharge charge_;
    LayerChains chains_;
    std::unordered_set<ContentLayer> named_;   ///< in the artwork
    std::unordered_set<ContentLayer> byTitle_; ///< of these, by nothing else
};

} // namespace corvane
