// Groups: what they are, their clips, and what in them blends.
#include "app/svg/markup.h"
#include "app/svg/structure_attributes.h"
#include "app/svg/subpaths.h"
#include "app/svg/tree/tree_writer.h"

#include <optional>
#include <utility>

namespace corvane {

/// Whether art is one object of a page.
bool TreeWriter::hasOrdinal(Art art) const {
    const std::optional<ArtSource> source = document_.source(art);
    return source && source->ordinal >= 0;
}

void TreeWriter::writeLayer(Art group, const LayerProperties& layer) {
    if (layer.role == LayerRole::annotations) {
        writePlainAttribute(out_, "id", annotationsId);
    } else {
        writeId("layer", ++numbers_.layers);
    }
    writeLayerAttributes(out_, layer);
    if (layer.role == LayerRole::annotations) {
        writeAnnotations(out_, document_, group);
    }
}

/// What the group stands for in the file. False where that hides it.
bool TreeWriter::writeStructure(Art group) {
    if (const std::optional<FormFacts> form = document_.form(group)) {
        writeFormFacts(out_, *form);
    }
    const ContentLayer layer = document_.groupLayer(group);
    if (layer == ContentLayer::null || levels_.empty()) {
        return true; // a layer of the artwork says the rest itself
    }
    const ContentLayerFacts facts = document_.contentLayers().facts(layer);
    writeContentLayer(out_, facts, levels_.back().isListed);
    return facts.isVisible;
}

/// Groups within an object need no name. What has a source is one among the shapes around it.
void TreeWriter::writeGroupId(Art group, const Level& around) {
    if (around.isObject) {
        return;
    }
    if (hasOrdinal(group)) {
        writeShapeId(out_, around.content, numbers_.shapes[around.content]);
    } else {
        writeId("g", ++numbers_.groups);
    }
}

void TreeWriter::enterGroup(Art group, const LayerProperties* layer) {
    const GroupSurvey& survey = survey_[group_++];
    Level level;
    if (layer != nullptr) {
        const Rect& page = document_.page().bounds();
        level.depth = 1;
        level.isListed = true;
        level.visible = {page.left, page.bottom, page.right, page.top};
        if (level.visible.empty()) {
            level.visible = Extent::everything();
        }
    } else {
        level = levels_.back();
        level.isListed = level.isListed && document_.groupLayer(group) != ContentLayer::null;
        if (!level.isObject && hasOrdinal(group)) {
            ++numbers_.shapes[level.content];
        }
        if (const std::optional<FormFacts> form = document_.form(group)) {
            level.content = form->content;
        } else {
            level.isObject = level.isObject || hasOrdinal(group);
        }
    }
    level.run = 0;
    level.clip = clipOf(document_, group);
    level.next = document_.lastChild(group);
    level.element = level.depth <= deepestGroup;
    const ClipEffect effect = clipEffect(level.clip, survey, level.visible);
    const bool clips = effect == ClipEffect::cuts || effect == ClipEffect::hides;
    if (clips) {
        level.visible = level.visible.within(survey.clip.bounds);
    }
    if (!level.element) {
        if (clips) {
            extendChain(level.chain, level.clip, survey.clip, level.depth);
        }
        levels_.push_back(level);
        return;
    }

    const Appearance look = lookOf(group);
    writeMasks(look.mask, level.depth);
    std::uint32_t clip = clips ? writeClip(level.clip, 0, level.depth) : 0;
    if (!isMixedOut(group, survey)) {
        level.shared.clear();
    } else if (effect == ClipEffect::cuts) {
        level.shared.push_back(std::exchange(clip, 0));
    }
    writeIndent(out_, level.depth);
    out_.text("<g");
    if (layer != nullptr) {
        writeLayer(group, *layer);
    } else {
        writeGroupId(group, levels_.back());
    }
    const bool isShown = writeStructure(group) && (layer == nullptr || layer->visible);
    writeSource("data-source", group);
    writeLook(look);
    if (clip != 0) {
        writeReference(clip);
    }
    if (effect == ClipEffect::hides && isShown) {
        writePlainAttribute(out_, "display", "none");
    }
    if (effect == ClipEffect::cutsNothing) {
        writeDroppedClip(level.clip);
    }
    if (!survey.drawn) {
        out_.text("/>");
        return;
    }
    out_.text(">");
    ++level.depth;
    levels_.push_back(level);
}

void TreeWriter::leaveGroup() {
    Level& level = levels_.back();
    leaveRun(level);
    if (level.element) {
        writeIndent(out_, level.depth - 1);
        out_.text("</g>");
    }
    levels_.pop_back();
}

} // namespace corvane
