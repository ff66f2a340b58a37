#include "writer/layer/saved_layers.h"

#include "objects/identity.h"
#include "objects/referenced.h"
#include "reader/font/font_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/callbacks.h"
#include "runtime/warning.h"
#include "writer/layer/named_groups.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

Object referenceTo(std::int32_t number, std::int32_t generation) {
    Object reference;
    indirectObject(reference, number, generation);
    return reference;
}

/// The group as which a membership dictionary shows, where that is one group alone.
ObjectIdentifier onlyGroup(DocumentCache& cache, const Object& rule) {
    const ObjectOwner dictionary = resolved(cache, rule);
    const Object stated = findEntry(cache, dictionary.get(), "OCGs");
    const ObjectOwner groups = resolved(cache, stated);
    const std::string policy = nameEntry(cache, dictionary.get(), "P");
    if (policy == "AnyOff" || policy == "AllOff" ||
        typeObject(findEntry(cache, dictionary.get(), "VE")) != ObjectType::null) {
        return {};
    }
    const bool isList = typeObject(groups.get()) == ObjectType::array;
    if (isList && sizeObject(groups.get()) != 1) {
        return {};
    }
    const Object& group = isList ? elementsObject(groups.get())[0] : stated;
    return referenced(group);
}

} // namespace

void SavedLayers::know(const OptionalContent& page) {
    for (const auto& [number, layer] : page.known()) {
        ofPage_.insert(number);
    }
}

ContentLayerFacts SavedLayers::factsOf(ContentLayer layer) const {
    ContentLayerFacts facts;
    callHost(slot::getContentLayer, layer, &facts);
    return facts;
}

/// Generations other than 0 are told by the list of all groups.
std::int32_t SavedLayers::generationOf(std::int32_t number) {
    if (!std::exchange(knowsGenerations_, true)) {
        const ObjectOwner catalog = entryOf(*cache_, cache_->trailer.get(), "Root");
        const ObjectOwner properties = entryOf(*cache_, catalog.get(), "OCProperties");
        const ObjectOwner groups = entryOf(*cache_, properties.get(), "OCGs");
        if (typeObject(groups.get()) == ObjectType::array) {
            for (const Object& group : elementsObject(groups.get())) {
                if (typeObject(group) == ObjectType::reference) {
                    const ObjectIdentifier object = referenced(group);
                    generations_.emplace(object.number, object.generation);
                }
            }
        }
    }
    const auto known = generations_.find(number);
    return known == generations_.end() ? 0 : known->second;
}

void SavedLayers::add(ContentLayer layer, SavedLayer saved) {
    byLayer_.emplace(layer, layers_.size());
    layers_.push_back(std::move(saved));
}

/// A layer with a number of the file. False where that number is no such layer: the art comes from
/// another file.
bool SavedLayers::noteKnown(ContentLayer layer, const ContentLayerFacts& facts) {
    const ObjectIdentifier object{facts.object, generationOf(facts.object)};
    ObjectOwner reference(referenceTo(object.number, object.generation));
    const std::optional<FileLayer> file = content_.look(*cache_, reference.get());
    if (!file || (!ofPage_.contains(object.number) &&
                  (file->name != facts.name || (!file->isLayer && !file->isRule)))) {
        return false;
    }
    if (!ofPage_.contains(object.number)) {
        const ContentLayerFacts told{.name = file->name,
                                     .isVisible = file->isVisible,
                                     .isLocked = file->isLocked,
                                     .object = object.number};
        ContentLayer same = ContentLayer::null;
        callHost(slot::addContentLayer, &told, &same);
    }
    const ContentLayerFacts now = factsOf(layer);
    const bool isNamed = !now.name.empty();
    SavedLayer saved{.object = object,
                     .name = isNamed ? std::string(now.name) : file->name,
                     .isVisible = now.isVisible,
                     .isLocked = now.isLocked,
                     .isRenamed = isNamed && now.name != file->name,
                     .isSwitched = now.isVisible != file->isVisible,
                     .isRelocked = now.isLocked != file->isLocked};
    if (file->isRule) {
        rules_.push_back(object);
    }
    if (file->isRule && saved.isChanged()) {
        if (const ObjectIdentifier group = onlyGroup(*cache_, reference.get()); group.number != 0) {
            SavedLayer ofGroup = saved;
            ofGroup.object = group;
            layers_.push_back(std::move(ofGroup));
        } else {
            raiseWarning(Warning::layerRuled);
        }
        saved = {.object = object, .name = file->name};
    }
    if (std::ranges::find(former_, object.number) != former_.end()) {
        make(object.number);
    }
    add(layer, std::move(saved));
    return true;
}

void SavedLayers::make(std::int32_t number) {
    if (std::ranges::find(made_, number) == made_.end()) {
        made_.push_back(number);
    }
}

std::int32_t SavedLayers::takeFormer(const std::string& name) {
    for (const std::int32_t number : former_) {
        if (std::ranges::find(made_, number) != made_.end()) {
            continue;
        }
        ObjectOwner reference(referenceTo(number, 0));
        const std::optional<FileLayer> file = content_.look(*cache_, reference.get());
        if (file && file->isLayer && file->name == name) {
            return number;
        }
    }
    return 0;
}

void SavedLayers::noteNew(ContentLayer layer, const ContentLayerFacts& facts) {
    SavedLayer saved{.object = {},
                     .name = facts.name.empty() ? "Layer" : std::string(facts.name),
                     .isVisible = facts.isVisible,
                     .isLocked = facts.isLocked};
    if (const std::int32_t former = takeFormer(saved.name); former != 0) {
        ObjectOwner reference(referenceTo(former, 0));
        const FileLayer file = content_.look(*cache_, reference.get()).value_or(FileLayer());
        saved.object = {former, 0};
        saved.isSwitched = saved.isVisible != file.isVisible;
        saved.isRelocked = saved.isLocked != file.isLocked;
    } else {
        saved.object = {nextIdentity(), 0};
        saved.isNew = true;
        saved.isSwitched = true;
        saved.isRelocked = saved.isLocked;
    }
    make(saved.object.number);
    add(layer, std::move(saved));
}

void SavedLayers::note(ContentLayer layer) {
    if (layer == ContentLayer::null || byLayer_.contains(layer)) {
        return;
    }
    const ContentLayerFacts facts = factsOf(layer);
    if (facts.object != 0) {
        noteKnown(layer, facts);
    }
}

ObjectIdentifier SavedLayers::identify(ContentLayer layer) {
    note(layer);
    if (!byLayer_.contains(layer)) {
        noteNew(layer, factsOf(layer));
    }
    return layers_[byLayer_.at(layer)].object;
}

std::vector<SavedLayer> SavedLayers::changed() const {
    std::vector<SavedLayer> changed;
    std::ranges::copy_if(layers_, std::back_inserter(changed), &SavedLayer::isChanged);
    return changed;
}

std::vector<std::int32_t> SavedLayers::dropped() const {
    std::vector<std::int32_t> dropped;
    std::ranges::copy_if(former_, std::back_inserter(dropped), [&](std::int32_t number) {
        return std::ranges::find(made_, number) == made_.end();
    });
    if (!dropped.empty() && !elsewhere_) {
        elsewhere_ = groupsNamedElsewhere(*cache_, {former_.begin(), former_.end()}, rules_);
    }
    std::erase_if(dropped, [&](std::int32_t number) { return elsewhere_->contains(number); });
    return dropped;
}

} // namespace corvane
