// The host's callback table: every slot once, with its number, its name and its signature.
//
// The table is an array of procedures indexed from 0. The plug-in calls a slot with `callHost`
// (runtime/callbacks.h), the host fills one with `fillSlot`. Slot numbers are the host's ABI.
#pragma once

#include "host/appearance.h"
#include "host/artwork.h"
#include "host/classic_text.h"
#include "host/gradient.h"
#include "host/image.h"
#include "host/inks.h"
#include "host/parameters.h"
#include "host/structure.h"
#include "host/text.h"

#include <bit>
#include <cstdint>
#include <span>
#include <type_traits>

namespace corvane {

/// Result of a slot that can fail; anything but 0 is a failure.
enum class HostError : std::int32_t { none = 0, failed = 1 };

/// Result of a yes/no slot: only the low 8 bits count.
enum class HostBoolean : std::int32_t { no = 0, yes = 1 };

/// Procedures in a host's table.
inline constexpr int slotCount = 371;

template <class Signature>
struct Slot {
    using Procedure = Signature*;

    /// Does not compile where the table has no such place.
    consteval explicit Slot(int place)
        : number(place < slotCount ? place : throw "past the table") {}

    int number;
};

namespace slot {

// Control and dialogs
inline constexpr Slot<HostBoolean()> checkUserAbort{2};
inline constexpr Slot<HostError(Art, Art)> finishImport{3}; ///< the same art twice
inline constexpr Slot<HostBoolean(void* dialog, void* event, std::int16_t* itemHit)> modalFilter{4};
inline constexpr Slot<HostError(const std::uint8_t* name, std::uint32_t type, std::int32_t options,
                                std::int32_t zero)>
    addFileFormat{304};

// Layers and the art tree
inline constexpr Slot<HostError(Layer, Layer* next)> getNextLayer{16}; ///< of null: the first layer
inline constexpr Slot<HostError(Layer, LayerInfo*)> getLayerInfo{18};
inline constexpr Slot<HostError(Layer, Art*)> getLayerArt{21}; ///< of null: where imports go
inline constexpr Slot<HostError(Art, ArtKind*)> getArtType{23};
inline constexpr Slot<HostError(Art, Art* child)> getFirstChild{27};
inline constexpr Slot<HostError(Art, Art* next)> getNextSibling{28};
inline constexpr Slot<HostError(ArtKind, Placement, Art reference, Art* made)> newArt{32};
inline constexpr Slot<HostError(Art)> disposeArt{33};
inline constexpr Slot<HostError(Art, Placement, Art reference)> reorderArt{34};
inline constexpr Slot<HostError(Art, Placement, Art reference, Art* copy)> duplicateArt{35};
inline constexpr Slot<HostError(Art group, std::uint8_t* clipped)> getGroupClipped{70};
inline constexpr Slot<HostError(Art group, std::uint8_t clipped)> setGroupClipped{71};
inline constexpr Slot<HostError(Art, const ArtSource*)> setArtSource{327};
inline constexpr Slot<HostError(Art, ArtSource*)> getArtSource{328}; ///< its defaults: not known
/// A new group that is in no layer, for artwork that nobody is to see.
inline constexpr Slot<HostError(Art* made)> newArtwork{329};
/// Disposes of such a group and all that it holds.
inline constexpr Slot<HostError(Art)> disposeArtwork{330};

// Paths and their segments
/// `flags` has no meaning yet: 0.
inline constexpr Slot<HostError(Art, std::uint8_t* closed, std::int32_t flags)> getPathClosed{37};
inline constexpr Slot<HostError(Art, std::uint8_t closed)> setPathClosed{38};
inline constexpr Slot<HostError(Art, std::uint8_t* guide)> getPathGuide{39};
inline constexpr Slot<HostError(Art, std::int32_t* count)> getPathSegmentCount{40};
inline constexpr Slot<HostError(Art, std::int32_t count)> setPathSegmentCount{41};
inline constexpr Slot<HostError(Art, std::int32_t first, std::int32_t count, Segment*)>
    getPathSegments{42};
inline constexpr Slot<HostError(Art, std::int32_t first, std::int32_t count, const Segment*)>
    setPathSegments{43};
inline constexpr Slot<HostError(Art, PathStyle*)> getPathStyle{48};
inline constexpr Slot<HostError(Art, const PathStyle*)> setPathStyle{49};
inline constexpr Slot<HostError(PathStyle*)> getDefaultStyle{50};

// Paint that the host draws
/// Leaves the record as it is where there is no such colour.
inline constexpr Slot<void(PaintSource custom, CustomColour*)> getColorInfo{54};
/// Fills the bounds of the path, and all else that it likes, with the gradient of the path's fill.
inline constexpr Slot<HostError(Art path, const DrawingProcedures*)> drawGradient{324};
/// Hands out tile after tile of the pattern of the path's fill, until the path is covered. The art
/// of a tile lives until the procedure returns.
inline constexpr Slot<HostError(Art path, TileProcedure)> tilePattern{325};
/// Fills 256 bytes with the text, length-prefixed.
inline constexpr Slot<HostError(Note, std::uint8_t* text)> getNote{326};

// Text of today: lines of runs
/// A font of these facts, made where there is none yet.
inline constexpr Slot<HostError(const FontFacts*, Font* font)> addFont{331};
/// An OpenType file for a face of a page font; faces are counted from 0. The bytes are copied.
inline constexpr Slot<HostError(Font, std::int32_t face, const std::byte* file,
                                std::int32_t length)>
    setFontFile{332};
/// The strings live as long as the document.
inline constexpr Slot<HostError(Font, FontFacts*)> getFontFacts{333};
inline constexpr Slot<HostError(Art text, const TextLine*)> setTextLine{334};
inline constexpr Slot<HostError(Art text, TextLine*)> getTextLine{335};
/// Adds a run behind those that the text object has.
inline constexpr Slot<HostError(Art text, const TextRun*)> addTextRun{336};
/// Adds a run before those that the text object has, whose line is this one then; the run that was
/// the first is moved on by `gap`, in its ems. From version 10 of the extension on.
inline constexpr Slot<HostError(Art text, const TextLine*, const TextRun*, Fixed gap)>
    addTextRunBefore{369};
/// The text object has these runs, one at least, in place of those that it had, of which they may
/// be views. From version 11 of the extension on.
inline constexpr Slot<HostError(Art text, const TextRun* runs, std::int32_t count)> setTextRuns{
    370};
inline constexpr Slot<HostError(Art text, std::int32_t* count)> getTextRunCount{337};
/// Text and pieces live until the text object is changed or disposed of.
inline constexpr Slot<HostError(Art text, std::int32_t index, TextRun*)> getTextRun{338};

// Fonts of the host, counted from 0
inline constexpr Slot<HostError(std::int32_t* count)> firstFontName{72};
/// Fills 256 bytes with the name, length-prefixed.
inline constexpr Slot<HostError(std::int32_t font, std::uint8_t* name)> nextFontName{73};
inline constexpr Slot<HostError(std::int32_t font, FontInfo*)> getFontInfo{74};
/// Fills 256 bytes with the folder of the fonts, length-prefixed; empty: there are none.
inline constexpr Slot<HostError(std::uint8_t* path)> getFontPath{204};
/// The font to draw in for want of the one of that length-prefixed name. `options`: 1.
inline constexpr Slot<HostError(const std::uint8_t* name, FontFile*, std::int32_t options)>
    findFontFile{205};

// Classic text, walked
inline constexpr Slot<HostError(Art text, RunHandle* run)> getFirstRun{75};
inline constexpr Slot<HostError(Art text, RunHandle, RunHandle* next)> getNextRun{76};
inline constexpr Slot<HostError(RunHandle, std::int32_t* letters)> getRunLength{77};
inline constexpr Slot<HostError(RunHandle, PathStyle*)> getRunStyle{81};
inline constexpr Slot<HostError(RunHandle, const PathStyle*)> setRunStyle{82};
inline constexpr Slot<HostError(RunHandle, RunText*)> getRunText{83};
inline constexpr Slot<HostError(RunHandle, CharStyle*)> getRunCharStyle{85};
inline constexpr Slot<HostError(RunHandle, ParaStyle*)> getRunParaStyle{87};
/// What the text runs along or within: it is asked for its first child, and where the text stands.
inline constexpr Slot<HostError(Art text, Art* path)> getTextPath{91};
inline constexpr Slot<HostError(Art text, LineHandle* line)> getFirstLine{92};
inline constexpr Slot<HostError(LineHandle, LineHandle* next)> getNextLine{95};
inline constexpr Slot<HostError(LineHandle, std::int32_t* letters)> getLineLength{100};
/// `none` where the line is set along a path.
inline constexpr Slot<HostStatus(LineHandle)> getLinePlacement{101};
/// From the letter's space to the artboard, b and c negated. Of a line along a path: the middle of
/// the letter is at the origin.
inline constexpr Slot<HostError(LineHandle, std::int32_t letter, Matrix*)> getGlyphMatrix{102};
inline constexpr Slot<HostError(LineHandle, FlowStyle*)> getLineStyle{106};

// Classic text, made
/// b and c are negated.
inline constexpr Slot<HostError(Art path, const Matrix*)> setTextOrigin{94};
inline constexpr Slot<HostError(Art text, Placement, RunHandle* run)> newTextRun{112};
inline constexpr Slot<HostError(RunHandle)> endTextRun{113};
/// Selects the place in front of the letter counted `position`; `end` below 0: nothing more.
inline constexpr Slot<HostError(RunHandle, std::int32_t position, std::int32_t end)> setRunPosition{
    114};
/// How many letters the run has.
inline constexpr Slot<HostError(RunHandle, std::int32_t* position)> adjustTextRun{115};
/// Puts letters behind those that are there; `count` says how many, and comes back as how many were
/// taken.
inline constexpr Slot<HostError(RunHandle, const std::uint8_t* letters, std::int32_t* count)>
    setRunText{117};
inline constexpr Slot<HostError(RunHandle, const PathStyle*)> setRunPaint{121};
/// Answers `fontMissing` where the font of that length-prefixed name is not there.
inline constexpr Slot<HostStatus(RunHandle, const std::uint8_t* name)> setRunFont{123};
inline constexpr Slot<HostError(RunHandle, CharStyle*)> getCharStyle{124};
inline constexpr Slot<HostError(RunHandle, const CharStyle*)> setCharStyle{125};
inline constexpr Slot<HostError(RunHandle, ParaStyle*)> getParaStyle{126};
inline constexpr Slot<HostError(RunHandle, const ParaStyle*)> setParaStyle{127};
/// At the place that is selected, in ems.
inline constexpr Slot<HostError(RunHandle, Fixed* kern)> getRunKerning{128};
inline constexpr Slot<HostError(RunHandle, Fixed kern)> setRunKerning{129};

// Images of today
/// An image of these facts. Where a key is known already it is that image, and no bytes are wanted.
inline constexpr Slot<HostError(const ImageFacts*, Image* image, std::uint8_t* wantsBytes)>
    addImage{339};
/// The next bytes of an image that wants them: rows from the top, or a JPEG file.
inline constexpr Slot<HostError(Image, const std::byte* bytes, std::int64_t count)> addImageBytes{
    340};
inline constexpr Slot<HostError(Image)> endImage{341}; ///< all bytes were added
/// The bytes that were added turned out to be wrong: the image becomes a placeholder.
inline constexpr Slot<HostError(Image)> giveUpImage{342};
inline constexpr Slot<HostError(Image, ImageFacts*)> getImageFacts{343};
/// Begins at the first byte, of samples: of the first row.
inline constexpr Slot<HostError(Image)> openImageBytes{344};
/// The next bytes, as many as there is room for; fewer at the end only.
inline constexpr Slot<HostError(Image, std::byte* bytes, std::int64_t room, std::int64_t* count)>
    readImageBytes{345};
inline constexpr Slot<HostError(Art placed, const PlacedImage*)> setPlacedImage{346};
inline constexpr Slot<HostError(Art placed, PlacedImage*)> getPlacedImage{347};

// Classic placed art: a linked file. Its matrix leads from the space of the file's bounding box to
// the artboard, b and c negated.
inline constexpr Slot<HostError(Art placed, const Matrix*)> setPlacedMatrix{67};
inline constexpr Slot<HostError(Art placed, FileSpecification*)> getPlacedFile{68};
inline constexpr Slot<HostError(Art placed, const FileSpecification*)> setPlacedFile{69};
inline constexpr Slot<HostError(Art placed, Matrix*)> getPlacedMatrix{364};
/// The preview that the file has in its resource fork, which the caller disposes of; null: none.
inline constexpr Slot<HostError(Art placed, Handle* picture)> getPlacedPict{365};

// What groups and layers are in the file
inline constexpr Slot<HostError(Art group, const FormFacts*)> setForm{348};
inline constexpr Slot<HostError(Art group, FormFacts*)> getForm{349}; ///< its defaults: no form
/// A layer of these facts. One with the same object, if it has one, is the same layer.
inline constexpr Slot<HostError(const ContentLayerFacts*, ContentLayer*)> addContentLayer{350};
inline constexpr Slot<HostError(ContentLayer, ContentLayerFacts*)> getContentLayer{351};
/// The group shows where the layer does; null: always.
inline constexpr Slot<HostError(Art group, ContentLayer)> setGroupLayer{352};
inline constexpr Slot<HostError(Art group, ContentLayer*)> getGroupLayer{353};
/// A new layer in front of all others.
inline constexpr Slot<HostError(const LayerInfo*, LayerRole, Layer*)> addLayer{354};
inline constexpr Slot<HostError(Layer, LayerRole*)> getLayerRole{355};

// Paint of today
inline constexpr Slot<HostError(Art, const Appearance*)> setAppearance{356};
inline constexpr Slot<HostError(Art, Appearance*)> getAppearance{357};
/// The mask takes the content over, which must not use it.
inline constexpr Slot<HostError(const MaskFacts*, SoftMask*)> addMask{358};
inline constexpr Slot<HostError(SoftMask, MaskFacts*)> getMask{359};
/// Equal gradients are one, and so are equal patterns.
inline constexpr Slot<HostError(const GradientFacts*, PaintSource*)> addGradient{360};
inline constexpr Slot<HostError(PaintSource gradient, GradientFacts*)> getGradient{361};
/// The pattern takes the tile over, which must not use it.
inline constexpr Slot<HostError(const PatternFacts*, PaintSource*)> addPattern{362};
inline constexpr Slot<HostError(PaintSource pattern, PatternFacts*)> getPattern{363};
/// Colours of the same name and inks are one.
inline constexpr Slot<HostError(const CustomColour*, PaintSource*)> addCustomColour{366};
/// Equal mixtures are one.
inline constexpr Slot<HostError(const InkMixtureFacts*, PaintSource*)> addInkMixture{367};
inline constexpr Slot<HostError(PaintSource mixture, InkMixtureFacts*)> getInkMixture{368};

// Matrices and arithmetic
inline constexpr Slot<Fixed(Fixed, Fixed)> fixedMultiply{135};
inline constexpr Slot<Fixed(Fixed, Fixed)> fixedDivide{138};
inline constexpr Slot<Fixed(Fixed degrees)> degreesToAngle{148};
inline constexpr Slot<HostBoolean(const Point*, const Point*)> pointsEqual{159};
inline constexpr Slot<void(Matrix*)> setIdentityMatrix{178};
inline constexpr Slot<HostBoolean(const Matrix*, const Matrix*)> matricesEqual{179};
inline constexpr Slot<void(Matrix*, Fixed dx, Fixed dy)> setMatrixTranslation{182};
inline constexpr Slot<void(Matrix*, Fixed sx, Fixed sy)> scaleMatrix{183};
inline constexpr Slot<void(Matrix*, Fixed dx, Fixed dy)> translateMatrix{185};
inline constexpr Slot<void(Matrix*, Fixed angle)> rotateMatrix{187}; ///< angle of degreesToAngle
/// result = first, then second (row vectors: first x second).
inline constexpr Slot<void(const Matrix* first, const Matrix* second, Matrix* result)>
    multiplyMatrix{188};
inline constexpr Slot<void(const Matrix*, const Point*, Point* result)> transformPoint{190};

// Rectangles, page and document
inline constexpr Slot<void(DocumentInfo*)> getDocumentInfo{12};
inline constexpr Slot<void(Rect*, Fixed left, Fixed top, Fixed right, Fixed bottom)> setRect{165};
inline constexpr Slot<HostBoolean(const Rect*, const Rect*)> rectsEqual{166};
inline constexpr Slot<HostBoolean(const Rect*)> rectEmpty{167};
inline constexpr Slot<void(const Rect*, const Rect*, Rect* result)> sectRect{173};
inline constexpr Slot<HostError(Point*)> getPageOrigin{309};
inline constexpr Slot<HostError(Rect*)> getPageBounds{312};
inline constexpr Slot<HostError(const Rect*)> setPageBounds{313};
inline constexpr Slot<HostError(ArtboardSize*)> getArtboardSize{319};
inline constexpr Slot<HostError(const ArtboardSize*)> setArtboardSize{320};
inline constexpr Slot<void()> redrawDocument{323};

} // namespace slot

/// The procedure that `table` holds for `slot`, in the slot's own type; null where it is not
/// filled.
template <class Signature>
typename Slot<Signature>::Procedure slotProcedure(const HostProcedure* table,
                                                  Slot<Signature> slot) {
    return std::bit_cast<typename Slot<Signature>::Procedure>(table[slot.number]);
}

/// Puts a host's procedure where the plug-in will look for it.
template <class Signature>
void fillSlot(std::span<HostProcedure> table, Slot<Signature> slot,
              std::type_identity_t<typename Slot<Signature>::Procedure> procedure) {
    table[static_cast<std::size_t>(slot.number)] = std::bit_cast<HostProcedure>(procedure);
}

} // namespace corvane
