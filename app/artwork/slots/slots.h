// What the host answers at each slot, under the slot's own name. Arithmetic is in arithmetic.h.
//
// All work on the document of the `CallbackScope` in force. Nothing thrown leaves them: whatever
// goes wrong, a null pointer included, is answered with `HostError::failed`; slots without a result
// do nothing then.
#pragma once

#include "host/artwork.h"
#include "host/callbacks.h"
#include "host/structure.h"

#include <cstddef>
#include <cstdint>

namespace corvane::answer {

// Control
HostBoolean checkUserAbort();
HostError finishImport(Art, Art);
HostBoolean modalFilter(void* dialog, void* event, std::int16_t* itemHit);
HostError addFileFormat(const std::uint8_t* name, std::uint32_t type, std::int32_t options,
                        std::int32_t zero);

// Layers and the art tree
HostError getNextLayer(Layer, Layer* next);
HostError getLayerInfo(Layer, LayerInfo*);
HostError getLayerArt(Layer, Art*);
HostError getArtType(Art, ArtKind*);
HostError getFirstChild(Art, Art* child);
HostError getNextSibling(Art, Art* next);
HostError newArt(ArtKind, Placement, Art reference, Art* made);
HostError disposeArt(Art);
HostError reorderArt(Art, Placement, Art reference);
HostError duplicateArt(Art, Placement, Art reference, Art* copy);
HostError getGroupClipped(Art, std::uint8_t* clipped);
HostError setGroupClipped(Art, std::uint8_t clipped);
HostError setArtSource(Art, const ArtSource*);
HostError getArtSource(Art, ArtSource*);
HostError newArtwork(Art* made);
HostError disposeArtwork(Art);

// What groups and layers stand for in the file
HostError setForm(Art group, const FormFacts*);
HostError getForm(Art group, FormFacts*);
HostError addContentLayer(const ContentLayerFacts*, ContentLayer* layer);
HostError getContentLayer(ContentLayer, ContentLayerFacts*);
HostError setGroupLayer(Art group, ContentLayer);
HostError getGroupLayer(Art group, ContentLayer*);
HostError addLayer(const LayerInfo*, LayerRole, Layer* made);
HostError getLayerRole(Layer, LayerRole*);

// Paths
HostError getPathClosed(Art, std::uint8_t* closed, std::int32_t flags);
HostError setPathClosed(Art, std::uint8_t closed);
HostError getPathGuide(Art, std::uint8_t* guide);
HostError getPathSegmentCount(Art, std::int32_t* count);
HostError setPathSegmentCount(Art, std::int32_t count);
HostError getPathSegments(Art, std::int32_t first, std::int32_t count, Segment*);
HostError setPathSegments(Art, std::int32_t first, std::int32_t count, const Segment*);
HostError getPathStyle(Art, PathStyle*);
HostError setPathStyle(Art, const PathStyle*);
HostError getDefaultStyle(PathStyle*);

// Paint
void getColorInfo(PaintSource custom, CustomColour*);
/// Of a path in a compound path: the gradient of the compound path's first path.
HostError drawGradient(Art path, const DrawingProcedures*);
/// In the same way.
HostError tilePattern(Art path, TileProcedure);
HostError getNote(Note, std::uint8_t* text);
HostError addGradient(const GradientFacts*, PaintSource* gradient);
HostError getGradient(PaintSource gradient, GradientFacts*);
HostError addPattern(const PatternFacts*, PaintSource* pattern);
HostError getPattern(PaintSource pattern, PatternFacts*);
HostError addCustomColour(const CustomColour*, PaintSource* custom);
HostError addInkMixture(const InkMixtureFacts*, PaintSource* mixture);
HostError getInkMixture(PaintSource mixture, InkMixtureFacts*);

// Text
HostError addFont(const FontFacts*, Font* font);
HostError setFontFile(Font, std::int32_t face, const std::byte* file, std::int32_t length);
HostError getFontFacts(Font, FontFacts*);
HostError setTextLine(Art text, const TextLine*);
HostError getTextLine(Art text, TextLine*);
HostError addTextRun(Art text, const TextRun*);
HostError addTextRunBefore(Art text, const TextLine*, const TextRun*, Fixed gap);
HostError setTextRuns(Art text, const TextRun* runs, std::int32_t count);
HostError getTextRunCount(Art text, std::int32_t* count);
HostError getTextRun(Art text, std::int32_t index, TextRun*);

// Images
HostError addImage(const ImageFacts*, Image* image, std::uint8_t* wantsBytes);
HostError addImageBytes(Image, const std::byte* bytes, std::int64_t count);
HostError endImage(Image);
HostError giveUpImage(Image);
HostError getImageFacts(Image, ImageFacts*);
HostError openImageBytes(Image);
HostError readImageBytes(Image, std::byte* bytes, std::int64_t room, std::int64_t* count);
HostError setPlacedImage(Art placed, const PlacedImage*);
HostError getPlacedImage(Art placed, PlacedImage*);

// Appearance
HostError setAppearance(Art, const Appearance*);
HostError getAppearance(Art, Appearance*);
HostError addMask(const MaskFacts*, SoftMask*);
HostError getMask(SoftMask, MaskFacts*);

// Page
void getDocumentInfo(DocumentInfo*);
HostError getPageOrigin(Point*);
HostError getPageBounds(Rect*);
HostError setPageBounds(const Rect*);
HostError getArtboardSize(ArtboardSize*);
HostError setArtboardSize(const ArtboardSize*);
void redrawDocument();

} // namespace corvane::answer
