// Paths and compound paths: construction, style and painting.
#pragma once

#include "writer/art/walk.h"

#include <string_view>

namespace corvane {

void pathWorks(Walk& walk, Art path);
/// All subpaths at once, in the style of the first child.
void compoundWorks(Walk& walk, Art compound);
/// Either of the two.
void artWorks(Walk& walk, Art art);
/// One of them, with one of its paints alone.
void fillOnlyWorks(Walk& walk, Art art);
void strokeOnlyWorks(Walk& walk, Art art);
/// Makes `clip`, a path or art that holds paths, the clip of what follows; paints none of it.
void clipWorks(Walk& walk, Art clip);

/// Makes a pen the space of what is drawn next, in a space to which that matrix leads.
void enterPen(Walk& walk, const Pen& pen, const RealMatrix& fromArtboard = {});

/// The operator that ends a path which `h` has closed where it is closed.
std::string_view paintOperator(const PathStyle& style, bool endsClosed);
/// Whether the host draws the fill: a gradient or a pattern.
bool isDrawnByHost(const PathStyle& style);
/// Whether what a style paints with is seen through in parts, and the walk can say so.
bool needsMask(const Walk& walk, const PathStyle& style);
/// Sets the soft mask of the fill or else of the stroke, where that has one. The CTM is that of the
/// artboard.
void maskWorks(Walk& walk, const PathStyle& style);
/// "W" or "W*", and a line end.
std::string_view clipOperator(const PathStyle& style);

} // namespace corvane
