#include "app/svg/writer.h"

#include "app/svg/art_source.h"
#include "app/svg/font_rules.h"
#include "app/svg/image_writer.h"
#include "app/svg/layer_attributes.h"
#include "app/svg/markup.h"
#include "app/svg/paint_servers.h"
#include "app/svg/path_data.h"
#include "app/svg/root.h"
#include "app/svg/style.h"
#include "app/svg/subpaths.h"
#include "app/svg/survey.h"
#include "app/svg/text_writer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

namespace {

/// Depth of an element whose children may still be groups, the root's being 0. Readers of XML give
/// up at 256; what they wrap around the file must fit as well.
constexpr int deepestGroup = 190;

/// The clips that elements below `deepestGroup` carry themselves, because no group does it for
/// them. Rectangles are cut down to one; other clips name the clip before them.
struct ClipChain {
    std::uint32_t clip = 0; ///< number of the clip that holds all of them; 0: none
    std::uint32_t base = 0; ///< the same without the rectangle
    Extent rectangle = Extent::everything();
    bool hides = false; ///< nothing is left to be seen
};

/// A group whose children are being written.
struct Level {
    Art clip = Art::null;
    Art next = Art::null;
    int depth = 0;         ///< of the children's elements
    bool element = false;  ///< the group is an element, to be ended
    bool isObject = false; ///< all in it has one source: the group is numbered, and no shape
    Extent visible;        ///< what clips around it let through, at most
    ClipChain chain;
};

enum class ClipEffect { none, cutsNothing, cuts, hides };

/// What is the same, or counted, through the whole file.
struct Numbers {
    std::uint32_t layers = 0;
    std::uint32_t groups = 0;
    std::uint32_t shapes = 0;
    std::uint32_t clips = 0;
    LetterAdvances* advances = nullptr; ///< where letters get places of their own
};

std::string clipReference(std::uint32_t clip) {
    return "url(#clip" + std::to_string(clip) + ")";
}

PageCorner cornerOf(const Document& document) {
    return {document.page().bounds().left, document.page().bounds().top};
}

/// Writes one tree of art after the other.
class SvgWriter {
public:
    SvgWriter(TextOutput& out, PaintServers& servers, Numbers& numbers, SourceBase base)
        : document_(servers.document()), out_(out), servers_(servers), numbers_(numbers),
          base_(base), corner_(cornerOf(document_)) {}

    void writeLayers() {
        for (Layer layer = document_.lastLayer(); layer != Layer::null && !out_.failed();
             layer = document_.previousLayer(layer)) {
            writeLayer(layer);
        }
    }

    void writePattern(PaintSource, int depth);

private:
    void writeLayer(Layer layer);
    void writeLevels();
    void enterGroup(Art, const LayerProperties*);
    void leaveGroup();
    void writeShape(Art);
    void writeLine(Art text);
    void writePlaced(Art placed);
    void writeServers(const PathStyle&, int depth);
    void endShape(Note);

    ClipEffect clipEffect(Art clip, const GroupSurvey&, const Extent& visible) const;
    std::uint32_t writeClip(Art clip, std::uint32_t within, int depth);
    std::uint32_t writeRectangleClip(const Extent&, std::uint32_t within, int depth);
    void startClip(std::uint32_t number, std::uint32_t within, int depth);
    void extendChain(ClipChain&, Art clip, const ClipShape&, int depth);
    void writeReference(std::uint32_t clip);
    void writeDroppedClip(Art clip);
    void writeData(Art shape);
    bool hasOrdinal(Art) const;
    void writeGroupId(const Level&);
    void writeId(std::string_view kind, std::uint32_t number);
    void writeSource(std::string_view name, Art);

