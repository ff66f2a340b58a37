#include "reader/image/painted_stencil.h"

#include "host/appearance.h"
#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "reader/paint/colour_space.h"
#include "reader/shading/box_art.h"
#include "runtime/callbacks.h"

namespace corvane {

namespace {

constexpr Colour white{.kind = ColourKind::gray, .component = {}};

/// The light of a white stencil is where it paints. What masks it is a mask within the mask: art
/// has one.
SoftMask maskOf(Interpreter& interpreter, const PlacedImage& stencil) {
    MaskFacts facts{.isLuminosity = true};
    callHost(slot::newArtwork, &facts.content);
    const Art image = newArt(ArtKind::placed, Placement::inside, facts.content);
    callHost(slot::setPlacedImage, image, &stencil);
    tellAppearanceAsOne(interpreter, image, {.mask = interpreter.state.transparency.mask});
    SoftMask mask = SoftMask::null;
    callHost(slot::addMask, &facts, &mask);
    return mask;
}

/// As far as it counts for what is only filled.
Overprint fillOverprint(const GraphicsState& state) {
    return {.fills = state.overprint.fills,
            .skipsZeros = state.overprint.fills && state.overprint.skipsZeros};
}

} // namespace

/// A mixture of several inks is no colour of pixels: its inks would be lost.
bool paintsStencils(const Interpreter& interpreter) {
    const GraphicsState& state = interpreter.state;
    const ColourKind fill = state.fill.ink.value_or(state.style.fill).kind;
    return fill == ColourKind::gradient || fill == ColourKind::pattern ||
           (fill == ColourKind::inks && state.fill.space->components > 1);
}

Colour stencilColour(const Interpreter& interpreter) {
    return paintsStencils(interpreter) ? white : interpreter.state.style.fill;
}

Art paintStencil(Interpreter& interpreter, const PlacedImage& stencil) {
    const SoftMask mask = maskOf(interpreter, stencil);
    const GraphicsState& state = interpreter.state;
    const Art art = interpreter.containers.make(ArtKind::path);
    setCorners(art, {0, 0, 1, 1}, state.exactCtm);
    PathStyle style;
    style.fillPaint = 1;
    style.fill = state.fill.ink.value_or(state.style.fill);
    callHost(slot::setPathStyle, art, &style);
    tellAppearanceAsOne(interpreter, art,
                        {.fillOpacity = state.transparency.fillOpacity,
                         .blend = state.transparency.blend,
                         .mask = mask,
                         .overprint = fillOverprint(state)});
    return art;
}

} // namespace corvane
