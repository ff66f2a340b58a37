// The artwork that a person edits: layers of groups, paths, compound paths, text and placed images,
// and their page. How kinds of art differ is in art_kinds.h.
//
// Lists of layers and of art run front to back. Handles are 32-bit numbers that are checked at
// every use: one that names nothing (disposed of, made up, null where art is needed) throws
// `ArtworkError`, as does an operation that its art cannot take, or a limit passed; the artwork is
// then as it was. Reading and changing links takes constant time; copying, disposing of and
// deepening art takes time in what it holds. Nothing recurses.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/content_layers.h"
#include "app/artwork/error.h"
#include "app/artwork/images/image_table.h"
#include "app/artwork/images/placed_files.h"
#include "app/artwork/layers.h"
#include "app/artwork/masks.h"
#include "app/artwork/page.h"
#include "app/artwork/paint/paint.h"
#include "app/artwork/paint/paint_table.h"
#include "app/artwork/storage/segments.h"
#include "app/artwork/storage/side_table.h"
#include "app/artwork/text/fonts.h"
#include "app/artwork/text/styles.h"
#include "app/artwork/text/text_table.h"
#include "app/artwork/tree.h"
#include "host/appearance.h"
#include "host/artwork.h"
#include "host/image.h"
#include "host/matrix.h"
#include "host/structure.h"
#include "host/text.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace corvane {

class Document {
public:
    /// A document of one visible, printing layer without title. `limit` is bytes of artwork.
    explicit Document(std::int64_t limit = artworkLimit());
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    // Layers. There is always one.
    Layer firstLayer() const;              ///< the frontmost
    Layer lastLayer() const;               ///< the backmost
    Layer nextLayer(Layer) const;          ///< the one behind, or null
    Layer previousLayer(Layer) const;      ///< the one in front, or null
    Layer addLayer(LayerProperties);       ///< in front of all others
    Layer addLayerBehind(LayerProperties); ///< behind all others
    const LayerProperties& layerProperties(Layer) const;
    void setLayerProperties(Layer, LayerProperties);
    Art layerArt(Layer) const; ///< the layer's own group; it cannot be moved or disposed of

    // The tree.
    ArtKind kind(Art) const;
    Art parent(Art) const;          ///< null for a layer's own group and for an artwork
    Art firstChild(Art) const;      ///< of a group or compound path: the frontmost, or null
    Art lastChild(Art) const;       ///< of a group or compound path: the backmost, or null
    Art nextSibling(Art) const;     ///< the one behind, or null
    Art previousSibling(Art) const; ///< the one in front, or null
    Art top(Art) const;             ///< the layer's own group, or the artwork, that it is in
    bool clipped(Art group) const;  ///< its first child clips the others
    void setClipped(Art group, bool clipped);

    /// Compound paths hold paths only, groups all kinds.
    Art make(ArtKind, Placement, Art reference);
    /// Disposes of art and all that it holds.
    void dispose(Art);
    void reorder(Art, Placement, Art reference);
    /// Copies art and all that it holds.
    Art duplicate(Art, Placement, Art reference);

    // Where art was read from. Moved art keeps it; a copy has that of its original.
    std::optional<ArtSource> source(Art) const;
    void setSource(Art, const ArtSource&);

    // What groups stand for in the file. Copies stand for the same.
    std::optional<FormFacts> form(Art group) const;
    void setForm(Art group, const FormFacts&);
    ContentLayerTable& contentLayers() { return contentLayers_; }
    const ContentLayerTable& contentLayers() const { return contentLayers_; }
    /// Null: the group shows always.
    ContentLayer groupLayer(Art group) const;
    /// The layer must be here, or be null.
    void setGroupLayer(Art group, ContentLayer);

    // Paths.
    bool closed(Art path) const;
    void setClosed(Art path, bool closed);
    bool guide(Art path) const;
    void setGuide(Art path, bool guide);
    const PathStyle& style(Art path) const;
    void setStyle(Art path, const PathStyle&);
    Segments segments(Art path) const;
    /// New segments lie at 0,0. Fewer drops the last ones.
    void setSegmentCount(Art path, std::int32_t count);
    /// `first` and the size must lie within the path's count.
    void readSegments(Art path, std::int32_t first, std::span<Segment> into) const;
    void writeSegments(Art path, std::int32_t first, std::span<const Segment>);

