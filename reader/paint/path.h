// Building paths: each subpath becomes one path of the host, gathered in a compound path until a
// painting operator ends it. Points are transformed when a segment is made.
#pragma once

#include "host/artwork.h"
#include "objects/stack.h"

namespace corvane {

void openPath();
/// Forgets a path under construction; its art stays with the host.
void closePath();
/// Disposes of the art of a path that was never painted.
void dropPath();

/// Starts a path, unless one is open. A path is open until `endPath`; without one all that follow
/// raise `context`.
void beginPath();
void movetoPath(RealPoint point);
/// Without an open subpath: `context`; in the extended profile one begins at the current point.
void linetoPath(RealPoint point);
void curvetoPath(RealPoint control1, RealPoint control2, RealPoint point);
/// Closes the open subpath, if there is one: an end that equals the beginning is merged with it.
void closetoPath();
/// Where the subpath that was begun last begins, in user space.
RealPoint startPath();
/// Styles the path, makes it a clip where asked, and lets go of it.
void endPath();

void fillPath();
/// As `fillPath`, by the even-odd rule; the original profile warns that it is not kept.
void eofillPath();
void strokePath();
void clipPath();
void eoclipPath();

} // namespace corvane
