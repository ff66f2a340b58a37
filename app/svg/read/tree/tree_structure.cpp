// What groups and layers of a file of ours stand for in the PDF.
#include "app/artwork/geometry/path_walk.h"
#include "app/svg/read/tree/tree_reader.h"

#include "app/svg/structure_attributes.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace corvane {

void TreeReader::readStructure(const Frame& frame) {
    if (!context_.ours) {
        return;
    }
    const auto form = parseFormFacts(attributes_[Attribute::dataForm]);
    if (form && !inTile_) {
        document_.setForm(frame.made, *form);
    }
    if (attributes_.has(Attribute::dataLayer)) {
        const std::string_view number = attributes_[Attribute::dataLayer];
        ContentLayerFacts layer = newLayer(frame);
        std::from_chars(number.data(), number.data() + number.size(), layer.object);
        layer.object = std::max(layer.object, 0);
        const std::string_view state = attributes_[Attribute::dataLayerState];
        const bool isNamed = attributes_.has(Attribute::dataLayerName);
        const ContentLayerFacts opened{.name = isNamed ? attributes_[Attribute::dataLayerName]
                                                       : layer.name,
                                       .isVisible = state.find("hidden") == std::string_view::npos,
                                       .isLocked = state.find("locked") != std::string_view::npos,
                                       .object = layer.object};
        // In tiles and masks a layer shows as it does in the file.
        noteLayerGroup(layer, opened);
        document_.setGroupLayer(
            frame.made, document_.contentLayers().addEdited(inTile_ ? opened : layer, opened));
    }
}

/// A person hides what a list of layers shows, which is one group. Annotations are in no such list.
void TreeReader::noteLayerGroup(const ContentLayerFacts& now, const ContentLayerFacts& opened) {
    const auto isOfAnnotations = [](const Frame& around) { return !around.annotations.empty(); };
    if (inTile_ || std::ranges::any_of(frames_, isOfAnnotations)) {
        return;
    }
    SplitLayer& layer = context_.layerGroups[{now.object, std::string(opened.name)}];
    ++layer.groups;
    if (now.isVisible != opened.isVisible) {
        layer.name = now.name;
        layer.isVisible = now.isVisible;
        ++layer.changed;
    }
}

/// A layer of the artwork that the file does not have, as its attributes say.
ContentLayerFacts TreeReader::newLayer(const Frame& frame) const {
    return {.name = attributes_[Attribute::inkscapeLabel],
            .isVisible = frame.style.displayed,
            .isLocked = isLocked(attributes_)};
}

/// Whether the layer holds what the page has in no layer. It becomes one of the file where it is
/// hidden.
bool TreeReader::isOfPage(pugi::xml_node layer) const {
    if (!context_.ours) {
        return false;
    }
    const pugi::xml_node written = context_.index.find(pageLayerId);
    const bool isThere = written && LayerReader::isLayer(Attributes(written));
    return isThere ? layer == written : !layers_.any();
}

/// An annotation that the layer had and that is gone is a group without art.
void TreeReader::markMissingAnnotations(const Frame& frame) {
    std::map<std::pair<std::int32_t, std::int32_t>, FormFacts> missing;
    for (const FormFacts& annotation : parseAnnotations(frame.annotations)) {
        missing[{annotation.object, annotation.content}] = annotation;
    }
    for (Art art = frame.group; art != Art::null; art = following(document_, art, frame.group)) {
        const bool isGroup = document_.kind(art) == ArtKind::group;
        if (const auto form = isGroup ? document_.form(art) : std::nullopt) {
            missing.erase({form->object, form->content});
        }
    }
    for (const auto& [key, annotation] : missing) {
        const ArtPlace place = placeIn(frame);
        document_.setForm(document_.make(ArtKind::group, place.placement, place.reference),
                          annotation);
    }
}

} // namespace corvane
