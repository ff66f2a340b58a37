// Layers, and the objects in their groups.
#include "app/svg/tree/tree_writer.h"

#include "app/svg/image_writer.h"
#include "app/svg/markup.h"
#include "app/svg/paint/appearance_attributes.h"
#include "app/svg/style.h"
#include "app/svg/subpaths.h"
#include "app/svg/text/text_writer.h"

#include <optional>

namespace corvane {

PageCorner cornerOf(const Document& document) {
    return {document.page().bounds().left, document.page().bounds().top};
}

void TreeWriter::writeLayer(Layer layer) {
    const Art top = document_.layerArt(layer);
    survey_ = surveyGroups(document_, top);
    group_ = 0;
    const LayerProperties& properties = document_.layerProperties(layer);
    isOfAnnotations_ = properties.role == LayerRole::annotations;
    enterGroup(top, &properties);
    writeLevels();
}

/// The art of the tile stands in the pattern. A tile that is clipped is a group there.
void TreeWriter::writePattern(PaintSource source, int depth) {
    const Art tile = document_.pattern(source).tile;
    survey_ = surveyGroups(document_, tile);
    const bool grouped = document_.clipped(tile);
    group_ = grouped ? 0 : 1;
    servers_.writePatternStart(out_, source, depth);
    if (!survey_.front().drawn) {
        out_.text("/>");
        return;
    }
    out_.text(">");
    writeTree(tile, grouped, depth + 1, tileContent);
    writeIndent(out_, depth);
    out_.text("</pattern>");
}

/// Art in no layer, which was surveyed: a group, or what it holds.
void TreeWriter::writeTree(Art top, bool grouped, int depth, std::int32_t content) {
    Level level;
    level.content = content;
    level.next = grouped ? top : document_.lastChild(top);
    level.depth = depth;
    level.visible = Extent::everything();
    levels_.push_back(level);
    writeLevels();
}

void TreeWriter::writeLevels() {
    while (!levels_.empty() && !out_.failed()) {
        const Art art = levels_.back().next;
        if (art == Art::null) {
            leaveGroup();
            continue;
        }
        levels_.back().next = document_.previousSibling(art);
        if (art == levels_.back().clip) {
            continue;
        }
        placeInRun(art);
        switch (svgObject(document_, art)) {
        case SvgObject::group:
            if (survey_[group_].drawn) {
                enterGroup(art, nullptr);
            } else {
                group_ = survey_[group_].end;
            }
            break;
        case SvgObject::shape:
            writeShape(art);
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

/// What a path of this style is painted with, as far as it is not written yet.
void TreeWriter::writeServers(const PathStyle& style, int depth) {
    for (const ServerUse& use : servers_.claim(style)) {
        if (use.pen != Pen()) {
            servers_.writeUnderPen(out_, use, depth);
        } else if (document_.paintKind(use.source) == ColourKind::pattern) {
            TreeWriter(out_, servers_, numbers_, base_).writePattern(use.source, depth);
        } else {
            servers_.writeGradient(out_, use.source, depth);
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

/// The group of a shape whose clip and look may not be its own.
void TreeWriter::openWrapper(const Appearance& appearance) {
    out_.text("<g");
    writeLook(appearance);
    if (const ClipChain& chain = levels_.back().chain; chain.isNamed()) {
        writeReference(chain.clip);
    }
    out_.text(">");
}

/// A pen that is not round transforms the path, and would transform a clip or a mask with it: a
/// group carries those.
void TreeWriter::writeShape(Art shape) {
    const Level& level = levels_.back();
    const Art leading = leadingPath(document_, shape);
    const PathStyle style = leading == Art::null ? PathStyle{} : document_.style(leading);
    const bool guide = leading != Art::null && document_.guide(leading);
    const Appearance appearance = lookOf(shape);
    const Pen pen = guide ? Pen() : drawnPen(style);
    const bool isClipped = level.chain.isNamed();
    const bool isWrapped = pen != Pen() && (isClipped || appearance.mask != SoftMask::null);
    if (!guide) {
        writeServers(style, level.depth);
    }
    writeMasks(appearance.mask, level.depth);
    writeIndent(out_, level.depth);
    if (isWrapped) {
        openWrapper(appearance);
    }
    out_.text("<path");
    if (!level.isObject) {
        writeShapeId(out_, level.content, ++numbers_.shapes[level.content]);
    }
    writeSource("data-source", shape);
    if (guide) {
        writeGuideStyle(out_);
    } else {
        writePaintedStyle(out_, style, servers_);
        writePaintOpacities(out_, style, appearance.fillOpacity, appearance.strokeOpacity);
    }
    if (!isWrapped) {
        writeLook(appearance);
    }
    if (level.chain.hides) {
        writePlainAttribute(out_, "display", "none");
    } else if (isClipped && !isWrapped) {
        writeReference(level.chain.clip);
    }
    writeData(shape, pen);
    endShape(style.note);
    out_.text(isWrapped ? "</g>" : "");
}

void TreeWriter::writeLine(Art text) {
    const Level& level = levels_.back();
    const std::int32_t runs = document_.textRunCount(text);
    for (std::int32_t i = 0; i < runs; ++i) {
        writeServers(document_.textRun(text, i).style, level.depth);
    }
    const Appearance appearance = lookOf(text);
    writeMasks(appearance.mask, level.depth);
    std::uint32_t& shapes = numbers_.shapes[level.content];
    TextPlace place{.corner = corner_,
                    .base = base_,
                    .content = level.content,
                    .number = shapes + 1,
                    .clip = {}};
    shapes += static_cast<std::uint32_t>(runs);
    if (level.chain.clip != 0) {
        place.clip = referenceTo(level.chain.clip);
    }
    place.hidden = level.chain.hides;
    place.joinsRuns = level.content >= 0 && !isOfAnnotations_;
    place.letters = numbers_.letters;
    const bool isWrapped = appearance.mask != SoftMask::null;
    if (!isWrapped) {
        place.appearance = appearance;
    }
    writeIndent(out_, level.depth);
    if (isWrapped) {
        out_.text("<g");
        writeLook(appearance);
        out_.text(">");
    }
    writeText(out_, servers_, text, place);
    out_.text(isWrapped ? "</g>" : "");
}

/// A clip or a mask would be turned with the picture, so one that the picture itself carries is a
/// group's.
void TreeWriter::writePlaced(Art placed) {
    const Level& level = levels_.back();
    const bool isPicture = showsFile(document_, placed);
    const bool isClipped = level.chain.isNamed();
    const Appearance appearance = lookOf(placed);
    const bool isStyled =
        appearance.mask != SoftMask::null || appearance.blend != BlendMode::normal;
    const bool isWrapped = isPicture && (isClipped || isStyled);
    writeMasks(appearance.mask, level.depth);
    writeIndent(out_, level.depth);
    if (isWrapped) {
        openWrapper(appearance);
    }
    out_.text(isPicture ? "<image" : "<path");
    writeShapeId(out_, level.content, ++numbers_.shapes[level.content]);
    writeSource("data-source", placed);
    if (!isWrapped) {
        writeLook(appearance);
    }
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
    out_.text(isWrapped ? "/></g>" : "/>");
}

/// The last attribute of a shape. A compound path that looks like a path is marked.
void TreeWriter::writeData(Art shape, const Pen& pen) {
    if (document_.kind(shape) == ArtKind::compound) {
        int drawn = 0;
        forEachSubpath(document_, shape,
                       [&](Art path) { drawn += document_.segments(path).empty() ? 0 : 1; });
        if (drawn < 2) {
            writePlainAttribute(out_, "data-compound", "true");
        }
    }
    if (pen != Pen()) {
        servers_.writePen(out_, pen);
    }
    out_.text(" d=\"");
    writePathData(out_, document_, shape, corner_, pen);
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
