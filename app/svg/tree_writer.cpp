// Layers, groups and what is in them.
#include "app/svg/tree_writer.h"

#include "app/svg/image_writer.h"
#include "app/svg/markup.h"
#include "app/svg/style.h"
#include "app/svg/subpaths.h"
#include "app/svg/text_writer.h"

#include <optional>

namespace corvane {

namespace {

/// Depth of an element whose children may still be groups, the root's being 0. Readers of XML give
/// up at 256; what they wrap around the file must fit as well.
constexpr int deepestGroup = 190;

} // namespace

PageCorner cornerOf(const Document& document) {
    return {document.page().bounds().left, document.page().bounds().top};
}

void TreeWriter::writeLayer(Layer layer) {
    const Art top = document_.layerArt(layer);
    survey_ = surveyGroups(document_, top);
    group_ = 0;
    enterGroup(top, &document_.layerProperties(layer));
    writeLevels();
}

/// Whether art is one object of a page.
bool TreeWriter::hasOrdinal(Art art) const {
    const std::optional<ArtSource> source = document_.source(art);
    return source && source->ordinal >= 0;
}

/// Groups within an object need no name.
void TreeWriter::writeGroupId(const Level& level) {
    if (!level.isObject) {
        writeId("g", ++numbers_.groups);
    } else if (levels_.empty() || !levels_.back().isObject) {
        writeId(shapePrefix(), shapeCount());
    }
}

/// The art of the tile stands in the pattern. A tile that is clipped is a group there.
void TreeWriter::writePattern(PaintSource source, int depth) {
    const Art tile = document_.pattern(source).tile;
    isTile_ = true;
    survey_ = surveyGroups(document_, tile);
    const bool grouped = document_.clipped(tile);
    group_ = grouped ? 0 : 1;
    servers_.writePatternStart(out_, source, depth);
    if (!survey_.front().drawn) {
        out_.text("/>");
        return;
    }
    out_.text(">");
    Level level;
    level.next = grouped ? tile : document_.lastChild(tile);
    level.depth = depth + 1;
    level.visible = Extent::everything();
    levels_.push_back(level);
    writeLevels();
    writeIndent(out_, depth);
    out_.text("</pattern>");
}

void TreeWriter::writeLevels() {
    while (!levels_.empty() && !out_.failed()) {
        const Art art = levels_.back().next;
        if (art == Art::null) {
            leaveGroup();
            continue;
        }
        levels_.back().next = document_.previousSibling(art);
        switch (svgObject(document_, art)) {
        case SvgObject::group:
            if (survey_[group_].drawn) {
                enterGroup(art, nullptr);
            } else {
                group_ = survey_[group_].end;
            }
            break;
        case SvgObject::shape:
            if (art != levels_.back().clip) {
                writeShape(art);
            }
            break;
        case SvgObject::text:
            writeLine(art);
            break;
        case SvgObject::image:
            writePlaced(art);
            break;
        case SvgObject::none:
            break;
        }
    }
}

void TreeWriter::enterGroup(Art group, const LayerProperties* layer) {
    const GroupSurvey& survey = survey_[group_++];
    Level level;
    if (layer != nullptr) {
        const Rect& page = document_.page().bounds();
        level.depth = 1;
        level.visible = {page.left, page.bottom, page.right, page.top};
        if (level.visible.empty()) {
            level.visible = Extent::everything();
        }
    } else {
        level = levels_.back();
        const bool starts = !level.isObject && hasOrdinal(group);
        shapeCount() += starts ? 1 : 0;
        level.isObject = level.isObject || starts;
    }
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

    const std::uint32_t clip = clips ? writeClip(level.clip, 0, level.depth) : 0;
    writeIndent(out_, level.depth);
    out_.text("<g");
    if (layer != nullptr) {
        writeId("layer", ++numbers_.layers);
        writeLayerAttributes(out_, *layer);
    } else {
        writeGroupId(level);
    }
    writeSource("data-source", group);
    if (clips) {
        writeReference(clip);
    }
    if (effect == ClipEffect::hides && (layer == nullptr || layer->visible)) {
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
    const Level& level = levels_.back();
    if (level.element) {
        writeIndent(out_, level.depth - 1);
        out_.text("</g>");
    }
    levels_.pop_back();
}

/// What a path of this style is painted with, as far as it is not written yet.
void TreeWriter::writeServers(const PathStyle& style, int depth) {
    for (const PaintSource source : servers_.claim(style)) {
        if (document_.paintKind(source) == ColourKind::pattern) {
            TreeWriter(out_, servers_, numbers_, base_).writePattern(source, depth);
        } else {
            servers_.writeGradient(out_, source, depth);
        }
    }
}

/// Ends the element of a shape whose attributes are written.
void TreeWriter::endShape(Note note) {
    if (note == Note::null) {
        out_.text("/>");
        return;
    }
    out_.text("><desc>");
    writeEscaped(out_, document_.note(note));
    out_.text("</desc></path>");
}

void TreeWriter::writeShape(Art shape) {
    const Level& level = levels_.back();
    const Art leading = leadingPath(document_, shape);
    const PathStyle style = leading == Art::null ? PathStyle{} : document_.style(leading);
    const bool guide = leading != Art::null && document_.guide(leading);
    if (!guide) {
        writeServers(style, level.depth);
    }
    writeIndent(out_, level.depth);
    out_.text("<path");
    if (!level.isObject) {
        writeId(shapePrefix(), ++shapeCount());
    }
    writeSource("data-source", shape);
    if (guide) {
        writeGuideStyle(out_);
    } else {
        writePaintedStyle(out_, style, servers_);
    }
    if (level.chain.hides) {
        writePlainAttribute(out_, "display", "none");
    } else if (level.chain.clip != 0) {
        writeReference(level.chain.clip);
    }
    writeData(shape);
    endShape(style.note);
}

void TreeWriter::writeLine(Art text) {
    const Level& level = levels_.back();
    const std::int32_t runs = document_.textRunCount(text);
    for (std::int32_t i = 0; i < runs; ++i) {
        writeServers(document_.textRun(text, i).style, level.depth);
    }
    TextPlace place{.corner = corner_,
                    .base = base_,
                    .prefix = shapePrefix(),
                    .number = shapeCount() + 1,
                    .clip = {}};
    shapeCount() += static_cast<std::uint32_t>(runs);
    if (level.chain.clip != 0) {
        place.clip = referenceTo(level.chain.clip);
    }
    place.hidden = level.chain.hides;
    place.advances = numbers_.advances;
    writeIndent(out_, level.depth);
    writeText(out_, servers_, text, place);
}

/// A clip would be turned with the picture, so one that the picture itself carries is a group's.
void TreeWriter::writePlaced(Art placed) {
    const Level& level = levels_.back();
    const bool isPicture = showsFile(document_, placed);
    const bool isClipped = !level.chain.hides && level.chain.clip != 0;
    writeIndent(out_, level.depth);
    if (isPicture && isClipped) {
        out_.text("<g");
        writeReference(level.chain.clip);
        out_.text(">");
    }
    out_.text(isPicture ? "<image" : "<path");
    writeId(shapePrefix(), ++shapeCount());
    writeSource("data-source", placed);
    if (level.chain.hides) {
        writePlainAttribute(out_, "display", "none");
    } else if (isClipped && !isPicture) {
        writeReference(level.chain.clip);
    }
    if (isPicture) {
        writeImageAttributes(out_, document_, placed, corner_);
    } else {
        writeFrameAttributes(out_, document_, placed, corner_);
    }
    out_.text(isPicture && isClipped ? "/></g>" : "/>");
}

/// The last attribute of a shape. A compound path that looks like a path is marked.
void TreeWriter::writeData(Art shape) {
    if (document_.kind(shape) == ArtKind::compound) {
        int drawn = 0;
        forEachSubpath(document_, shape,
                       [&](Art path) { drawn += document_.segments(path).empty() ? 0 : 1; });
        if (drawn < 2) {
            writePlainAttribute(out_, "data-compound", "true");
        }
    }
    out_.text(" d=\"");
    writePathData(out_, document_, shape, corner_);
    out_.text("\"");
}

void TreeWriter::writeId(std::string_view kind, std::uint32_t number) {
    out_.text(" id=\"");
    out_.text(kind);
    out_.number(std::int64_t{number} << 16);
    out_.text("\"");
}

void TreeWriter::writeSource(std::string_view name, Art art) {
    // Without bytes it is an ordinal that an id told.
    if (const std::optional<ArtSource> source = document_.source(art); source && source->end != 0) {
        writeArtSource(out_, name, *source, base_);
    }
}

} // namespace corvane
