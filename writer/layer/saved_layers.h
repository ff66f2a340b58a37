// Layers of the artwork as optional content groups of the file: those that the file has, and new
// ones.
//
// Source: PDF Reference, 4.10.
#pragma once

#include "host/structure.h"
#include "objects/object_identifier.h"
#include "reader/document/cache.h"
#include "reader/layer/optional_content.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

/// What a save says of an optional content group.
struct SavedLayer {
    ObjectIdentifier object;
    std::string name; ///< UTF-8
    bool isVisible = true;
    bool isLocked = false;
    bool isNew = false; ///< the file has no such group
    bool isRenamed = false;
    bool isSwitched = false; ///< shown or hidden otherwise than the file has it; of new ones too
    bool isRelocked = false;

    bool isChanged() const { return isNew || isRenamed || isSwitched || isRelocked; }
};

class SavedLayers {
public:
    /// `former`: groups that the save whose place this one takes made, which it may use again.
    explicit SavedLayers(DocumentCache& cache, std::vector<std::int32_t> former = {})
        : cache_(&cache), former_(std::move(former)) {}

    /// The layers that the page shows belong to the file, however they are called.
    void know(const OptionalContent& page);
    /// Takes note of how the artwork has a layer of the file. A new one is nothing of the file
    /// before something is drawn in it.
    void note(ContentLayer layer);
    /// What the layer is in the file, from now on.
    ObjectIdentifier identify(ContentLayer layer);

    /// Those that are new or changed, in the order in which they were met.
    std::vector<SavedLayer> changed() const;
    std::span<const std::int32_t> former() const { return former_; }
    /// Those of `former` that nothing is drawn in any more, nor on another page.
    std::vector<std::int32_t> dropped() const;
    /// Those that are new since the artwork was opened, and those of `former` that are drawn in.
    const std::vector<std::int32_t>& made() const { return made_; }
    bool changesFile() const { return !changed().empty() || !dropped().empty(); }

private:
    ContentLayerFacts factsOf(ContentLayer layer) const;
    bool noteKnown(ContentLayer layer, const ContentLayerFacts& facts);
    void noteNew(ContentLayer layer, const ContentLayerFacts& facts);
    std::int32_t generationOf(std::int32_t number);
    std::int32_t takeFormer(const std::string& name);
    void make(std::int32_t number);
    void add(ContentLayer layer, SavedLayer saved);

    DocumentCache* cache_;
    OptionalContent content_;
    std::set<std::int32_t> ofPage_;
    std::vector<std::int32_t> former_;
    std::vector<std::int32_t> made_;
    std::vector<ObjectIdentifier> rules_; ///< of the file, that are drawn in
    mutable std::optional<std::set<std::int32_t>>
        elsewhere_; ///< of `former_`; none: not looked for
    std::vector<SavedLayer> layers_;
    std::unordered_map<ContentLayer, std::size_t> byLayer_;
    std::map<std::int32_t, std::int32_t> generations_; ///< of the groups that the file lists
    bool knowsGenerations_ = false;
};

} // namespace corvane
