// Runs of text: where they lie, and how two of them differ.
#pragma once

#include "host/matrix.h"
#include "host/text.h"
#include "writer/patch/base/base_content.h"
#include "writer/patch/base/edited_artwork.h"
#include "writer/patch/compare/comparison.h"

#include <optional>

namespace corvane {

/// Points by which an editor's rounding may move text.
inline constexpr double placeRoom = 1.0 / 64;

/// The run of a text object; text and pieces live until the object is changed.
TextRun runOf(Art text, std::int32_t run);

TextLine lineOf(Art text);

/// From the space of a run, in which its em is 1 and its text begins at the origin, to the
/// artboard.
RealMatrix frameOf(Art text, const TextRun& run, double start);

/// The same of a run that the page shows.
RealMatrix frameOfPage(const BaseContent& base, const PaintedArt& was);

/// Where a line of the artwork begins, in its own space, if it is as long as that line of the page,
/// its letters as large as they are: lines from the right have their place at their right end.
/// Nothing where that is not known.
std::optional<double> startLike(Art was, Art is);

/// How what the page shows and a run of the artwork differ.
ArtDifference compareText(const BaseContent& base, const PaintedArt& was, const EditedObject& is);

/// Whether two text objects have the same letters, wherever those stand.
bool sameLetters(Art was, Art is);

/// Whether two clips that are text let through the same.
bool sameTextClip(Art was, Art is);

/// Whether two text objects show the same letters in the same places and paints, the first one
/// moved so on the artboard.
bool sameText(Art was, Art is, PaintComparison& paints, const RealMatrix& movement = {});

/// By how much the page's text moves, turns and grows to lie where the run of the artwork does.
/// Raises `unpatchable` where the page's frame has no inverse, or it is not known where the run
/// begins.
RealMatrix movementOfText(const BaseContent& base, const PaintedArt& was, const EditedObject& is);

} // namespace corvane
