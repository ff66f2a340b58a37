// Reads the elements of a file, from the back to the front, into the layers of a document.
#pragma once

#include "app/svg/read/clip_reader.h"
#include "app/svg/read/context.h"
#include "app/svg/read/layer_reader.h"
#include "app/svg/read/mask_reader.h"
#include "app/svg/read/paint/paint_reader.h"
#include "app/svg/read/shape_builder.h"
#include "app/svg/read/tree/frame.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

struct MarkerForm;

/// A shape that is being read. `attributes_` are its own.
struct ShapeUse {
    Element element;
    const ComputedStyle& style;
    RealMatrix matrix; ///< from its user space to the art
    LengthContext lengths;
    Note note = Note::null;
    bool measures = false; ///< the box around it will be asked for
};

/// What `context-fill` and `context-stroke` stand for.
struct ContextPaint {
    PaintValue fill;
    PaintTwin fillTwin;
    PaintValue stroke;
    PaintTwin strokeTwin;
    std::optional<PaintUse> use; ///< where it is known what they are painted on
};

class TreeReader {
public:
    explicit TreeReader(ReadingContext& context)
        : context_(context), document_(context.document), layers_(context.document),
          clips_(context, paints_), masks_(context, paints_), paints_(context),
          shape_(context.document, context.tally) {}

    /// `toArt` leads from the root's user space to the art. Throws `SvgError` past the budget,
    /// `ArtworkError` past the artwork's limits.
    void read(pugi::xml_node root, const RealMatrix& toArt, const Viewport& viewport);

    /// Reads the children of a pattern into its tile, or those of a mask into its content.
    void readTile(pugi::xml_node pattern, Art tile, const RealMatrix& toTile,
                  const Viewport& viewport);

    /// The element that was read last: where a failure is.
    pugi::xml_node current() const { return current_; }

private:
    // Elements.
    void countAgain(std::int64_t elements);
    void load(pugi::xml_node node);
    void readFrames();
    void visit(pugi::xml_node node);
    void enterGroup(pugi::xml_node node);
    void enterLayer(pugi::xml_node node, Frame& frame);
    void enterSwitch(pugi::xml_node node);
    void enterUse(pugi::xml_node node);
    void enterViewport(pugi::xml_node node);
    void readShape(pugi::xml_node node, Element element);
    Art drawPaths(ArtPlace place, const ShapeUse& use, VertexTrace* trace);
    static bool hasCoats(const ComputedStyle& style, Element element);
    Art drawCoats(ArtPlace place, const ShapeUse& use);
    void drawMarkers(ArtPlace place, const ShapeUse& use, const VertexTrace& trace,
                     const UserBox& box);
    void drawMarker(ArtPlace place, const MarkerForm& form, const ShapeUse& use,
                    const VertexTrace& trace, std::size_t vertex, bool isStart,
                    const ContextPaint& paint);
    void readMarker(const MarkerForm& form, Art group, const RealMatrix& toArt);
    void resolveContext(ComputedStyle& style);
    void paintBackground(std::string_view colour);
    void readText(pugi::xml_node node);
    void readImage(pugi::xml_node node);
    void placeImage(const LoadedImage& image, const ComputedStyle& style);
    bool hidesSquares() const;
    void linkFile(Art placed);
    ArtPlace clipOverhang(ArtPlace place, const UserBox& box, const RealMatrix& matrix);
    void listImage(const ComputedStyle& style);
    bool keepFrame(Art shape, const ComputedStyle& style, const RealMatrix& userSpace);
    void measure(Extent painted);
    Note readWithin(pugi::xml_node shape);
    std::optional<ArtSource> sourceFrom(Attribute name) const;
    std::optional<ArtSource> sourceOfShape() const;
    void readStructure(const Frame& frame);
    void noteLayerGroup(const ContentLayerFacts& now, const ContentLayerFacts& opened);
    ContentLayerFacts newLayer(const Frame& frame) const;
    bool isOfPage(pugi::xml_node layer) const;
    bool isLayerWithin() const;
    void markMissingAnnotations(const Frame& frame);
    void setSource(Art art, const std::optional<ArtSource>& source);

    // Frames.
    Frame frameOf(pugi::xml_node node);
    Frame frameOfHolder(pugi::xml_node holder, const Viewport& viewport);
    void push(Frame frame);
    void leave();
    bool isHidden(const Frame& frame);
    bool wrapsLayers(pugi::xml_node node) const;

    // Groups and their clips.
    void openGroups(Frame& frame, Art outermost);
    bool holdsNothing(const Frame& frame) const;
    void makeBoxClips(Frame& frame);
    void makeLateClip(Frame& frame);
    Art drawLateClip(const Frame& frame);

    // How it is laid over what is behind it.
    ElementLook lookOf(const ComputedStyle& style, const RealMatrix& matrix,
                       const Viewport& viewport) const;
    ElementLook lookOfChild(const ComputedStyle& style, const RealMatrix& matrix) const;
    bool carriesLook(pugi::xml_node node, const Frame& frame) const;
    Appearance appearanceOf(const ElementLook& look, const UserBox& box);
    void setFrameLook(const Frame& frame);
    void settleBlending(Frame& frame);
    void passBlending(Art group, BlendMode blend);
    void setLook(Art art, const ElementLook& look, const UserBox& box);
    void setShapeLook(Art shape, const ComputedStyle& style, const RealMatrix& matrix);

    // Where art goes: in front of what is there.
    ArtPlace placeIn(const Frame& frame);
    ArtPlace placeClipped(const std::vector<pugi::xml_node>& chain, const RealMatrix& matrix);
    void closeShared(Frame& frame, std::size_t kept);
    SharedClip makeShared(ArtPlace place, pugi::xml_node clip, const RealMatrix& matrix);
    ArtPlace openBoxed(const std::vector<pugi::xml_node>& chain, const RealMatrix& matrix,
                       std::vector<BoxClip>& clips);
    void stylePaths(Art shape, const ShapeUse& use);

    ReadingContext& context_;
    Document& document_;
    LayerReader layers_;
    ClipReader clips_;
    MaskReader masks_;
    PaintReader paints_;
    ShapeBuilder shape_;
    Attributes attributes_; ///< of the element that is being entered or read
    std::vector<Frame> frames_;
    bool inTile_ = false;
    bool mixes_ = false; ///< something read in the frame at hand blends with what is behind that
    std::vector<pugi::xml_node> targets_; ///< of the `use` elements around
    std::vector<ContextPaint> contexts_;  ///< of these, and of a marker
    pugi::xml_node current_;
};

} // namespace corvane