    const Document& document_;
    TextOutput& out_;
    PaintServers& servers_;
    Numbers& numbers_;
    SourceBase base_;
    PageCorner corner_;
    std::vector<GroupSurvey> survey_;
    std::size_t group_ = 0; ///< of `survey_`: the next one met
    std::vector<Level> levels_;
};

void SvgWriter::writeLayer(Layer layer) {
    const Art top = document_.layerArt(layer);
    survey_ = surveyGroups(document_, top);
    group_ = 0;
    enterGroup(top, &document_.layerProperties(layer));
    writeLevels();
}

/// Whether art is one object of a page.
bool SvgWriter::hasOrdinal(Art art) const {
    const std::optional<ArtSource> source = document_.source(art);
    return source && source->ordinal >= 0;
}

/// Groups within an object need no name.
void SvgWriter::writeGroupId(const Level& level) {
    if (!level.isObject) {
        writeId("g", ++numbers_.groups);
    } else if (levels_.empty() || !levels_.back().isObject) {
        writeId(shapeIdPrefix, numbers_.shapes);
    }
}

/// The art of the tile stands in the pattern. A tile that is clipped is a group there.
void SvgWriter::writePattern(PaintSource source, int depth) {
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
    Level level;
    level.next = grouped ? tile : document_.lastChild(tile);
    level.depth = depth + 1;
    level.visible = Extent::everything();
    levels_.push_back(level);
    writeLevels();
    writeIndent(out_, depth);
    out_.text("</pattern>");
}

void SvgWriter::writeLevels() {
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

void SvgWriter::enterGroup(Art group, const LayerProperties* layer) {
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
        numbers_.shapes += starts ? 1 : 0;
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

void SvgWriter::leaveGroup() {
    const Level& level = levels_.back();
    if (level.element) {
        writeIndent(out_, level.depth - 1);
        out_.text("</g>");
    }
    levels_.pop_back();
}

/// What a path of this style is painted with, as far as it is not written yet.
void SvgWriter::writeServers(const PathStyle& style, int depth) {
    for (const PaintSource source : servers_.claim(style)) {
        if (document_.paintKind(source) == ColourKind::pattern) {
            SvgWriter(out_, servers_, numbers_, base_).writePattern(source, depth);
        } else {
            servers_.writeGradient(out_, source, depth);
        }
    }
}

/// Ends the element of a shape whose attributes are written.
void SvgWriter::endShape(Note note) {
    if (note == Note::null) {
        out_.text("/>");
        return;
    }
    out_.text("><desc>");
    writeEscaped(out_, document_.note(note));
    out_.text("</desc></path>");
}

void SvgWriter::writeShape(Art shape) {
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
        writeId(shapeIdPrefix, ++numbers_.shapes);
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

void SvgWriter::writeLine(Art text) {
    const Level& level = levels_.back();
    const std::int32_t runs = document_.textRunCount(text);
    for (std::int32_t i = 0; i < runs; ++i) {
        writeServers(document_.textRun(text, i).style, level.depth);
    }
    TextPlace place{.corner = corner_, .base = base_, .number = numbers_.shapes + 1, .clip = {}};
    numbers_.shapes += static_cast<std::uint32_t>(runs);
    if (level.chain.clip != 0) {
        place.clip = clipReference(level.chain.clip);
    }
    place.hidden = level.chain.hides;
    place.advances = numbers_.advances;
    writeIndent(out_, level.depth);
    writeText(out_, servers_, text, place);
}

/// A clip would be turned with the picture, so one that the picture itself carries is a group's.
void SvgWriter::writePlaced(Art placed) {
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
    writeId(shapeIdPrefix, ++numbers_.shapes);
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

ClipEffect SvgWriter::clipEffect(Art clip, const GroupSurvey& survey, const Extent& visible) const {
    if (clip == Art::null) {
        return ClipEffect::none;
    }
    if (survey.clip.blank) {
        return ClipEffect::hides;
    }
    const PathStyle& style = document_.style(leadingPath(document_, clip));
    const bool kept = style.fillPaint != 0 || style.strokePaint != 0 || style.note != Note::null;
    if (!kept && survey.clip.rectangle &&
        survey.clip.bounds.contains(survey.content.within(visible))) {
        return ClipEffect::cutsNothing;
    }
    return ClipEffect::cuts;
}

void SvgWriter::startClip(std::uint32_t number, std::uint32_t within, int depth) {
    writeIndent(out_, depth);
    out_.text("<clipPath");
    writeId("clip", number);
    if (within != 0) {
        writeReference(within);
    }
    out_.text("><path");
}

std::uint32_t SvgWriter::writeClip(Art clip, std::uint32_t within, int depth) {
    const std::uint32_t number = ++numbers_.clips;
    const Art leading = leadingPath(document_, clip);
    const PathStyle style = leading == Art::null ? PathStyle{} : document_.style(leading);
    writeServers(style, depth);
    startClip(number, within, depth);
    writeSource("data-source", clip);
    writeClipStyle(out_, style, servers_);
    writeData(clip);
    endShape(style.note);
    out_.text("</clipPath>");
    return number;
}

std::uint32_t SvgWriter::writeRectangleClip(const Extent& rectangle, std::uint32_t within,
                                            int depth) {
    const std::uint32_t number = ++numbers_.clips;
    startClip(number, within, depth);
    out_.text(" d=\"");
    writeRectangleData(out_, rectangle, corner_);
    out_.text("\"/></clipPath>");
    return number;
}

void SvgWriter::extendChain(ClipChain& chain, Art clip, const ClipShape& shape, int depth) {
    if (shape.blank) {
        chain.hides = true;
    }
    if (chain.hides) {
        return;
    }
    if (!shape.rectangle) {
        chain.clip = writeClip(clip, chain.clip, depth);
        chain.base = chain.clip;
        chain.rectangle = Extent::everything();
        return;
    }
    chain.rectangle = chain.rectangle.within(shape.bounds);
    if (chain.rectangle.empty()) {
        chain.hides = true;
    } else {
        chain.clip = writeRectangleClip(chain.rectangle, chain.base, depth);
    }
}

void SvgWriter::writeReference(std::uint32_t clip) {
    writePlainAttribute(out_, "clip-path", clipReference(clip));
}

void SvgWriter::writeDroppedClip(Art clip) {
    out_.text(" data-clip=\"");
    writePathData(out_, document_, clip, corner_);
    out_.text("\"");
    if (document_.style(leadingPath(document_, clip)).rule == FillRule::evenOdd) {
        writePlainAttribute(out_, "data-clip-rule", "evenodd");
    }
    writeSource("data-clip-source", clip);
}

/// The last attribute of a shape. A compound path that looks like a path is marked.
void SvgWriter::writeData(Art shape) {
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

void SvgWriter::writeId(std::string_view kind, std::uint32_t number) {
    out_.text(" id=\"");
    out_.text(kind);
    out_.number(std::int64_t{number} << 16);
    out_.text("\"");
}

void SvgWriter::writeSource(std::string_view name, Art art) {
    // Without bytes it is an ordinal that an id told.
    if (const std::optional<ArtSource> source = document_.source(art); source && source->end != 0) {
        writeArtSource(out_, name, *source, base_);
    }
}

} // namespace

std::error_code writeSvg(const Document& document, const Provenance& provenance, ByteSink& sink,
                         const SvgOptions& options) {
    TextOutput out(sink);
    writeRootStart(out, document.page(), provenance, document.images().size() != 0);
    if (options.fonts == EmbeddedFonts::all) {
        writeFontRules(out, document.fonts());
    }
    PaintServers servers(document, cornerOf(document));
    Numbers numbers;
    LetterAdvances advances(document.fonts());
    if (options.letters == LetterPlacing::exact) {
        numbers.advances = &advances;
    }
    SvgWriter(out, servers, numbers, sourceBase(provenance)).writeLayers();
    out.text("\n</svg>\n");
    return out.flush();
}

} // namespace corvane