    // Text: lines of runs, which a new text object has none of. Strings, pieces and paths of lines
    // live as long as the document.
    Font addFont(const FontFacts&);
    void setFontFile(Font, std::int32_t face, std::span<const std::byte> file);
    const FontTable& fonts() const { return fonts_; }
    TextLine textLine(Art text) const;
    /// Its path, if it has one, has two segments or more.
    void setTextLine(Art text, const TextLine&);
    std::int32_t textRunCount(Art text) const;
    TextRun textRun(Art text, std::int32_t index) const;
    /// Its font must be here, its size more than 0, its text without control characters.
    void addTextRun(Art text, const TextRun&);
    /// The same, before the runs that are there: the line is then this one, and the run that was
    /// the first is moved on by `gap`, in its ems.
    void addTextRunBefore(Art text, const TextLine&, const TextRun&, Fixed gap);
    /// All of them at once, in place of those that are there, of which they may be views.
    void setTextRuns(Art text, std::span<const TextRun>);
    void setTextRunStyle(Art text, std::int32_t index, const PathStyle&);
    /// Moves, turns and stretches a line. By how much its letters grow in height goes into sizes.
    void transformText(Art text, const RealMatrix&);

    // Images, and the placed objects that show them. Copies show the same image.
    ImageTable& images() { return images_; }
    const ImageTable& images() const { return images_; }
    /// Of a new placed object: no image.
    PlacedImage placedImage(Art placed) const;
    /// The image must be here.
    void setPlacedImage(Art placed, const PlacedImage&);
    PlacedFiles& placedFiles() { return placedFiles_; }
    /// The file that the object is linked to, or null.
    const PlacedFile* placedFile(Art placed) const;
    /// Links the object; the picture of the file is what it shows.
    void setPlacedFile(Art placed, PlacedFileId);

    // Paint. Records stay for the document's life, where they are; equal ones are one. A style may
    // only use sources that are here, of its colour's kind.
    PaintSource addGradient(Gradient);
    /// The tile is an artwork of its own. Patterns in it must have been added before this one, now
    /// and later, so that none uses itself.
    PaintSource addPattern(Pattern);
    PaintSource addSpotColour(SpotColour);
    PaintSource addInkMixture(InkMixture);
    const Gradient& gradient(PaintSource) const;
    const Pattern& pattern(PaintSource) const;
    const SpotColour& spotColour(PaintSource) const;
    const InkMixture& inkMixture(PaintSource) const;
    ColourKind paintKind(PaintSource) const; ///< gradient, pattern, custom or inks
    Note addNote(std::string);               ///< UTF-8
    const std::string& note(Note) const;

    // How art is laid over what is behind it. Copies of art have the masks of their originals.
    Appearance appearance(Art) const;
    void setAppearance(Art, const Appearance&);
    /// The content is an artwork of its own. Patterns and masks that it uses are used already: from
    /// now on none of its art gets one, so that no mask uses itself. Masks and their records stay
    /// for the document's life.
    SoftMask addMask(const MaskFacts&);
    const MaskFacts& mask(SoftMask) const;

    // Artworks of their own: groups in no layer. Tiles of patterns are some, contents of masks, and
    // art that is not meant to be seen.
    Art makeArtwork();
    /// With all that it holds. Throws where a pattern or a mask uses it.
    void disposeArtwork(Art);

    // The page.
    const Page& page() const { return page_; }
    Page& page() { return page_; }

    // Import: what a plug-in brings in goes into the frontmost layer.
    void expectImport();         ///< from now on `importArt` starts an import
    Art importArt();             ///< where imported art goes
    void finishImport(Art);      ///< the import into this art is complete
    bool importFinished() const; ///< one was expected, and is complete

    const ArtworkBudget& budget() const { return budget_; }

private:
    enum class Import { none, expected, started, finished };

    Art makeLayerArt();
    NodeIndex findContainer(Art) const;
    NodeIndex findMovable(Art) const;
    NodeIndex findArtwork(Art) const;
    NodeIndex topOf(NodeIndex) const;
    void checkStyle(NodeIndex art, const PathStyle&) const;
    void checkRun(NodeIndex text, const TextRun&) const;
    void checkColour(NodeIndex art, const Colour&) const;
    void checkTileStyle(const PathStyle&, PaintSource first) const;
    void checkPatternsAt(NodeIndex top, NodeIndex parent) const;
    void copyBelow(NodeIndex from, NodeIndex to);
    void copyProperties(NodeIndex from, NodeIndex to);
    PaintSource firstPatternOf(NodeIndex top) const;
    void freeNode(NodeIndex);
    void freeTree(NodeIndex top);
    void reclaimSegments();

    ArtworkBudget budget_;
    Tree tree_;
    SegmentPool segments_;
    StyleTable styles_;
    FontTable fonts_;
    TextTable texts_;
    ImageTable images_;
    SideTable<PlacedImage> placed_;
    PlacedFiles placedFiles_;
    SideTable<PlacedFileId> linked_;
    SideTable<ArtSource> sources_;
    SideTable<Appearance> appearances_;
    MaskTable masks_;
    SideTable<FormFacts> forms_;
    ContentLayerTable contentLayers_;
    SideTable<ContentLayer> groupLayers_;
    /// Of each artwork: the first pattern that it is the tile of; of a mask's, the first that there
    /// can be; or null.
    SideTable<PaintSource> artworks_;
    PaintTables paint_;
    Layers layers_;
    Page page_;
    Import import_ = Import::none;
};

} // namespace corvane
