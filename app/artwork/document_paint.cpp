// Paint of the artwork: gradients, patterns, colours of inks, notes, and the styles that use them.
#include "app/artwork/document.h"

#include "host/pen.h"

#include "app/artwork/art_kinds.h"

#include <utility>

namespace corvane {

PaintSource Document::addGradient(Gradient gradient) {
    return paint_.add(std::move(gradient));
}

PaintSource Document::addPattern(Pattern pattern) {
    const NodeIndex tile = findArtwork(pattern.tile);
    const PaintSource source = paint_.add(pattern);
    if (firstPatternOf(tile) == PaintSource::null) {
        artworks_.set(tile, source);
    }
    return source;
}

PaintSource Document::addSpotColour(SpotColour colour) {
    return paint_.add(std::move(colour));
}

PaintSource Document::addInkMixture(InkMixture mixture) {
    return paint_.add(std::move(mixture));
}

const Gradient& Document::gradient(PaintSource source) const {
    return paint_.gradient(source);
}

const Pattern& Document::pattern(PaintSource source) const {
    return paint_.pattern(source);
}

const SpotColour& Document::spotColour(PaintSource source) const {
    return paint_.spotColour(source);
}

const InkMixture& Document::inkMixture(PaintSource source) const {
    return paint_.inkMixture(source);
}

ColourKind Document::paintKind(PaintSource source) const {
    return paint_.kind(source);
}

Note Document::addNote(std::string note) {
    return paint_.add(std::move(note));
}

const std::string& Document::note(Note note) const {
    return paint_.note(note);
}

/// Of a tile that a pattern uses; null for all else.
PaintSource Document::firstPatternOf(NodeIndex top) const {
    const PaintSource* const pattern = artworks_.find(top);
    return pattern == nullptr ? PaintSource::null : *pattern;
}

/// Whoever draws may rely on these.
void Document::checkStyle(NodeIndex art, const PathStyle& style) const {
    if (style.dashCount < 0 || style.dashCount > std::ssize(style.dash) || style.cap < 0 ||
        style.cap > 2 || style.join < 0 || style.join > 2 || style.rule > FillRule::evenOdd) {
        throw ArtworkError("the style has a value without meaning");
    }
    if (!inverse(penMatrix(style.pen))) {
        throw ArtworkError("the pen of the style has no width");
    }
    checkColour(art, style.fill);
    checkColour(art, style.stroke);
    if (style.note != Note::null) {
        paint_.note(style.note);
    }
}

void Document::checkColour(NodeIndex art, const Colour& colour) const {
    switch (colour.kind) {
    case ColourKind::gray:
    case ColourKind::process:
        return;
    case ColourKind::custom:
        paint_.spotColour(colour.source);
        return;
    case ColourKind::gradient:
        paint_.gradient(colour.source);
        return;
    case ColourKind::inks:
        paint_.inkMixture(colour.source);
        return;
    case ColourKind::pattern: {
        paint_.pattern(colour.source);
        const PaintSource first = firstPatternOf(topOf(art));
        if (first != PaintSource::null && colour.source >= first) {
            throw ArtworkError("a pattern's tile can only use patterns made before it");
        }
        return;
    }
    }
    throw ArtworkError("the style has a colour of an unknown kind");
}

/// Art from `top` down is about to be put into `parent`.
void Document::checkPatternsAt(NodeIndex top, NodeIndex parent) const {
    const PaintSource first = firstPatternOf(topOf(parent));
    if (first == PaintSource::null) {
        return;
    }
    for (NodeIndex node = top; node != 0; node = tree_.following(node, top)) {
        if (const Appearance* const found = appearances_.find(node);
            found != nullptr && found->mask != SoftMask::null) {
            throw ArtworkError("a tile, or a mask's content, can only use masks made before it");
        }
        if (artTraits(tree_[node].kind).isOutline) {
            checkTileStyle(styles_[tree_[node].style], first);
        }
        for (std::int32_t run = 0; run < texts_.runCount(node); ++run) {
            checkTileStyle(texts_.runStyle(node, run), first);
        }
    }
}

/// Of art in the tile of the pattern `first`.
void Document::checkTileStyle(const PathStyle& style, PaintSource first) const {
    for (const Colour& colour : {style.fill, style.stroke}) {
        if (colour.kind == ColourKind::pattern && colour.source >= first) {
            throw ArtworkError("a pattern's tile can only use patterns made before it");
        }
    }
}

} // namespace corvane
